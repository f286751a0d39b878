// Events, edits, measurements. Tests: the soaks that CMakeLists.txt registers.
#include "tests/soak/soak_source.h"

#include <algorithm>
#include <cstdio>

namespace brindle::soak {

SoakSource::SoakSource(std::uint64_t events, host::Site& site, SoakPace& pace, SiteEdits& edits, Leaks& leaks)
    : m_events(events),
      m_editEvery(std::max(events / kMostEdits, kFewestBetweenEdits)),
      m_site(site),
      m_pace(pace),
      m_edits(edits),
      m_leaks(leaks) {}

double SoakSource::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

std::optional<host::EventItem> SoakSource::Next(std::chrono::milliseconds) {
    host::EventItem item;
    if (m_played == m_events) return item;
    if (m_played % m_editEvery == m_editEvery / 2) m_edits.Save(m_site, m_pace);
    item.what = host::EventItem::kEvent;
    item.name = "soak";
    item.event = m_mix.Next();
    ++m_played;
    if (m_played % (m_events / kMeasurements) == 0) Measure();
    return item;
}

void SoakSource::Measure() {
    m_leaks.TakeMore();
    const ResourceUse use = MeasureResources();
    m_watch.Add(use);
    if (m_played % (m_events / kMeasurements * 5) != 0) return;
    std::printf("%11llu %9.1f %11llu %13llu %12llu %8llu\n", static_cast<unsigned long long>(m_played),
                Seconds(), static_cast<unsigned long long>(use.heap / 1024),
                static_cast<unsigned long long>(use.anonymous / 1024),
                static_cast<unsigned long long>(use.descriptors),
                static_cast<unsigned long long>(use.threads));
    std::fflush(stdout);
}

}  // namespace brindle::soak
