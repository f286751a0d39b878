// CaptionTrigger: fires when a caption changes to one that meets the condition and ends when it changes to
// one that does not. Without a condition every change fires and nothing ever ends.
#pragma once

#include "host/host_trigger.h"

namespace brindle::host {

class CaptionTrigger final : public DeviceTrigger<CaptionTrigger> {
  public:
    static constexpr const char* kTypeName = "CaptionTrigger";
    static constexpr const char* kTypeText = "Caption Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    TextPattern m_caption;
};

}  // namespace brindle::host
