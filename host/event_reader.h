// EventReader: the lines of a recording, one after the other, however many there are. BackgroundReader does
// the same on a thread of its own, so that a run in real time can wait for a line and for its timers at once.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <string>

#include "host/event_line.h"
#include "host/problem.h"

namespace brindle::host {

struct EventItem {
    enum What { kEvent, kProblem, kEnd };
    What what = kEnd;
    EventLine event;
    Problem problem;   // a line that is no event
    std::string name;  // where the event stood
    std::uint32_t line = 0;
};

// Where a run takes its events from.
class EventSource {
  public:
    virtual ~EventSource() = default;
    // The next item; after kEnd only kEnd. Nothing when none came within the time; sources that read directly
    // wait as long as it takes.
    virtual std::optional<EventItem> Next(std::chrono::milliseconds longest) = 0;
    // Called whenever an item may have come that Next has not waited for; from any thread, and not after this was
    // called again. Sources that never let Next come back without an item need not.
    virtual void SetWake(std::function<void()>) {}
};

class EventReader : public EventSource {
  public:
    // Bytes of one line; a longer one is a problem and is passed over without being kept.
    static constexpr std::size_t kLongestLine = 65'536;

    // Lines of `input` (borrowed), which problems call `name`. Blank lines are passed over.
    EventReader(std::istream& input, std::string name) : m_input(input), m_name(std::move(name)) {}
    std::optional<EventItem> Next(std::chrono::milliseconds longest) override;

  private:
    enum class Line { kGood, kTooLong, kEnd };
    Line ReadLine();

    std::istream& m_input;
    std::string m_name;
    std::string m_line;
    std::uint32_t m_number = 0;
};

// Reads ahead by at most kAhead items. The stream must live until the process ends: a thread that waits for
// input cannot be called back, so it is left to end with the process.
class BackgroundReader : public EventSource {
  public:
    static constexpr std::size_t kAhead = 256;

    BackgroundReader(std::istream& input, std::string name);
    ~BackgroundReader() override;
    void SetWake(std::function<void()> wake) override;
    std::optional<EventItem> Next(std::chrono::milliseconds longest) override;

  private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};

// No events and no end: for a run that lives from polls and schedules alone.
class NoEvents : public EventSource {
  public:
    std::optional<EventItem> Next(std::chrono::milliseconds longest) override;
};

}  // namespace brindle::host
