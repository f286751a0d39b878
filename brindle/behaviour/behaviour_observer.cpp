#include "brindle/behaviour/behaviour_observer.h"

#include "brindle/behaviour/engine_call.h"
#include "brindle/behaviour/observer_slot.h"

namespace brindle {
constinit std::atomic<IBehaviourObserver*> g_behaviourObserver{nullptr};
}

void IBehaviourObserver::OnVerdict(const CCommandBehaviourList*, const CCommandBehaviour*,
                                   const CCommandTrigger*, const CCommandEvent*, int, bool) {}
void IBehaviourObserver::OnActionRun(const CCommandBehaviourList*, const CCommandTrigger*,
                                     const CCommandAction*, const CCommandEvent*) {}
void IBehaviourObserver::OnActionSkipped(const CCommandBehaviourList*, const CCommandTrigger*,
                                         const CCommandAction*, const CCommandEvent*, SkipReason) {}
void IBehaviourObserver::OnUnlockAllowed(const CCommandBehaviourList*, const CCommandTrigger*,
                                         const CCommandAction*, const CCommandEvent*) {}
void IBehaviourObserver::OnRepeatAdded(const CCommandBehaviourList*, const RepeatEntry&, bool) {}
void IBehaviourObserver::OnRepeatRun(const CCommandBehaviourList*, const RepeatEntry&) {}
void IBehaviourObserver::OnRepeatCancelled(const CCommandBehaviourList*, const RepeatEntry&) {}
void IBehaviourObserver::OnRepeatKept(const CCommandBehaviourList*, const RepeatEntry&) {}

IBehaviourObserver* RegisterBehaviourObserver(IBehaviourObserver* observer) noexcept {
    // A pass in progress looks the observer up once for each plan.
    brindle::OutdatePlans();
    return brindle::g_behaviourObserver.exchange(observer, std::memory_order_acq_rel);
}
