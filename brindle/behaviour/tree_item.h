// CCommandTreeItem: the base of every node of the behaviour tree. It gives an editor a uniform view
// (children, text, image, rename, configuration dialog, template flag) and persistence a uniform Load and
// Save.
//
// Virtual operations stand in slot order, which is part of the binary interface.
// Thread: the whole tree belongs to the thread that runs the behaviour engine.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/list.h"
#include "brindle/framework/string_a.h"

class XMLReader;
class XMLWriter;
class CCommandConfigDialog;  // the host's user-interface object; only passed on
namespace brindle {
struct ParkingAccess;
}

class BRINDLE_API CCommandTreeItem {
  public:
    CCommandTreeItem() noexcept = default;
    CCommandTreeItem(const CCommandTreeItem& other) noexcept : m_enabled(other.m_enabled) {}
    CCommandTreeItem& operator=(const CCommandTreeItem& other) noexcept;
    virtual ~CCommandTreeItem();

    // Children, in order: the position of the first one (null: none); then each child, the position moving on
    // to the next one (null behind the last). A returned child belongs to this item and may be null.
    virtual POSITION GetFirstChildPosition() const = 0;
    virtual const CCommandTreeItem* GetNextChild(POSITION& position) const = 0;
    virtual int GetChildCount() const = 0;
    virtual bool IsVisible() const = 0;
    // Display text; 1 asks for the text of the item's type. The meaning of other numbers is the item's.
    virtual CStringA GetText(int kind) = 0;
    virtual CStringA GetReflect() = 0;
    virtual int GetImage() const;
    // Seconds until the item should act next; 0 or less: not scheduled.
    virtual int GetNextTime() const;
    // The item an editor should open for this one, never null; it belongs to this one's owner.
    virtual CCommandTreeItem* GetRealObject();
    // The dialog that configures the item, or null; the caller owns it.
    virtual CCommandConfigDialog* CreateConfigDialog() const;
    virtual bool CanRename() const;
    virtual void Rename(const char* name);
    // Writes a child section "Enabled" with the attribute "value" into the current section. Derived items
    // call it inside their own element.
    virtual void Save(XMLWriter& writer) const;
    // Reads it back, continuing from the reader's position. Absent or unreadable: the flag stays.
    virtual void Load(XMLReader& reader);
    virtual void ReplaceData(XMLReader& reader, XMLWriter& writer, CStringA first, CStringA second,
                             CStringA third, CStringA fourth);
    virtual void GetResultInfo(CStringA& first, CStringA& second);
    virtual bool IsSysCreated();
    virtual void SetTemplate(bool isTemplate);
    virtual bool IsTemplate();

    bool IsEnabled() const noexcept { return m_enabled; }
    // What a disabled item still does is said where it runs.
    void SetEnabled(bool enabled) noexcept;

  private:
    friend struct BehaviourLayout;
    friend struct brindle::ParkingAccess;
    bool m_enabled = true;
    // Destroyed, and waiting with others for the outermost engine call to return. In the item itself, so that
    // destroying one takes no memory.
    bool m_isParked = false;
    CCommandTreeItem* m_nextParked = nullptr;
};
