// Loading a site. The devices that texts of its actions and rules of its triggers ask for are subscribed to, so that
// their states are known when a field wants them. Tests: site_test.cpp.
#include "host/site.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/traveral_funct.h>
#include <brindle/framework/array.h>
#include <brindle/macro/command_line.h>
#include <brindle/xml/xml_reader.h>

#include <algorithm>

#include "host/address_pattern.h"
#include "host/configured_item.h"
#include "host/host_files.h"
#include "host/rule_trigger.h"
#include "host/skin_file.h"

namespace brindle::host {

namespace {

// Opens an XML file; false with a problem when it cannot be read or its root is another element.
bool OpenXml(const std::string& path, const char* root, XMLReader& reader, Problems& problems) {
    Result result;
    if (IsFolder(path)) {
        problems.push_back({path, 0, 0, "is a folder"});
        return false;
    }
    if (!reader.LoadPositioned(path.c_str(), result)) {
        problems.push_back({path, result.line, result.column, result.text});
        return false;
    }
    if (reader.EnterSection(root, true)) {
        reader.CloseSection();
        return true;
    }
    problems.push_back({path, 0, 0, "has no root element \"" + std::string(root) + "\""});
    return false;
}

bool LoadVariables(const std::string& path, Site& site, VariableManager& scope, Problems& problems) {
    if (path.empty()) return true;
    site.marks.try_emplace(path, MarksOfHostFile(path));
    return ReadVariables(path, scope, problems);
}

bool LoadDevices(Site& site, Problems& problems) {
    const SitePlan& plan = site.plan;
    if (plan.devices.empty()) return true;
    site.marks.try_emplace(plan.devices, MarksOfHostFile(plan.devices));
    std::string bytes;
    const std::string why = ReadSiteFile(plan.devices, bytes);
    if (!why.empty()) {
        problems.push_back({plan.devices, 0, 0, why});
        return false;
    }
    const IniText ini(bytes, plan.devices, problems);
    site.devices.Load(ini, plan.devices, problems);
    site.polls = ReadPollPlans(ini, plan.devices, problems);
    return true;
}

// Subscribes to the devices that the texts of actions and the rules of triggers ask for.
class Subscriber final : public TraveralFunct {
  public:
    Subscriber(DeviceTable& devices, const CAddressOv& own) : m_devices(devices), m_own(own) {}
    void operator()(CCommandTreeItem* item) const override {
        if (const auto* trigger = dynamic_cast<const RuleTrigger*>(item)) SubscribeRule(trigger->Rule());
        auto* configured = dynamic_cast<ConfiguredItem*>(item);
        if (!configured) return;
        for (const Attribute& attribute : configured->Attributes()) {
            if (!attribute.formatted) continue;
            for (const std::uint32_t address : HashFieldAddresses(attribute.text()))
                m_devices.Subscribe(address);
        }
    }

  private:
    void SubscribeRule(const PreparedRule& rule) const {
        for (std::size_t i = 0; i < rule.NameCount(); ++i)
            if (const auto device = DeviceOfName(rule, i, m_own)) m_devices.Subscribe(*device);
    }

    DeviceTable& m_devices;
    const CAddressOv& m_own;  // of the object
};

bool LoadObject(const ObjectPlan& plan, Site& site, Problems& problems) {
    auto object = std::make_unique<SiteObject>(plan);
    site.marks.try_emplace(plan.behaviours, MarksOfHostFile(plan.behaviours));
    if (!ReadBehaviours(plan.behaviours, object->list, problems)) return false;
    object->list.Traverse(Subscriber(site.devices, plan.address));
    AddObjectVariables(plan, object->scope);
    object->scope.setParent(&site.scope);
    const bool loaded = LoadVariables(plan.variables, site, object->scope, problems);
    site.objects.push_back(std::move(object));
    return loaded;
}

}  // namespace

SiteObject* Site::Find(const std::string& name) const noexcept {
    const auto found =
        std::find_if(objects.begin(), objects.end(), [&](const auto& o) { return o->plan.name == name; });
    return found == objects.end() ? nullptr : found->get();
}

bool ReadBehaviours(const std::string& path, CCommandBehaviourList& list, Problems& problems) {
    XMLReader reader;
    if (!OpenXml(path, "BehaviourList", reader, problems)) return false;
    list.Load(reader);
    return true;
}

bool ReadVariables(const std::string& path, VariableManager& scope, Problems& problems) {
    XMLReader reader;
    if (!OpenXml(path, "Variables", reader, problems)) return false;
    reader.EnterSection("Variables", true);
    while (reader.EnterSection("variable", false)) {
        CStringA name;
        CStringA value;
        reader.ReadAttribute("name", name);
        reader.ReadAttribute("value", value);
        scope.addVariable(Variable(name, value));
        reader.CloseSection();
    }
    reader.CloseSection();
    return true;
}

void SubscribeDevices(CCommandBehaviour& behaviour, const CAddressOv& own, DeviceTable& devices) {
    behaviour.Traverse(Subscriber(devices, own));
}

void AddObjectVariables(const ObjectPlan& plan, VariableManager& scope) {
    scope.addVariable(Variable("object", plan.name));
    scope.addVariable(Variable("caption", plan.caption));
    scope.addVariable(Variable("address", AddressText(plan.address)));
}

std::vector<std::uint32_t> HashFieldAddresses(const CStringA& text) {
    const auto hashes = std::count(text.view().begin(), text.view().end(), '#');
    if (!ContainsHashField(text) || hashes % 2 != 0) return {};  // an unpaired "#" would never return
    CDWordArray addresses;
    ExtractAddressesFromHashFields(text, addresses);
    return {addresses.begin(), addresses.end()};
}

bool LoadSite(const std::string& folder, Site& site, Problems& problems) {
    if (!ReadSitePlan(folder, site.plan, problems)) return false;
    MapDrives(site.plan);
    bool loaded = LoadVariables(site.plan.variables, site, site.scope, problems);
    loaded = LoadDevices(site, problems) && loaded;
    site.marks.try_emplace(site.plan.skin, MarksOfHostFile(site.plan.skin));
    site.skin = LoadSiteSkin(site.plan.skin, site.warnings);
    for (const ObjectPlan& plan : site.plan.objects) loaded = LoadObject(plan, site, problems) && loaded;
    return loaded && problems.empty();
}

}  // namespace brindle::host
