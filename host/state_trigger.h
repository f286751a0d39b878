// StateTrigger: fires when a device enters one of the states the trigger listens to, with texts that
// meet its conditions; ends when the device reports anything else. With "AnyChange" it fires at every report that
// meets the conditions, also when only the data behind the state changed.
#pragma once

#include "host/host_trigger.h"
#include "host/number_set.h"

namespace brindle::host {

class StateTrigger final : public DeviceTrigger<StateTrigger> {
  public:
    static constexpr const char* kTypeName = "StateTrigger";
    static constexpr const char* kTypeText = "State Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;
    bool HasConfig(const std::string& kind) const override;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    NumberSet m_states;
    TextPattern m_header;
    TextPattern m_cause;
    TextPattern m_text;
    TextPattern m_user;
    bool m_anyChange = false;
};

}  // namespace brindle::host
