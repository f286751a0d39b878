// Tests: map_events_test.cpp.
#include "host/map_events.h"

#include <utility>

namespace brindle::host {

std::optional<EventItem> MapEvents::Next(std::chrono::milliseconds) {
    if (!m_presses.empty()) {
        EventItem item;
        item.what = EventItem::kEvent;
        item.name = "the map";
        item.event = std::move(m_presses.front());
        m_presses.pop_front();
        return item;
    }
    if (!m_held && !m_ended) m_held = m_recording.Next({});
    if (!m_held) return {};
    const bool ends = m_held->what == EventItem::kEnd ||
                      (m_held->what == EventItem::kEvent && m_held->event.kind == EventKind::kEnd);
    const auto due = NextDue();
    if (due && *due > m_pace.Elapsed()) return {};
    EventItem item = std::move(*m_held);
    m_held.reset();
    if (!ends) return item;
    m_ended = true;
    return {};
}

void MapEvents::SetWake(std::function<void()> wake) {
    m_wake = wake;
    m_recording.SetWake(std::move(wake));
}

void MapEvents::Add(const EventLine& press) {
    m_presses.push_back(press);
    if (m_wake) m_wake();
}

std::optional<std::uint64_t> MapEvents::NextDue() const {
    if (!m_held || m_held->what != EventItem::kEvent) return {};
    return m_held->event.t.value_or(0);
}

}  // namespace brindle::host
