// MenuLoader: where a host module's control menus come from, as other modules see it. Hosts implement it; the library
// supplies only its construction, copying and destruction, without state.
//
// The operations are slots that modules built apart call by number: never reorder them, never put one between.
// Menus and items count from 0; an index out of range answers "", 0 or false. Texts are bytes in the ANSI code page.
// Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class ControlMenuClientBase;

class BRINDLE_API MenuLoader {
  public:
    MenuLoader() noexcept;
    MenuLoader(const MenuLoader&) noexcept;
    MenuLoader& operator=(const MenuLoader&) noexcept;
    virtual ~MenuLoader();

    // 1: reads menus from a file (a host path) in addition to those there are. False: none was added.
    virtual bool LoadMenus(const char* file) = 0;
    // 2: forgets every menu.
    virtual void ClearMenus() = 0;
    // 3: how many menus there are.
    virtual int GetMenuCount() const = 0;
    // 4: the name of a menu.
    virtual CStringA GetMenuName(int menu) const = 0;
    // 5: the index of the menu of that name, without regard to case; -1: there is none.
    virtual int FindMenu(const char* name) const = 0;
    // 6: how many items a menu has.
    virtual int GetItemCount(int menu) const = 0;
    // 7: what the user reads; "" is a separator.
    virtual CStringA GetItemText(int menu, int item) const = 0;
    // 8: the macro command line of an item; "" when the client itself acts on the command.
    virtual CStringA GetItemCommandLine(int menu, int item) const = 0;
    // 9: the number the client gets when the item is chosen.
    virtual unsigned long GetItemCommand(int menu, int item) const = 0;
    // 10: shows the menu for a client, which outlives the call. False: nothing could be shown.
    virtual bool ShowMenu(int menu, ControlMenuClientBase& client) = 0;
};
