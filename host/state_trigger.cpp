// The trigger on device states. Tests: triggers_test.cpp.
#include "host/state_trigger.h"

namespace brindle::host {

bool StateTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CStateChangedEvent*>(&event) != nullptr;
}

void StateTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(ParsedAttribute("States", "numbers and ranges such as 2,4-6", m_states));
    table.push_back(PatternAttribute("Header", m_header));
    table.push_back(PatternAttribute("Cause", m_cause));
    table.push_back(PatternAttribute("Text", m_text));
    table.push_back(PatternAttribute("User", m_user));
    table.push_back(FlagAttribute("AnyChange", m_anyChange));
}

ConditionTracker::Answer StateTrigger::Judge(const CStateEvent& event, bool counts) {
    const bool holds = counts && m_states.Contains(event.GetState()) &&
                       m_header.Matches(event.GetStateDueToHeader().view()) &&
                       m_cause.Matches(event.GetStateDueToCauseHeader().view()) &&
                       m_text.Matches(event.GetStateDueToString().view()) &&
                       m_user.Matches(event.GetUserString().view());
    return Tracker().Update(event.GetAddress(), holds, m_anyChange);
}

bool StateTrigger::HasConfig(const std::string& kind) const {
    return kind == "StateTrigger" || (m_anyChange && kind == "StateTrigger::AnyChange");
}

}  // namespace brindle::host
