// ButtonTrigger: fires when a button is pressed. A toggle button may be listened to in one position only:
// then leaving that position ends the condition. With "Toggle" ANY every press fires and nothing ever ends.
#pragma once

#include "host/host_trigger.h"

namespace brindle::host {

class ButtonTrigger final : public DeviceTrigger<ButtonTrigger> {
  public:
    static constexpr const char* kTypeName = "ButtonTrigger";
    static constexpr const char* kTypeText = "Button Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    enum { kAny, kOn, kOff };

    int m_toggle = kAny;
    TextPattern m_user;
    TextPattern m_key;
    TextPattern m_keyValue;
};

}  // namespace brindle::host
