// ActionChoice: a behaviour list while somebody chooses what it does: a working copy of its behaviours, triggers and
// actions, whose items are enabled, given other attributes, removed and joined by new ones of the registered types. The
// list itself is not touched until Apply. It knows no window. Thread: the station's.
#pragma once

#include <brindle/behaviour/behaviour_list.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute.h"

namespace brindle::host {

// A trigger or an action of the working copy.
class ChosenItem {
  public:
    // One attribute as an editor shows it.
    struct Value {
        std::string name;
        std::string text;
        std::string expects;
        std::string why;  // why the text cannot be read, which then is what was written last; empty: it can
    };

    // A copy of an item of the list; one that cannot be copied can only be removed.
    explicit ChosenItem(CCommandTrigger& trigger);
    explicit ChosenItem(CCommandAction& action);
    // A new item, taken over.
    explicit ChosenItem(std::unique_ptr<CCommandTrigger> trigger);
    explicit ChosenItem(std::unique_ptr<CCommandAction> action);

    bool IsTrigger() const noexcept { return m_isTrigger; }
    bool IsNew() const noexcept { return !m_original; }
    // The item of the list; null: a new one.
    const CCommandTreeItem* Original() const noexcept { return m_original; }
    // Whether it can be changed.
    bool IsCopied() const noexcept { return m_copy != nullptr; }
    // Type and what tells it apart: "State Trigger: Camera lost".
    std::string Text() const;
    bool IsEnabled() const;
    void SetEnabled(bool enabled);

    std::vector<Value> Values() const;
    // Returns why the text cannot be read, or an empty text. A text that cannot be read stays what is shown, and keeps
    // the choice from being taken.
    std::string Set(const std::string& name, const std::string& text);
    // The text of a rule trigger's rule; nothing for any other item.
    std::optional<std::string> Rule() const;
    bool IsChanged() const;
    // What is wrong with it: unreadable texts, and conflicts of an item that is new or changed.
    std::vector<std::string> Faults() const;

  private:
    friend class ActionChoice;

    void Remember();
    AttributeTable Table() const;
    void WriteToOriginal() const;

    CCommandTreeItem* m_original = nullptr;
    std::unique_ptr<CCommandTreeItem> m_copy;
    bool m_isTrigger;
    // As the original was: it may have gone since.
    std::string m_text;
    bool m_wasEnabled = true;
    std::vector<std::string> m_before;            // the texts of its attributes
    std::map<std::string, std::string> m_unread;  // texts that could not be read, by attribute
};

struct ChosenBehaviour {
    CCommandBehaviour* original = nullptr;  // null: a new one
    std::vector<std::unique_ptr<ChosenItem>> triggers;
    std::vector<std::unique_ptr<ChosenItem>> actions;
    std::vector<const CCommandTreeItem*> before;  // triggers and actions of the original

    // What people call it: its triggers.
    std::string Text() const;
    // Whether it differs from the one in the list, whose place does not count.
    bool IsChanged() const;
};

class ActionChoice {
  public:
    // A type that may be added.
    struct Type {
        std::string name;  // as registered
        std::string text;  // as shown
        bool isTrigger = false;
    };

    // The list is borrowed. `host`: actions that cannot be used there are not
    // offered.
    ActionChoice(CCommandBehaviourList& list, eHostType host);

    const std::vector<Type>& Types() const noexcept { return m_types; }
    const std::vector<std::unique_ptr<ChosenBehaviour>>& Behaviours() const noexcept { return m_behaviours; }

    ChosenBehaviour* AddBehaviour();
    // Behind the others. Null when the registry gives no such item.
    ChosenItem* Add(ChosenBehaviour& behaviour, const Type& type);
    void Remove(const ChosenBehaviour* behaviour);
    void Remove(const ChosenItem* item);

    // The first thing that keeps the choice from being taken; empty: nothing does.
    std::string Fault() const;
    // Whether Apply would change the list.
    bool IsChanged() const;
    // Changes the list as chosen. Behaviours that did not change stay, with their repeats; the others begin anew, and
    // what they started ends. False, nothing changed, when the list is another one than it was, because its file was
    // read again for example. The choice is used up in both cases.
    bool Apply();

  private:
    void FindTypes(eHostType host);
    static void ApplyTo(CCommandBehaviour& behaviour, ChosenBehaviour& chosen);

    CCommandBehaviourList& m_list;
    std::vector<CCommandBehaviour*> m_before;  // of the list, as it was ...
    std::string m_beforeText;                  // ... and what it was saved as
    std::vector<Type> m_types;
    std::vector<std::unique_ptr<ChosenBehaviour>> m_behaviours;
};

}  // namespace brindle::host
