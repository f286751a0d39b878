// The trigger on button presses. Tests: triggers_test.cpp.
#include "host/button_trigger.h"

namespace brindle::host {

bool ButtonTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CButtonPressEvent*>(&event) != nullptr;
}

void ButtonTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(ChoiceAttribute("Toggle", m_toggle, {"ANY", "ON", "OFF"}));
    table.push_back(PatternAttribute("User", m_user));
    table.push_back(PatternAttribute("Key", m_key));
    table.push_back(PatternAttribute("KeyValue", m_keyValue));
}

ConditionTracker::Answer ButtonTrigger::Judge(const CStateEvent& event, bool counts) {
    const bool texts = counts && m_user.Matches(event.GetUserString().view()) &&
                       m_key.Matches(event.GetObjStringK().view()) &&
                       m_keyValue.Matches(event.GetObjStringV().view());
    if (m_toggle == kAny)
        return texts ? ConditionTracker::Answer{kFired, "pressed"}
                     : ConditionTracker::Answer{kNotConcerned, "condition does not hold"};
    const bool on = static_cast<const CButtonPressEvent&>(event).toggleState();
    return Tracker().Update(event.GetAddress(), texts && on == (m_toggle == kOn), false);
}

}  // namespace brindle::host
