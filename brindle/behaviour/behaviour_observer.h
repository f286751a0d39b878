// IBehaviourObserver: lets a host show why something fired, and why it did not. One observer for the process;
// it is told everything the behaviour engine decides, in the order it happens, on the thread where it
// happens. Without one the engine pays one predictable branch.
//
// Objects passed are borrowed for the call. An observer only watches: it must not change lists, behaviours or
// repeats, and must not throw. Every operation does nothing by default.
#pragma once

#include "brindle/behaviour/repeat_entry.h"
#include "brindle/framework/export.h"

class CCommandBehaviour;
class CCommandBehaviourList;

class BRINDLE_API IBehaviourObserver {
  public:
    enum SkipReason {
        kDisabled,      // the action is disabled
        kTemplate,      // the action is a template
        kNotScheduled,  // a time based trigger has no next time
    };

    // A trigger's verdict, 0 included; `forUnlock` when it was asked by CanUnLock. The trigger may be
    // disabled: then nothing follows from the verdict of an ordinary event.
    virtual void OnVerdict(const CCommandBehaviourList* list, const CCommandBehaviour* behaviour,
                           const CCommandTrigger* trigger, const CCommandEvent* event, int verdict,
                           bool forUnlock);
    // An action is about to run at once for a fired trigger.
    virtual void OnActionRun(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                             const CCommandAction* action, const CCommandEvent* event);
    virtual void OnActionSkipped(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                 const CCommandAction* action, const CCommandEvent* event, SkipReason reason);
    // An action that allows an unlock.
    virtual void OnUnlockAllowed(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                 const CCommandAction* action, const CCommandEvent* event);
    // A repeat was queued: of a repeating action, or of a time based trigger (`scheduled`).
    virtual void OnRepeatAdded(const CCommandBehaviourList* list, const RepeatEntry& entry, bool scheduled);
    // A due repeat is about to run; its due time is already the next one.
    virtual void OnRepeatRun(const CCommandBehaviourList* list, const RepeatEntry& entry);
    // A repeat was removed, its event still alive; or asked to end and kept because Retest said so.
    virtual void OnRepeatCancelled(const CCommandBehaviourList* list, const RepeatEntry& entry);
    virtual void OnRepeatKept(const CCommandBehaviourList* list, const RepeatEntry& entry);

  protected:
    ~IBehaviourObserver() = default;  // never destroyed through this interface
};

// Installs the observer (not owned; null: none). Returns the one installed before, or null.
BRINDLE_API IBehaviourObserver* RegisterBehaviourObserver(IBehaviourObserver* observer) noexcept;
