// RunState: what the parts of a run share: the site, where records go, the time, and whose turn it is.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>

#include "host/run_pace.h"
#include "host/run_record.h"
#include "host/site.h"

class CCommandTreeItem;
class CStateEvent;

namespace brindle::host {

class SnmpRequests;

struct RunState {
    RunState(Site& runSite, RunSink& runSink, RunPace& runPace)
        : site(runSite), sink(runSink), pace(runPace) {}

    Site& site;
    RunSink& sink;
    RunPace& pace;
    bool dryRun = false;
    bool trace = false;

    std::unordered_map<const CCommandBehaviourList*, SiteObject*> objects;
    SnmpRequests* snmp = nullptr;          // none on a virtual clock
    int asked = 0;                         // by actions, and not answered yet
    std::deque<const CStateEvent*> queue;  // sent by actions; one reference each

    // The action that runs at present: for which object, by which trigger, and why ("event", "repeat" or
    // "schedule").
    SiteObject* current = nullptr;
    std::string trigger;
    const char* by = "";

    SiteObject* ObjectOf(const CCommandBehaviourList* list) const;
    // A record of that kind at the present time.
    RunRecord Begin(const char* kind) const;
    // When a due time of the engine (milliseconds since 1601-01-01 UTC) comes, in milliseconds of this run.
    std::uint64_t ElapsedAt(std::uint64_t due) const;
};

// What an item is called in records: its name, else its conditions, else its type; UTF-8.
std::string ItemLabel(const CCommandTreeItem* item);
// The registered type name of an item of this host.
std::string ItemType(const CCommandTreeItem* item);

}  // namespace brindle::host
