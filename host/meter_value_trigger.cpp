// The trigger on meter values. Tests: triggers_test.cpp.
#include "host/meter_value_trigger.h"

namespace brindle::host {

bool MeterValueTrigger::IsKind(const CStateEvent& event) const noexcept {
    return dynamic_cast<const CMeterValueChangeEvent*>(&event) != nullptr;
}

void MeterValueTrigger::DeviceAttributes(AttributeTable& table) {
    table.push_back(RealAttribute("Above", m_above));
    table.push_back(RealAttribute("Below", m_below));
    table.push_back(RealAttribute("Hysteresis", m_hysteresis));
}

ConditionTracker::Answer MeterValueTrigger::Judge(const CStateEvent& event, bool counts) {
    if (counts && !m_above && !m_below) return {kFired, "value changed"};
    const double value = static_cast<double>(static_cast<const CMeterValueChangeEvent&>(event).GetValue());
    const double margin = Tracker().Holds(event.GetAddress()) ? m_hysteresis.value_or(0) : 0;
    return Tracker().Update(event.GetAddress(), counts && IsOutside(value, margin), false);
}

bool MeterValueTrigger::IsOutside(double value, double margin) const noexcept {
    return (m_above && value > *m_above - margin) || (m_below && value < *m_below + margin);
}

std::vector<std::string> MeterValueTrigger::Conflicts() const {
    std::vector<std::string> conflicts;
    if (m_hysteresis && *m_hysteresis < 0) conflicts.emplace_back("\"Hysteresis\" is negative");
    if (m_hysteresis && !m_above && !m_below)
        conflicts.emplace_back("\"Hysteresis\" has no effect without \"Above\" or \"Below\"");
    if (m_above && m_below && *m_below > *m_above)
        conflicts.emplace_back("\"Below\" lies over \"Above\": every value meets the condition");
    return conflicts;
}

}  // namespace brindle::host
