// Site: a whole station in memory: its devices, its variables, and its objects with their behaviour lists.
#pragma once

#include <brindle/behaviour/behaviour_list.h>
#include <brindle/library/host_path_access.h>
#include <brindle/skin/ov_skin.h>
#include <brindle/variables/variable_manager.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/device_table.h"
#include "host/poll_plan.h"
#include "host/problem.h"
#include "host/site_plan.h"

namespace brindle::host {

// One object of a site. Its list runs with its scope, whose parent is the site's.
struct SiteObject {
    explicit SiteObject(const ObjectPlan& objectPlan) : plan(objectPlan), list(objectPlan.host) {}

    ObjectPlan plan;
    VariableManager scope;  // outlives the list, whose repeats borrow it
    CCommandBehaviourList list;
};

struct Site {
    SitePlan plan;
    DeviceTable devices;
    std::vector<PollPlan> polls;  // of the devices; not changed by a run
    VariableManager scope;
    OVSkin skin;        // the built-in one where the site has none that can be loaded
    Problems warnings;  // what the site does without
    std::vector<std::unique_ptr<SiteObject>> objects;  // in the order of site.ini
    std::map<std::string, HostFileMarks> marks;        // of the files, as they were before they were loaded

    SiteObject* Find(const std::string& name) const noexcept;
};

// Loads the site of a folder. False when a part is missing or cannot be read; problems then say what. Types
// that nobody registered and attributes that cannot be read are passed over, as the library does; a check
// reports them. A skin that cannot be loaded is only a warning: the built-in one stands in. RegisterHostTypes comes
// first.
bool LoadSite(const std::string& folder, Site& site, Problems& problems);

// The parts of it. Each returns false with a problem when the file cannot be read or is no such document.
bool ReadBehaviours(const std::string& path, CCommandBehaviourList& list, Problems& problems);
bool ReadVariables(const std::string& path, VariableManager& scope, Problems& problems);
// Subscribes to the devices that the texts of the behaviour's actions and the rules of its triggers ask for. `own`:
// the address of its object.
void SubscribeDevices(CCommandBehaviour& behaviour, const CAddressOv& own, DeviceTable& devices);

// Fills a scope with the variables an object's texts may always use: "object", "caption" and "address".
void AddObjectVariables(const ObjectPlan& plan, VariableManager& scope);

// The addresses that the "#address,name#" fields of a text name; nothing when its "#" do not pair up.
std::vector<std::uint32_t> HashFieldAddresses(const CStringA& text);

}  // namespace brindle::host
