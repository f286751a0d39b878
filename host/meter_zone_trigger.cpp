// The trigger on meter zones. Tests: triggers_test.cpp.
#include "host/meter_zone_trigger.h"

namespace brindle::host {

bool MeterZoneTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CMeterZoneChangeEvent*>(&event) != nullptr;
}

void MeterZoneTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(ParsedAttribute("Zones", "numbers and ranges such as 2,4-6", m_zones));
    table.push_back(FlagAttribute("AnyChange", m_anyChange));
}

ConditionTracker::Answer MeterZoneTrigger::Judge(const CStateEvent& event, bool counts) {
    if (counts && m_zones.IsAll()) return {kFired, "zone changed"};
    const int zone = static_cast<const CMeterZoneChangeEvent&>(event).GetZone();
    return Tracker().Update(event.GetAddress(), counts && m_zones.Contains(zone), m_anyChange);
}

}  // namespace brindle::host
