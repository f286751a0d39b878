// ScheduleTrigger: the time based trigger of this host. It fires once, at the start of the run; the engine
// then queues its actions and asks GetNextTime before each run. It never ends.
#pragma once

#include <brindle/behaviour/time_based_trigger.h>

#include <cstdint>

#include "host/host_trigger.h"
#include "host/schedule.h"

namespace brindle::host {

class ScheduleTrigger final : public HostTrigger<ScheduleTrigger, CTimeBasedTrigger> {
  public:
    static constexpr const char* kTypeName = "TimeBasedTrigger";
    static constexpr const char* kTypeText = CTimeBasedTrigger::kTypeText;  // the engine compares it

    int Test(const CCommandEvent* event) override;
    // A repeat of a schedule goes on until the trigger is reset.
    bool Retest(const CCommandEvent* event) const override;
    void Init() override;
    int GetNextTime() const override;
    std::vector<std::string> Conflicts() const override;

  private:
    void OwnAttributes(AttributeTable& table) override;

    Schedule m_schedule;
    bool m_armed = false;
    std::int64_t m_start = 0;  // when it was armed, seconds since 1970-01-01 UTC
};

}  // namespace brindle::host
