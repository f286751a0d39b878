// CCommandActionList: the ordered actions of one behaviour, the registry of action types, and the one piece
// of engine logic that decides how an action runs for a fired trigger: at once, at once and repeatedly, or
// only from the timer. The list owns its actions. Null items are kept and counted, and skipped by every walk,
// save and run. Thread: the engine's, as the whole tree (tree_item.h).
#pragma once

#include "brindle/behaviour/item_list.h"
#include "brindle/framework/list.h"
#include "brindle/framework/string_a.h"

class CCommandAction;
class CCommandBehaviourList;
class CCommandEvent;
class CCommandTrigger;
class VariableManager;
class XMLReader;
class XMLWriter;

namespace brindle {
struct ParkingAccess;
}

class BRINDLE_API CCommandActionList {
  public:
    using Factory = CCommandAction* (*)(unsigned long);

    CCommandActionList();
    CCommandActionList(const CCommandActionList&) = delete;
    // Appends a replica of each of the other list's actions.
    // Kept: the list is not emptied first, so assigning to a filled list adds to it.
    CCommandActionList& operator=(const CCommandActionList& other);

    virtual ~CCommandActionList();  // destroys the actions
    // These as in CCommandTreeItem; they stand here because the list is no item of the tree.
    virtual POSITION GetFirstChildPosition() const;
    virtual const CCommandAction* GetNextChild(POSITION& position) const;
    virtual int GetChildCount() const;
    virtual bool IsVisible() const;
    virtual CStringA GetText();
    virtual int GetImage() const;
    virtual void Save(XMLWriter& writer) const;
    // Appends the actions of the next "ActionList" section; names nobody registered are skipped.
    virtual void Load(XMLReader& reader);

    // Registry: as in CCommandTriggerList.
    static void Register(const char* typeName, Factory factory);
    static CCommandAction* CreateObject(const char* typeName, unsigned long id);
    static void GetTypeList(CStringList& names);

    // Takes ownership. Kept: adding puts the action at the front, loading appends.
    void Add(CCommandAction* action);
    // Puts the action just ahead of `before`, or at the end when that is null, not in the list or the action
    // itself.
    void Move(CCommandAction* action, CCommandAction* before);
    void Remove(CCommandAction* action);  // destroys it; ignored when it is not in the list

    // Runs the actions for a fired trigger with the variable scope installed (borrowed; may be null), queues
    // the repeating ones, and for a time based trigger only queues.
    void Go(CCommandBehaviourList* list, const CCommandEvent* event, const CCommandTrigger* trigger,
            const VariableManager* variables) const;
    // Whether an action would release a lock held by the host. Kept: disabled actions count, unlike in Go.
    bool CanUnLock(CCommandBehaviourList* list, const CCommandEvent* event,
                   const CCommandTrigger* trigger) const;

  private:
    friend class CCommandBehaviour;
    friend class CCommandBehaviourList;
    friend struct BehaviourLayout;
    friend struct brindle::ParkingAccess;
    brindle::ItemList<CCommandAction> m_actions{false};
};
