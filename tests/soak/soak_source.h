// SoakSource: the events of a soak, one after the other; between them it saves edits and measures what the process
// holds.
#pragma once

#include <chrono>
#include <cstdint>

#include "host/event_reader.h"
#include "host/site.h"
#include "tests/soak/event_mix.h"
#include "tests/soak/leaks.h"
#include "tests/soak/resource_use.h"
#include "tests/soak/site_edits.h"

namespace brindle::soak {

class SoakSource final : public host::EventSource {
  public:
    static constexpr std::uint64_t kMeasurements = 100;
    static constexpr std::uint64_t kFewestEvents = 1'000;  // of a soak
    static constexpr std::uint64_t kMostEdits = 2'000;
    static constexpr std::uint64_t kFewestBetweenEdits = 500;

    // Everything is borrowed. `events`: kFewestEvents or more.
    SoakSource(std::uint64_t events, host::Site& site, SoakPace& pace, SiteEdits& edits, Leaks& leaks);
    std::optional<host::EventItem> Next(std::chrono::milliseconds longest) override;

    std::uint64_t Played() const { return m_played; }
    const LevelWatch& Watch() const { return m_watch; }
    double Seconds() const;

  private:
    void Measure();

    std::uint64_t m_events;
    std::uint64_t m_editEvery;
    host::Site& m_site;
    SoakPace& m_pace;
    SiteEdits& m_edits;
    Leaks& m_leaks;
    EventMix m_mix;
    LevelWatch m_watch;
    std::uint64_t m_played = 0;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

}  // namespace brindle::soak
