// Verdicts from conditions. Tests: triggers_test.cpp.
#include "host/condition_tracker.h"

namespace brindle::host {

namespace {

// The packed address, with the open parts above it: an event without an address is a device of its own.
std::uint64_t Key(const CAddressOv& device) {
    std::uint64_t open = 0;
    if (device.IsNetDeferred()) open |= 1;
    if (device.IsUnitDeferred()) open |= 2;
    if (device.IsPortDeferred()) open |= 4;
    return open << 32 | device.GetDWord();
}

}  // namespace

ConditionTracker::Answer ConditionTracker::Update(const CAddressOv& device, bool holds, bool every) {
    const std::uint64_t key = Key(device);
    const bool held = m_devices.contains(key);
    if (!holds) {
        if (!held) return {CCommandTrigger::kNotConcerned, "condition does not hold"};
        m_devices.erase(key);
        return {CCommandTrigger::kEnded, "condition has ended"};
    }
    if (held && !every) return {CCommandTrigger::kNotConcerned, "condition still holds"};
    if (!held && m_devices.size() < kMostDevices) m_devices.insert(key);
    return {CCommandTrigger::kFired, held ? "condition holds, any change counts" : "condition has begun"};
}

bool ConditionTracker::Holds(const CAddressOv& device) const {
    return m_devices.contains(Key(device));
}

}  // namespace brindle::host
