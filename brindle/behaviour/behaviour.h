// CCommandBehaviour: one rule. When any of its triggers fires, its actions run. Thread: the engine's, as the whole
// tree (tree_item.h).
#pragma once

#include <string>

#include "brindle/behaviour/action_list.h"
#include "brindle/behaviour/tree_item.h"
#include "brindle/behaviour/trigger_list.h"

class CCommandBehaviourList;
class CCommandEvent;
class TraveralFunct;
class VariableManager;

namespace brindle {
struct ParkingAccess;
}

class BRINDLE_API CCommandBehaviour : public CCommandTreeItem {
  public:
    CCommandBehaviour();
    CCommandBehaviour(const CCommandBehaviour&) = delete;
    // Appends replicas of the other's actions, then of its triggers.
    CCommandBehaviour& operator=(const CCommandBehaviour& other);
    ~CCommandBehaviour() override;

    // Children for an editor: the triggers (only when there are two or more), then the actions. A position
    // counts them from 1.
    POSITION GetFirstChildPosition() const override;
    const CCommandTreeItem* GetNextChild(POSITION& position) const override;
    int GetChildCount() const override;
    bool IsVisible() const override;
    CStringA GetText(int kind) override;
    CStringA GetReflect() override;
    int GetImage() const override;
    // The only trigger when there is exactly one, so that an editor opens it; else the behaviour.
    CCommandTreeItem* GetRealObject() override;
    // Kept: the behaviour's own enabled flag is neither written nor read; a loaded behaviour is enabled.
    void Save(XMLWriter& writer) const override;
    // Reads inside the "Behaviour" section the list has entered: triggers, then actions.
    void Load(XMLReader& reader) override;

    // These as in CCommandTriggerList and CCommandActionList.
    void AddTrigger(CCommandTrigger* trigger);
    void RemoveTrigger(CCommandTrigger* trigger);
    void AddAction(CCommandAction* action);
    void RemoveAction(CCommandAction* action);
    void MoveAction(CCommandAction* action, CCommandAction* before);
    int GetTriggerCount() const;
    void Init();
    bool HasConfig(const std::string& kind) const;
    // Visits the behaviour, its triggers, its actions.
    void Traverse(const TraveralFunct& visitor);

    // Tests every trigger, enabled or not, and acts on the verdicts of the enabled ones. The event is
    // borrowed, as are the list and the variables (null: none).
    void OnEvent(const CCommandEvent* event, CCommandBehaviourList* list, const VariableManager* variables);
    // Whether a fired trigger's actions would unlock. Kept: enabled flags are not consulted.
    bool CanUnLock(const CCommandEvent* event, CCommandBehaviourList* list);

  private:
    friend class CCommandBehaviourList;
    friend struct BehaviourLayout;
    friend struct brindle::ParkingAccess;

    // Acts on one verdict of one trigger.
    void Deliver(CCommandTrigger* trigger, int verdict, const CCommandEvent* event,
                 CCommandBehaviourList* list, const VariableManager* variables);

    CCommandTriggerList m_triggers;
    CCommandActionList m_actions;
};
