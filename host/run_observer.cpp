// Records of the engine's decisions. Tests: run_test.cpp.
#include "host/run_observer.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/time_based_trigger.h>

#include <utility>

#include "host/host_files.h"
#include "host/rule_trigger.h"

namespace brindle::host {

namespace {

// The behaviour's place in its list, from 1.
int NumberOf(const CCommandBehaviourList& list, const CCommandBehaviour* behaviour) {
    int number = 0;
    for (POSITION position = list.GetFirstChildPosition(); position;) {
        ++number;
        if (list.GetNextChild(position) == behaviour) return number;
    }
    return 0;
}

bool IsScheduled(const RepeatEntry& entry) {
    return dynamic_cast<const CTimeBasedTrigger*>(entry.trigger) != nullptr;
}

// What a rule was evaluated with.
RunRecord ValuesOf(const RuleTrigger& trigger) {
    RunRecord values = RunRecord::array();
    for (const SeenValue& seen : trigger.Seen()) {
        RunRecord value;
        if (!seen.address.empty()) value["address"] = seen.address;
        value["name"] = TextToUtf8(seen.name);
        if (seen.value) value["value"] = TextToUtf8(*seen.value);
        values.push_back(std::move(value));
    }
    return values;
}

}  // namespace

RunRecord RunObserver::Begin(const char* kind, const CCommandBehaviourList* list) const {
    RunRecord record = m_state.Begin(kind);
    if (const SiteObject* object = m_state.ObjectOf(list)) record["object"] = TextToUtf8(object->plan.name);
    return record;
}

RunRecord RunObserver::BeginRepeat(const char* what, const CCommandBehaviourList* list,
                                   const RepeatEntry& entry) const {
    RunRecord record = Begin(IsScheduled(entry) ? "schedule" : "repeat", list);
    record["what"] = what;
    record["trigger"] = ItemLabel(entry.trigger);
    record["action"] = ItemLabel(entry.action);
    return record;
}

void RunObserver::OnVerdict(const CCommandBehaviourList* list, const CCommandBehaviour* behaviour,
                            const CCommandTrigger* trigger, const CCommandEvent*, int verdict,
                            bool forUnlock) {
    const bool matters = verdict != CCommandTrigger::kNotConcerned && trigger->IsEnabled();
    if (!matters && !m_state.trace) return;
    RunRecord record = Begin("verdict", list);
    record["behaviour"] = NumberOf(*list, behaviour);
    record["trigger"] = ItemLabel(trigger);
    record["type"] = ItemType(trigger);
    record["verdict"] = verdict;
    if (const auto* explained = dynamic_cast<const ExplainedTrigger*>(trigger))
        record["why"] = explained->Why();
    if (const auto* rule = dynamic_cast<const RuleTrigger*>(trigger); rule && m_state.trace)
        if (RunRecord values = ValuesOf(*rule); !values.empty()) record["values"] = std::move(values);
    if (!trigger->IsEnabled()) record["disabled"] = true;
    if (forUnlock) record["unlock"] = true;
    m_state.sink.Write(record);
}

void RunObserver::OnActionRun(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                              const CCommandAction*, const CCommandEvent*) {
    m_state.current = m_state.ObjectOf(list);
    m_state.trigger = ItemLabel(trigger);
    m_state.by = "event";
}

void RunObserver::OnActionSkipped(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                  const CCommandAction* action, const CCommandEvent*, SkipReason reason) {
    if (!m_state.trace) return;
    constexpr const char* kReasons[] = {"disabled", "template", "not scheduled"};
    RunRecord record = Begin("skipped", list);
    record["trigger"] = ItemLabel(trigger);
    record["action"] = ItemLabel(action);
    record["why"] = kReasons[reason];
    m_state.sink.Write(record);
}

void RunObserver::OnUnlockAllowed(const CCommandBehaviourList*, const CCommandTrigger* trigger,
                                  const CCommandAction* action, const CCommandEvent*) {
    m_unlock = {ItemLabel(trigger), ItemLabel(action)};
}

void RunObserver::OnRepeatAdded(const CCommandBehaviourList* list, const RepeatEntry& entry, bool) {
    RunRecord record = BeginRepeat("added", list, entry);
    if (!IsScheduled(entry)) record["period"] = entry.period;
    record["due"] = m_state.ElapsedAt(entry.due);
    m_state.sink.Write(record);
}

void RunObserver::OnRepeatRun(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    m_state.current = m_state.ObjectOf(list);
    m_state.trigger = ItemLabel(entry.trigger);
    m_state.by = IsScheduled(entry) ? "schedule" : "repeat";
    if (!m_state.trace) return;
    RunRecord record = BeginRepeat("runs", list, entry);
    record["due"] = m_state.ElapsedAt(entry.due);
    m_state.sink.Write(record);
}

void RunObserver::OnRepeatCancelled(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    m_state.sink.Write(BeginRepeat("cancelled", list, entry));
}

void RunObserver::OnRepeatKept(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    if (m_state.trace) m_state.sink.Write(BeginRepeat("kept", list, entry));
}

RunObserver::Unlock RunObserver::TakeUnlock() {
    return std::exchange(m_unlock, {});
}

}  // namespace brindle::host
