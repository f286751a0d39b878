// CCommandAction: the base of every action, what a behaviour does when one of its triggers fires. Concrete
// actions are the host's, made known through CCommandActionList::Register. Thread: the engine's, as the whole tree
// (tree_item.h).
#pragma once

#include "brindle/behaviour/tree_item.h"
#include "brindle/behaviour/trigger.h"

class CCommandEvent;
class VariableManager;

class BRINDLE_API CCommandAction : public CCommandTreeItem {
  public:
    CCommandAction() noexcept = default;
    CCommandAction(const CCommandAction& other) noexcept = default;
    CCommandAction& operator=(const CCommandAction& other) noexcept = default;
    // Makes pending repeats of this action inert at once: they never run again.
    ~CCommandAction() override;

    POSITION GetFirstChildPosition() const override;
    const CCommandTreeItem* GetNextChild(POSITION& position) const override;
    int GetChildCount() const override;
    bool IsVisible() const override;
    void SetTemplate(bool isTemplate) override;
    bool IsTemplate() override;

    // Performs the action for the event.
    virtual void Fire(const CCommandEvent* event) = 0;
    // Whether the action, run for the event, would release a lock held by the host.
    virtual bool CanUnLock(const CCommandEvent* event) const;
    // Whether the action repeats while its trigger's condition lasts, and the period in milliseconds.
    virtual bool IsRepeat() const;
    virtual int GetRepeatTime() const;
    // Whether system creation generated the action.
    // Kept: a second operation beside the tree item's non-const one of the same name; both slots exist.
    virtual bool IsSysCreated() const;
    using CCommandTreeItem::IsSysCreated;
    // A copy the caller owns, or null when the action cannot be copied.
    virtual CCommandAction* Replicate();
    virtual bool SupportsHostType(CCommandTrigger::eHostType host) const;

    // The variable scope of the run in progress; null outside a run. Borrowed.
    void setVariableManager(const VariableManager* variables) noexcept { m_variables = variables; }
    const VariableManager* variableManager() const noexcept { return m_variables; }

  private:
    friend struct BehaviourLayout;
    const VariableManager* m_variables = nullptr;
};
