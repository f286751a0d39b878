// The life of alarms. Tests: map_alarms_test.cpp.
#include "host/map_alarms.h"

#include <algorithm>

namespace brindle::host {

std::vector<MapAlarm>::iterator MapAlarms::Find(std::uint32_t device) {
    return std::find_if(m_entries.begin(), m_entries.end(),
                        [device](const MapAlarm& entry) { return entry.device == device; });
}

MapAlarms::Change MapAlarms::Take(std::uint32_t device, int state, bool masked) {
    const auto entry = Find(device);
    const bool known = entry != m_entries.end();
    if (masked || state < m_from) {
        if (!known || (!entry->active && !masked)) return Change::kNone;
        entry->active = false;
        if (entry->acknowledged || masked) m_entries.erase(entry);
        return Change::kChanged;
    }
    if (known && entry->active && state <= entry->state) {
        if (state == entry->state) return Change::kNone;
        entry->state = state;
        return Change::kChanged;
    }
    if (known) m_entries.erase(entry);
    m_entries.insert(m_entries.begin(), {device, state, true, false, {}, {}});
    return Change::kBegan;
}

bool MapAlarms::Acknowledge(std::uint32_t device) {
    const auto entry = Find(device);
    if (entry == m_entries.end() || entry->acknowledged) return false;
    entry->acknowledged = true;
    if (!entry->active) m_entries.erase(entry);
    return true;
}

bool MapAlarms::AcknowledgeAll() {
    if (!HasUnacknowledged()) return false;
    for (MapAlarm& entry : m_entries) entry.acknowledged = true;
    std::erase_if(m_entries, [](const MapAlarm& entry) { return !entry.active; });
    return true;
}

bool MapAlarms::IsUnacknowledged(std::uint32_t device) const noexcept {
    return std::any_of(m_entries.begin(), m_entries.end(), [device](const MapAlarm& entry) {
        return entry.device == device && !entry.acknowledged;
    });
}

bool MapAlarms::HasUnacknowledged() const noexcept {
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [](const MapAlarm& entry) { return !entry.acknowledged; });
}

}  // namespace brindle::host
