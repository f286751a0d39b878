// The repeats of behaviour lists and the timer that runs them. Tests: behaviour_list_repeat_test.cpp.
#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/list_frame.h"
#include "brindle/behaviour/list_registry.h"
#include "brindle/behaviour/observer_slot.h"
#include "brindle/behaviour/repeat_queue.h"
#include "brindle/behaviour/time_based_trigger.h"
#include "brindle/platform/clock.h"
#include "brindle/platform/programs.h"

using brindle::EngineCall;
using brindle::ListFrame;

void CCommandBehaviourList::AddRepeatAction(const CCommandTrigger* trigger, const CCommandEvent* event,
                                            const CCommandAction* action, const VariableManager* variables) {
    const EngineCall call;
    const std::shared_ptr<brindle::RepeatQueue> repeats = m_repeats;  // GetRepeatTime may destroy the list
    const int period = action->GetRepeatTime();
    if (!repeats->IsClosed()) Queue(*repeats, {trigger, event, action, variables, period, 0}, period);
}

void CCommandBehaviourList::AddRepeatTrigger(const CCommandTrigger* trigger, const CCommandEvent* event,
                                             const CCommandAction* action) {
    const EngineCall call;
    const std::shared_ptr<brindle::RepeatQueue> repeats = m_repeats;  // GetNextTime may destroy the list
    const std::int64_t delay = std::int64_t{trigger->GetNextTime()} * 1000;
    if (repeats->IsClosed()) return;
    if (delay > 0) {
        Queue(*repeats, {trigger, event, action, nullptr, brindle::SaturatedPeriod(delay), 0}, delay);
        return;
    }
    if (IBehaviourObserver* observer = brindle::CurrentObserver())
        observer->OnActionSkipped(this, trigger, action, event, IBehaviourObserver::kNotScheduled);
}

void CCommandBehaviourList::Queue(brindle::RepeatQueue& repeats, RepeatEntry entry, std::int64_t delay) {
    // What has been destroyed and only waits for the outermost call to return gets no new repeats.
    if (brindle::IsParked(entry.trigger) || brindle::IsParked(entry.action)) return;
    entry.due = brindle::DueAfter(brindle::SystemMilliseconds(), delay);
    const bool scheduled = dynamic_cast<const CTimeBasedTrigger*>(entry.trigger) != nullptr;
    repeats.Add(this, entry, scheduled, delay);
}

void CCommandBehaviourList::CancelRepeats(const CCommandTrigger* trigger) {
    const EngineCall call;
    const std::shared_ptr<brindle::RepeatQueue> repeats = m_repeats;  // Retest may destroy the list
    repeats->Cancel(this, trigger);
}

void CCommandBehaviourList::ResetRepeats() {
    const EngineCall call;
    const std::shared_ptr<brindle::RepeatQueue> repeats = m_repeats;
    repeats->Reset(this);
}

int CCommandBehaviourList::GetRepeatCount() const {
    return m_repeats->Count();
}

void CCommandBehaviourList::OnTimer() {
    const EngineCall call;
    const ListFrame frame(this);
    m_repeats->RunDue(this, brindle::TimerPass(brindle::SystemMilliseconds()));
}

void CCommandBehaviourList::CallOnTimer() {
    brindle::CurrentPrograms().Reap();
    const std::uint64_t now = brindle::SystemMilliseconds();
    if (brindle::EarliestOfAll() > now) return;
    const EngineCall call;
    const brindle::TimerPass pass(now);
    brindle::EarliestOfAllUpdate update;
    Registry::Walk walk(m_lObjects);
    while (CCommandBehaviourList* list = walk.Next()) {
        const ListFrame frame(list);
        if (list->m_repeats->Earliest() <= now) list->m_repeats->RunDue(list, pass);
        if (frame.List()) update.Include(list->m_repeats->Earliest());
    }
    update.Finish();
}

std::uint64_t CCommandBehaviourList::GetNextDue() {
    std::uint64_t next = brindle::kNeverDue;
    for (const CCommandBehaviourList* list = m_lObjects.first; list; list = list->m_next)
        next = std::min(next, list->m_repeats->NextDue());
    return next;
}
