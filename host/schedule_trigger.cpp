// The trigger on the clock. Tests: schedule_test.cpp.
#include "host/schedule_trigger.h"

#include <brindle/platform/clock.h>

#include "host/start_event.h"

namespace brindle::host {

int ScheduleTrigger::Test(const CCommandEvent* event) {
    if (!dynamic_cast<const StartEvent*>(event)) return Answer(kNotConcerned, "another kind of event");
    if (m_armed) return Answer(kNotConcerned, "the schedule runs already");
    m_armed = true;
    m_start = UnixSeconds();
    return Answer(kFired, "the schedule begins");
}

bool ScheduleTrigger::Retest(const CCommandEvent*) const {
    return m_armed;
}

void ScheduleTrigger::Init() {
    m_armed = false;
}

int ScheduleTrigger::GetNextTime() const {
    return m_schedule.SecondsToNext(m_armed ? m_start : UnixSeconds());
}

std::vector<std::string> ScheduleTrigger::Conflicts() const {
    std::vector<std::string> conflicts;
    if (m_schedule.IsEmpty()) conflicts.emplace_back("neither \"Every\" nor \"At\" is given: it never fires");
    if (m_schedule.every > 0 && m_schedule.at.IsSet())
        conflicts.emplace_back("\"Every\" has no effect beside \"At\"");
    return conflicts;
}

void ScheduleTrigger::OwnAttributes(AttributeTable& table) {
    table.push_back(NumberAttribute("Every", m_schedule.every, 0, Schedule::kLongestPeriod));
    table.push_back(ParsedAttribute("At", "a time of day such as 08:30:00", m_schedule.at));
    table.push_back(ParsedAttribute("Days", "days such as Mon-Fri,Sun", m_schedule.days));
}

}  // namespace brindle::host
