// CCommandTriggerList: the ordered triggers of one behaviour and, through static members, the registry of
// trigger types. The list owns its triggers.
//
// A null item that a Replicate put into the list is kept and counted, and skipped by every walk, save and
// run. Thread: the engine's, as the whole tree (tree_item.h).
#pragma once

#include "brindle/behaviour/item_list.h"
#include "brindle/behaviour/tree_item.h"

class CCommandTrigger;

namespace brindle {
struct ParkingAccess;
}

class BRINDLE_API CCommandTriggerList : public CCommandTreeItem {
  public:
    using Factory = CCommandTrigger* (*)(unsigned long);

    CCommandTriggerList();
    CCommandTriggerList(const CCommandTriggerList&) = delete;
    // Appends a replica of each of the other list's triggers.
    // Kept: the list is not emptied first, so assigning to a filled list adds to it.
    CCommandTriggerList& operator=(const CCommandTriggerList& other);
    ~CCommandTriggerList() override;  // destroys the triggers

    // Registry, one for the process; written at start-up. Of several entries of one name the first is found.
    static void Register(const char* typeName, Factory factory);
    // A new trigger of that type (case does not matter) the caller owns; null when there is none. The number
    // goes to the factory, cut to 32 bits.
    static CCommandTrigger* CreateObject(const char* typeName, unsigned long id);
    // Empties the list, then appends every registered name in registration order.
    static void GetTypeList(CStringList& names);

    void Add(CCommandTrigger* trigger);     // at the end; takes ownership
    void Remove(CCommandTrigger* trigger);  // destroys it; ignored when it is not in the list
    // Resets the state of every trigger.
    void Init();

    POSITION GetFirstChildPosition() const override;
    const CCommandTreeItem* GetNextChild(POSITION& position) const override;
    int GetChildCount() const override;
    bool IsVisible() const override;
    CStringA GetText(int kind) override;
    CStringA GetReflect() override;
    int GetImage() const override;
    void Save(XMLWriter& writer) const override;
    // Appends the triggers of the next "TriggerList" section; names nobody registered are skipped.
    void Load(XMLReader& reader) override;

  private:
    friend class CCommandBehaviour;
    friend class CCommandBehaviourList;
    friend struct BehaviourLayout;
    friend struct brindle::ParkingAccess;
    brindle::ItemList<CCommandTrigger> m_triggers{true};
};
