// The trigger on check boxes. Tests: triggers_test.cpp.
#include "host/check_box_trigger.h"

namespace brindle::host {

bool CheckBoxTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CCheckBoxCheckedPressEvent*>(&event) != nullptr ||
           dynamic_cast<const CCheckBoxUnCheckedPressEvent*>(&event) != nullptr;
}

void CheckBoxTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(FlagAttribute("Checked", m_checked));
    table.push_back(PatternAttribute("User", m_user));
}

ConditionTracker::Answer CheckBoxTrigger::Judge(const CStateEvent& event, bool counts) {
    const bool checked = dynamic_cast<const CCheckBoxCheckedPressEvent*>(&event) != nullptr;
    const bool holds = counts && checked == m_checked && m_user.Matches(event.GetUserString().view());
    return Tracker().Update(event.GetAddress(), holds, false);
}

}  // namespace brindle::host
