// The trigger on polls. Tests: triggers_test.cpp.
#include "host/poll_trigger.h"

namespace brindle::host {

bool PollTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CPollEvent*>(&event) != nullptr;
}

void PollTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(NumberAttribute("Every", m_every, 1, 1'000'000));
}

ConditionTracker::Answer PollTrigger::Judge(const CStateEvent&, bool counts) {
    if (!counts) return {kNotConcerned, "condition does not hold"};
    if (++m_seen < m_every) return {kNotConcerned, "not its turn"};
    m_seen = 0;
    return {kFired, "polled"};
}

void PollTrigger::Init() {
    m_seen = 0;
}

}  // namespace brindle::host
