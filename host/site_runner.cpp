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

#include "host/argument_filter.h"
#include "host/event_record.h"
#include "host/host_files.h"
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

}  // namespace

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
    Start();
    while (!m_over) {
        DeliverQueue();
        if (m_state.sink.IsClosed()) return;
        if (TakeAnswers()) continue;
        Fetch();
        Step();
    }
}

void SiteRunner::Start() {
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
        const std::optional<EventItem> item = m_source.Next(LongestWait());
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

// Waits for the next moment at which something happens, and lets it happen.
void SiteRunner::Step() {
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    const bool waitsForInput = !m_next && !m_sourceEnded;
    const std::uint64_t timer = NextTimer().value_or(kNever);
    const std::uint64_t event = m_next ? m_nextAt : kNever;
    const std::uint64_t poll = NextPoll();
    const std::uint64_t wake = std::min({timer, event, poll});
    if (!m_options.limit && !m_next && m_sourceEnded) return EndWhenAnswered("the events have ended");
    const std::uint64_t limit = m_options.limit.value_or(kNever);
    if (waitsForInput && m_state.pace.Elapsed() < std::min(wake, limit)) return;  // Fetch waits
    if (wake > limit) return WaitUntil(limit) ? End("the time is over") : void();
    if (!WaitUntil(wake)) return;
    if (timer <= std::min(event, poll)) return CallTimer();
    if (poll <= event) return m_polls->SendDue();
    const EventLine line = std::move(*m_next);
    m_next.reset();
    Play(line);
}

void SiteRunner::CallTimer() {
    m_lastPass = m_state.pace.Elapsed();
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
    const std::uint64_t at = m_state.ElapsedAt(due);
    return m_lastPass && at <= *m_lastPass ? *m_lastPass + kTick : at;
}

std::chrono::milliseconds SiteRunner::LongestWait() const {
    constexpr std::uint64_t kLongest = 1'000;
    const std::uint64_t now = m_state.pace.Elapsed();
    // Answers of agents do not wake a source that waits for input.
    const std::uint64_t longest = m_snmp && m_snmp->IsBusy() ? kAnswerTick : kLongest;
    std::uint64_t until = std::min({NextTimer().value_or(now + longest), NextPoll(), now + longest});
    if (m_options.limit) until = std::min(until, *m_options.limit);
    return std::chrono::milliseconds(until > now ? until - now : 0);
}

std::uint64_t SiteRunner::NextPoll() const {
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    return m_polls ? m_polls->NextDue().value_or(kNever) : kNever;
}

bool SiteRunner::WaitUntil(std::uint64_t elapsed) {
    constexpr std::uint64_t kLongest = 60'000;
    while (m_snmp && m_snmp->IsBusy()) {
        const std::uint64_t now = m_state.pace.Elapsed();
        if (now >= elapsed) return true;
        if (m_snmp->WaitForAnswer(std::chrono::milliseconds(std::min(elapsed - now, kLongest)))) return false;
    }
    m_state.pace.WaitUntil(elapsed);
    return true;
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
    RunRecord record = m_state.Begin("end");
    record["events"] = m_played;
    record["why"] = why;
    m_state.sink.Write(record);
    m_over = true;
}

}  // namespace brindle::host
