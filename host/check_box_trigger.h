// CheckBoxTrigger: fires when a check box becomes checked (or, with "Checked" FALSE, unchecked); the opposite
// press ends the condition.
#pragma once

#include "host/host_trigger.h"

namespace brindle::host {

class CheckBoxTrigger final : public DeviceTrigger<CheckBoxTrigger> {
  public:
    static constexpr const char* kTypeName = "CheckBoxTrigger";
    static constexpr const char* kTypeText = "Check Box Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    bool m_checked = true;
    TextPattern m_user;
};

}  // namespace brindle::host
