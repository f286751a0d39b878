// CCommandTrigger: the base of every trigger, the thing that looks at an event and decides whether a
// behaviour's actions run. Concrete triggers are the host's, made known through
// CCommandTriggerList::Register. Thread: the engine's, as the whole tree (tree_item.h).
#pragma once

#include <string>

#include "brindle/behaviour/tree_item.h"
#include "brindle/settings/host_type.h"

class CCommandEvent;

class BRINDLE_API CCommandTrigger : public CCommandTreeItem {
  public:
    // The kind of host object that owns a behaviour list.
    using eHostType = brindle::eHostType;
    using enum brindle::eHostType;

    // What Test answers.
    enum Verdict {
        kNotConcerned = 0,
        kEnded = 1,  // the condition has ended: the trigger's pending repeats are cancelled
        kFired = 2,  // the behaviour's actions run
    };

    CCommandTrigger() = default;
    CCommandTrigger(const CCommandTrigger& other) = default;
    CCommandTrigger& operator=(const CCommandTrigger& other) = default;
    // Makes pending repeats of this trigger inert at once: they never run again.
    ~CCommandTrigger() override;

    POSITION GetFirstChildPosition() const override;
    const CCommandTreeItem* GetNextChild(POSITION& position) const override;
    int GetChildCount() const override;
    bool IsVisible() const override;
    bool CanRename() const override;
    void Rename(const char* name) override;

    // The verdict on an event. Every trigger sees every event, also while disabled, to keep its state
    // current.
    virtual int Test(const CCommandEvent* event) = 0;
    // Whether a repeat this trigger started for that event should go on although the condition has ended.
    virtual bool Retest(const CCommandEvent* event) const;
    // Kept: a second operation every concrete trigger supplies; the slot is part of the binary interface and
    // the engine never calls it.
    virtual void Reserved23() = 0;
    // Resets the trigger's own state; called when a host initialises a behaviour list again.
    virtual void Init();
    // A copy the caller owns, or null when the trigger cannot be copied.
    virtual CCommandTrigger* Replicate();
    // Whether the trigger is of a named configuration kind: "StateTrigger", "StateTrigger::AnyChange", ...
    virtual bool HasConfig(const std::string& kind) const;

    const CStringA& GetName() const noexcept { return m_name; }

  private:
    friend struct BehaviourLayout;
    CStringA m_name;
};
