// ControlMenuClientBase: whoever a control menu is shown for, as host modules see each other: a map object, a button,
// a meter. Hosts implement it; the library supplies only its construction, copying and destruction, without state.
//
// The operations are slots that modules built apart call by number: never reorder them, never put one between.
// Texts are bytes in the ANSI code page. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"
#include "brindle/settings/host_type.h"

struct FullAddress_t;
class CCommandBehaviourList;
class VariableManager;

class BRINDLE_API ControlMenuClientBase {
  public:
    ControlMenuClientBase() noexcept;
    ControlMenuClientBase(const ControlMenuClientBase&) noexcept;
    ControlMenuClientBase& operator=(const ControlMenuClientBase&) noexcept;
    virtual ~ControlMenuClientBase();

    // 1: what people call the client.
    virtual CStringA GetClientCaption() const = 0;
    // 2: the kind of object it is.
    virtual brindle::eHostType GetClientHostType() const = 0;
    // 3: its device. False, `address` unchanged, when it has none.
    virtual bool GetClientAddress(FullAddress_t& address) const = 0;
    // 4: its behaviours; null when it has none. The client keeps them.
    virtual CCommandBehaviourList* GetClientBehaviours() = 0;
    // 5: the scope its commands are expanded with; null: none. The client keeps it.
    virtual const VariableManager* GetClientVariables() const = 0;
    // 6: whether the item of that command may be chosen at present.
    virtual bool IsMenuCommandEnabled(unsigned long command) const = 0;
    // 7: the user chose the item of that command.
    virtual void OnMenuCommand(unsigned long command) = 0;
    // 8: the menu was closed, with or without a choice; comes after OnMenuCommand.
    virtual void OnMenuClosed() = 0;
};
