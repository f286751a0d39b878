// MapEvents: the events of a run with a map: presses, as they come, and those of a recording, each when its time has
// come. A run fetches one event ahead, so one that waits would keep presses waiting.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>

#include "host/event_reader.h"
#include "host/run_pace.h"

namespace brindle::host {

class MapEvents final : public EventSource {
  public:
    // Both are borrowed.
    MapEvents(EventSource& recording, RunPace& pace) : m_recording(recording), m_pace(pace) {}

    // Never ends: a map goes on when its recording is over.
    std::optional<EventItem> Next(std::chrono::milliseconds longest) override;
    void SetWake(std::function<void()> wake) override;

    // Thread: the run's.
    void Add(const EventLine& press);
    // When the next event of the recording is due, in milliseconds of the run; nothing: none waits.
    std::optional<std::uint64_t> NextDue() const;

  private:
    EventSource& m_recording;
    RunPace& m_pace;
    std::deque<EventLine> m_presses;
    std::optional<EventItem> m_held;
    bool m_ended = false;
    std::function<void()> m_wake;
};

}  // namespace brindle::host
