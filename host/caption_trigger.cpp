// The trigger on captions; an event's caption is its text. Tests: triggers_test.cpp.
#include "host/caption_trigger.h"

namespace brindle::host {

bool CaptionTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CCaptionChangedEvent*>(&event) != nullptr;
}

void CaptionTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(PatternAttribute("Caption", m_caption));
}

ConditionTracker::Answer CaptionTrigger::Judge(const CStateEvent& event, bool counts) {
    if (counts && m_caption.Text().empty()) return {kFired, "caption changed"};
    const bool holds = counts && m_caption.Matches(event.GetStateDueToString().view());
    return Tracker().Update(event.GetAddress(), holds, false);
}

}  // namespace brindle::host
