// The run loop. Tests: run_test.cpp.
#include "host/site_runner.h"

#include <brindle/address/events.h>
#include <brindle/behaviour/action_files.h>
#include <brindle/behaviour/behaviour_observer.h>
#include <brindle/library/host_path_access.h>
#include <brindle/macro/brindle_data.h>
#include <brindle/macro/substitute_path.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "host/argument_filter.h"
#include "host/event_record.h"
#include "host/host_files.h"
#include "host/polls_file.h"
#include "host/start_event.h"

namespace brindle::host {

namespace {

// The process-wide slots and settings of one run.
class Registered {
  public:
    Registered(IBrindleData& data, IBehaviourObserver& observer, HostContext& context, const SitePlan& plan)
        : m_observer(RegisterBehaviourObserver(&observer)),
          m_context(RegisterHostContext(&context)),
          m_filter(RegisterStartFilter(plan.checkArguments ? &m_argumentFilter : nullptr)),
          m_searchPaths(GetSearchPathIniFile()),
          m_actions(GetCommandActionsIniFile()) {
        RegisterIBrindleData(&data);
        // One file has both sections. Commands run in the site's folder, so a relative name would not hold.
        const std::string macros = AbsoluteHostPath(plan.macros);
        SetSearchPathIniFile(macros.c_str());
        SetCommandActionsIniFile(macros.c_str());
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered() {
        RegisterIBrindleData(nullptr);
        RegisterBehaviourObserver(m_observer);
        RegisterHostContext(m_context);
        RegisterStartFilter(m_filter);
        SetSearchPathIniFile(m_searchPaths);
        SetCommandActionsIniFile(m_actions);
    }

  private:
    ArgumentFilter m_argumentFilter;
    IBehaviourObserver* m_observer;
    HostContext* m_context;
    IStartFilter* m_filter;
    CStringA m_searchPaths;
    CStringA m_actions;
};

// What comes from other threads, events and answers of SNMP agents, ends the waits of the run.
class WokenBy {
  public:
    WokenBy(EventSource& source, SnmpRequests* requests, RunPace& pace)
        : m_source(source), m_requests(requests) {
        Set([&pace] { pace.Wake(); });
    }
    WokenBy(const WokenBy&) = delete;
    WokenBy& operator=(const WokenBy&) = delete;
    ~WokenBy() { Set({}); }

  private:
    void Set(const std::function<void()>& wake) {
        m_source.SetWake(wake);
        if (m_requests) m_requests->SetWake(wake);
    }
    EventSource& m_source;
    SnmpRequests* m_requests;
};

// While this lives, dialogs of the desktop let the run go on.
class TurnsInside {
  public:
    TurnsInside(RunPace& pace, RunPace::Turn turn) : m_pace(pace) { m_pace.SetTurn(std::move(turn)); }
    TurnsInside(const TurnsInside&) = delete;
    TurnsInside& operator=(const TurnsInside&) = delete;
    ~TurnsInside() { m_pace.SetTurn({}); }

  private:
    RunPace& m_pace;
};

}  // namespace

// A turn may begin in a dialog that an action has opened: whose turn it was then comes back at the end.
class SiteRunner::InTurn {
  public:
    explicit InTurn(SiteRunner& runner)
        : m_runner(runner),
          m_current(runner.m_state.current),
          m_trigger(runner.m_state.trigger),
          m_by(runner.m_state.by) {
        ++m_runner.m_turns;
        m_runner.m_state.current = nullptr;
    }
    InTurn(const InTurn&) = delete;
    InTurn& operator=(const InTurn&) = delete;
    ~InTurn() {
        --m_runner.m_turns;
        m_runner.m_state.current = m_current;
        m_runner.m_state.trigger.swap(m_trigger);
        m_runner.m_state.by = m_by;
    }

  private:
    SiteRunner& m_runner;
    SiteObject* m_current;
    std::string m_trigger;
    const char* m_by;
};

SiteRunner::SiteRunner(Site& site, EventSource& source, RunSink& sink, RunPace& pace,
                       const RunOptions& options)
    : m_state(site, sink, pace),
      m_observer(m_state),
      m_context(m_state),
      m_data(m_state),
      m_source(source),
      m_options(options) {
    m_state.dryRun = options.dryRun;
    m_state.trace = options.trace;
    if (pace.IsReal()) {
        m_state.snmp = &m_snmp.emplace();
        m_polls.emplace(m_state, *m_snmp,
                        [this](const CStateEvent* event) { Deliver(event, nullptr, false); });
    }
    for (const auto& object : site.objects) m_state.objects[&object->list] = object.get();
}

SiteRunner::~SiteRunner() {
    for (const CStateEvent* event : m_state.queue) event->Release();
    for (const auto& object : m_state.site.objects) object->list.ResetRepeats();
}

void SiteRunner::Run() {
    const Registered registered(m_data, m_observer, m_context, m_state.site.plan);
    const WokenBy woken(m_source, m_snmp ? &*m_snmp : nullptr, m_state.pace);
    if (m_options.reload) m_reloader.emplace(m_state);
    if (m_reloader && m_polls) AddPollsFile();
    if (m_reloader && m_options.watch) m_options.watch(*m_reloader);
    const TurnsInside inside(m_state.pace, [this] { return TakeTurn(); });
    Start();
    while (const auto next = TakeTurn()) Wait(*next);
    if (m_over) WriteEnd();
}

std::optional<std::uint64_t> SiteRunner::TakeTurn() {
    const std::uint64_t began = m_state.pace.Elapsed();
    if (m_turns == kMostTurns && !m_over && !m_state.sink.IsClosed()) {
        if (!m_options.limit || began <= *m_options.limit) return began + kTick;
        End("the time is over");
    }
    const InTurn turn(*this);
    while (!m_over) {
        DeliverQueue();
        if (m_over || m_state.sink.IsClosed()) return {};
        if (TakeAnswers()) continue;
        Fetch();
        if (const auto next = Step()) return next;
        if (m_state.pace.IsReal() && m_state.pace.Elapsed() - began > kLongestTurn) return began;
    }
    return {};
}

void SiteRunner::AddPollsFile() {
    const Site& site = m_state.site;
    if (site.plan.devices.empty()) return;
    const auto marks = site.marks.find(site.plan.devices);
    m_reloader->Add(std::make_unique<PollsFile>(
        site.plan.devices, marks == site.marks.end() ? HostFileMarks() : marks->second, *m_polls));
}

void SiteRunner::Start() {
    const InTurn turn(*this);
    RunRecord record = m_state.Begin("start");
    record["site"] = TextToUtf8(m_state.site.plan.name);
    record["objects"] = m_state.site.objects.size();
    m_state.sink.Write(record);
    for (const auto& object : m_state.site.objects) {
        object->list.Init();
        m_state.current = object.get();
        object->list.Execute(new StartEvent, &object->scope);
        m_state.current = nullptr;
    }
}

bool SiteRunner::TakeAnswers() {
    if (!m_snmp || !m_snmp->TakeAnswers()) return false;
    m_state.current = nullptr;
    return true;
}

// Takes the next event of the source unless one is waiting for its time.
void SiteRunner::Fetch() {
    while (!m_next && !m_sourceEnded) {
        const std::optional<EventItem> item = m_source.Next({});
        if (!item) return;
        Accept(*item);
    }
}

void SiteRunner::Accept(const EventItem& item) {
    if (item.what == EventItem::kEnd) {
        m_sourceEnded = true;
    } else if (item.what == EventItem::kProblem) {
        m_state.sink.Warn(item.problem);
    } else if (!item.event.object.empty() && !m_state.site.Find(item.event.object)) {
        m_state.sink.Warn({item.name, item.line, 0, "the site has no object \"" + item.event.object + "\""});
    } else {
        m_next = item.event;
        m_nextAt = std::max(item.event.t.value_or(0), m_state.pace.Elapsed());
    }
}

std::optional<std::uint64_t> SiteRunner::Step() {
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t timer = NextTimer().value_or(kNever);
    const std::uint64_t event = m_next ? m_nextAt : kNever;
    const std::uint64_t poll = NextPoll();
    // Not in a dialog that an action has opened: the list it stands in is being walked.
    const bool looks = m_reloader && m_turns == 1;
    const std::uint64_t look = looks ? m_reloader->NextLook().value_or(kNever) : kNever;
    const std::uint64_t limit = m_options.limit.value_or(kNever);
    const std::uint64_t next = std::min({timer, event, poll});
    const std::uint64_t now = m_state.pace.Elapsed();
    const bool ended = !m_options.limit && !m_next && m_sourceEnded;
    if (!ended && now < std::min({next, look, limit})) return std::min({next, look, limit});
    if (ended)
        EndWhenAnswered("the events have ended");
    else if (look <= now)
        m_reloader->Look();
    else if (next > limit)
        End("the time is over");
    else if (timer <= std::min(event, poll))
        CallTimer();
    else if (poll <= event)
        m_polls->SendDue();
    else
        Play(*std::exchange(m_next, std::nullopt));
    return {};
}

// The engine's turn comes as a tick of its timer.
void SiteRunner::Wait(std::uint64_t until) {
    if (const auto timer = NextTimer()) m_engineTimer.Arm(*timer - std::min(*timer, m_state.pace.Elapsed()));
    m_state.pace.WaitUntil(until);
    m_engineTimer.Disarm();
}

void SiteRunner::EngineTimer::Arm(std::uint64_t milliseconds) {
    constexpr std::uint64_t kLongest = std::numeric_limits<std::uint32_t>::max();
    CreateTimer(kId, static_cast<unsigned int>(std::min(milliseconds, kLongest)));
}

void SiteRunner::OnEngineTimer() {
    m_engineTimer.Disarm();  // within a dialog that opens now, turns look after what is due
    const InTurn turn(*this);
    CallTimer();
}

void SiteRunner::CallTimer() {
    m_lastPass = m_state.pace.Elapsed();
    m_lastPassSystem = SystemMilliseconds();
    CCommandBehaviourList::CallOnTimer();
    m_state.current = nullptr;
}

void SiteRunner::Play(const EventLine& line) {
    if (line.kind == EventKind::kEnd) {
        if (m_options.limit) return;
        m_sourceEnded = true;
        m_next.reset();
        return EndWhenAnswered("the recording ends here");
    }
    ++m_played;
    if (line.kind == EventKind::kUnlock) return AskUnlock(line);
    SiteObject* target = line.object.empty() ? nullptr : m_state.site.Find(line.object);
    Deliver(MakeEvent(line, target ? target->plan.address : CAddressOv()), target, false);
}

void SiteRunner::AskUnlock(const EventLine& line) {
    SiteObject* target = m_state.site.Find(line.object);
    const CStateEvent* event = MakeEvent(line, target->plan.address);
    RunRecord record = m_state.Begin("unlock");
    record["object"] = TextToUtf8(line.object);
    DescribeEvent(*event, record);
    m_state.current = target;
    const bool allowed = target->list.CanUnLock(event);
    m_state.current = nullptr;
    const RunObserver::Unlock by = m_observer.TakeUnlock();
    record["allowed"] = allowed;
    if (allowed) {
        record["trigger"] = by.trigger;
        record["action"] = by.action;
    }
    m_state.sink.Write(record);
}

void SiteRunner::Deliver(const CStateEvent* event, SiteObject* target, bool sent) {
    RunRecord record = m_state.Begin("event");
    if (target) record["object"] = TextToUtf8(target->plan.name);
    if (sent) record["sent"] = true;
    if (!target && !event->GetAddress().IsDeferred()) {
        const std::string device = m_state.site.devices.Caption(event->GetAddress().GetDWord());
        if (!device.empty()) record["device"] = TextToUtf8(device);
    }
    DescribeEvent(*event, record);
    m_state.sink.Write(record);
    const DeviceTable::Change change = m_state.site.devices.Take(*event);
    for (const auto& object : m_state.site.objects) {
        if (target ? object.get() != target : !IsConcerned(*object, *event, change)) continue;
        event->AddRef();
        m_state.current = object.get();
        object->list.Execute(event, &object->scope);
        m_state.current = nullptr;
    }
    event->Release();
}

// State events only go to lists that listen to states, and a report that repeats the last one only to those
// that listen to every report of a device.
bool SiteRunner::IsConcerned(const SiteObject& object, const CStateEvent& event,
                             DeviceTable::Change change) const {
    if (!dynamic_cast<const CStateChangedEvent*>(&event)) return true;
    return object.list.HasStateTriggers() &&
           (change == DeviceTable::Change::kSomething || object.list.HasAnyDataChangedStateTrigger());
}

void SiteRunner::DeliverQueue() {
    for (int sent = 0; !m_state.queue.empty(); ++sent) {
        const CStateEvent* event = m_state.queue.front();
        m_state.queue.pop_front();
        if (sent < kMostSentEvents) {
            Deliver(event, nullptr, true);
            continue;
        }
        event->Release();
        if (!m_state.queue.empty()) continue;
        RunRecord record = m_state.Begin("failure");
        record["why"] = "actions answer each other without end: their last events were dropped";
        m_state.sink.Write(record);
    }
}

// When the engine's timer has something to do, in milliseconds of this run.
std::optional<std::uint64_t> SiteRunner::NextTimer() const {
    const std::uint64_t due = CCommandBehaviourList::GetNextDue();
    if (due == std::numeric_limits<std::uint64_t>::max()) return {};
    // What the last pass left due already has no period.
    if (m_lastPass && due <= m_lastPassSystem) return *m_lastPass + kTick;
    return m_state.ElapsedAt(due);
}

std::uint64_t SiteRunner::NextPoll() const {
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    return m_polls ? m_polls->NextDue().value_or(kNever) : kNever;
}

void SiteRunner::EndWhenAnswered(const char* why) {
    while (m_state.asked > 0) {
        m_snmp->WaitForAnswer(std::chrono::milliseconds(1'000));
        TakeAnswers();
        DeliverQueue();
        if (m_state.sink.IsClosed()) return;
    }
    End(why);
}

void SiteRunner::End(const char* why) {
    m_over = true;
    m_why = why;
}

void SiteRunner::WriteEnd() {
    RunRecord record = m_state.Begin("end");
    record["events"] = m_played;
    record["why"] = m_why;
    m_state.sink.Write(record);
}

}  // namespace brindle::host
