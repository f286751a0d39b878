// RunObserver: turns what the behaviour engine decides into records, and keeps track of whose action runs.
#pragma once

#include <brindle/behaviour/behaviour_observer.h>

#include "host/run_state.h"

namespace brindle::host {

class RunObserver final : public IBehaviourObserver {
  public:
    explicit RunObserver(RunState& state) : m_state(state) {}

    void OnVerdict(const CCommandBehaviourList* list, const CCommandBehaviour* behaviour,
                   const CCommandTrigger* trigger, const CCommandEvent* event, int verdict,
                   bool forUnlock) override;
    void OnActionRun(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                     const CCommandAction* action, const CCommandEvent* event) override;
    void OnActionSkipped(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                         const CCommandAction* action, const CCommandEvent* event,
                         SkipReason reason) override;
    void OnUnlockAllowed(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                         const CCommandAction* action, const CCommandEvent* event) override;
    void OnRepeatAdded(const CCommandBehaviourList* list, const RepeatEntry& entry, bool scheduled) override;
    void OnRepeatRun(const CCommandBehaviourList* list, const RepeatEntry& entry) override;
    void OnRepeatCancelled(const CCommandBehaviourList* list, const RepeatEntry& entry) override;
    void OnRepeatKept(const CCommandBehaviourList* list, const RepeatEntry& entry) override;

    // What allowed the last unlock; empty when nothing did.
    struct Unlock {
        std::string trigger;
        std::string action;
    };
    Unlock TakeUnlock();

  private:
    RunRecord Begin(const char* kind, const CCommandBehaviourList* list) const;
    RunRecord BeginRepeat(const char* what, const CCommandBehaviourList* list,
                          const RepeatEntry& entry) const;

    RunState& m_state;
    Unlock m_unlock;
};

}  // namespace brindle::host
