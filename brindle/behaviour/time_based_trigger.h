// CTimeBasedTrigger: the base of triggers that fire on a schedule. Their actions never run at once: they are
// queued with the trigger's next interval (GetNextTime, seconds), and the timer asks again at every run.
// A host derives its schedule from it; the engine recognises the class by its run-time type and, before
// anything is queued, by the type text. Thread: the engine's, as the whole tree (tree_item.h).
#pragma once

#include "brindle/behaviour/trigger.h"

class BRINDLE_API CTimeBasedTrigger : public CCommandTrigger {
  public:
    static constexpr const char* kTypeText = "Time Based Trigger";

    ~CTimeBasedTrigger() override;
    // The type text for 1, else the trigger's name.
    CStringA GetText(int kind) override;
};
