// SiteRunner: plays events into a site until they end: delivers them to the objects concerned, calls the
// engine's timer whenever something is due, and delivers what actions send after the event being handled.
//
// One runner at a time: it registers the process-wide slots (data interface, observer, host context) for the
// duration of Run. Things due at one moment come in this order: what actions sent, answers of SNMP agents,
// repeats and schedules, polls, the event of the recording. Agents are asked in real time only.
#pragma once

#include <brindle/util/timer.h>

#include <cstdint>
#include <functional>
#include <optional>

#include "host/event_reader.h"
#include "host/run_context.h"
#include "host/run_data.h"
#include "host/run_observer.h"
#include "host/run_state.h"
#include "host/site_reloader.h"
#include "host/snmp_requests.h"
#include "host/station_polls.h"

namespace brindle::host {

struct RunOptions {
    std::optional<std::uint64_t> limit;  // milliseconds; the run ends then, and not before
    bool dryRun = false;
    bool trace = false;
    bool reload = false;                            // files that change take over; in real time only
    std::function<void(SiteReloader&)> watch = {};  // adds files of the host's own to those
};

class SiteRunner {
  public:
    // Actions that answer each other without end are stopped after this many events at one moment.
    static constexpr int kMostSentEvents = 1'000;
    // Repeats without a period run this often, in milliseconds.
    static constexpr std::uint64_t kTick = 100;

    // Everything is borrowed and must outlive the runner.
    SiteRunner(Site& site, EventSource& source, RunSink& sink, RunPace& pace, const RunOptions& options);
    SiteRunner(const SiteRunner&) = delete;
    SiteRunner& operator=(const SiteRunner&) = delete;
    ~SiteRunner();

    void Run();

  private:
    // Of turns inside turns: what is deeper waits until a dialog is answered.
    static constexpr int kMostTurns = 16;
    // A turn in real time lets others handle their events after this, in milliseconds.
    static constexpr std::uint64_t kLongestTurn = 50;

    class InTurn;
    void AddPollsFile();
    void Start();
    // All that is due; as RunPace::Turn.
    std::optional<std::uint64_t> TakeTurn();
    // Lets the next thing happen; when none is due it answers when one will be.
    std::optional<std::uint64_t> Step();
    // Hands out what SNMP agents have answered; false when nothing came.
    bool TakeAnswers();
    void Fetch();
    void Accept(const EventItem& item);
    void Wait(std::uint64_t until);
    void OnEngineTimer();
    void CallTimer();
    void Play(const EventLine& line);
    void AskUnlock(const EventLine& line);
    // Delivers the event to one object, or to every object concerned. Takes over one reference.
    void Deliver(const CStateEvent* event, SiteObject* target, bool sent);
    bool IsConcerned(const SiteObject& object, const CStateEvent& event, DeviceTable::Change change) const;
    void DeliverQueue();
    std::optional<std::uint64_t> NextTimer() const;
    std::uint64_t NextPoll() const;
    // Ends the run, once the requests of actions are answered.
    void EndWhenAnswered(const char* why);
    void End(const char* why);
    void WriteEnd();

    // Wakes the run when the engine has something to do.
    class EngineTimer final : public CTimer {
      public:
        explicit EngineTimer(SiteRunner& runner) : m_runner(runner) {}
        void Arm(std::uint64_t milliseconds);
        void Disarm() { KillTimer(kId); }

      private:
        static constexpr unsigned int kId = 1;
        void OnTimer(std::uint64_t) override { m_runner.OnEngineTimer(); }
        SiteRunner& m_runner;
    };

    RunState m_state;
    std::optional<SnmpRequests> m_snmp;
    std::optional<StationPolls> m_polls;
    RunObserver m_observer;
    RunContext m_context;
    RunData m_data;
    EventSource& m_source;
    RunOptions m_options;
    std::optional<EventLine> m_next;  // the event that waits for its time
    std::uint64_t m_nextAt = 0;
    bool m_sourceEnded = false;
    bool m_over = false;
    const char* m_why = "";  // it is over
    int m_turns = 0;         // how many are being taken, each inside a dialog of the one before
    std::optional<std::uint64_t>
        m_lastPass;                      // when the timer was called last, in milliseconds of the run ...
    std::uint64_t m_lastPassSystem = 0;  // ... and since 1601-01-01 UTC
    std::uint64_t m_played = 0;
    EngineTimer m_engineTimer{*this};
    std::optional<SiteReloader> m_reloader;
};

}  // namespace brindle::host
