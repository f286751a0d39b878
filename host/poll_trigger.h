// PollTrigger: fires at polls: at each one, or with "Every" at every so many of them. It never ends.
#pragma once

#include "host/host_trigger.h"

namespace brindle::host {

class PollTrigger final : public DeviceTrigger<PollTrigger> {
  public:
    static constexpr const char* kTypeName = "PollTrigger";
    static constexpr const char* kTypeText = "Poll Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;
    void Init() override;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    int m_every = 1;
    int m_seen = 0;  // polls since it fired
};

}  // namespace brindle::host
