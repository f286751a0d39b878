// MeterZoneTrigger: fires when a meter enters one of the zones the trigger listens to, and ends when it leaves
// them; with "AnyChange" every change within them fires too. Without zones every change fires and nothing ends.
#pragma once

#include "host/host_trigger.h"
#include "host/number_set.h"

namespace brindle::host {

class MeterZoneTrigger final : public DeviceTrigger<MeterZoneTrigger> {
  public:
    static constexpr const char* kTypeName = "MeterZoneTrigger";
    static constexpr const char* kTypeText = "Meter Zone Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    NumberSet m_zones;
    bool m_anyChange = false;
};

}  // namespace brindle::host
