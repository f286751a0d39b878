// Choosing what a behaviour list does. Tests: action_choice_test.cpp.
#include "host/action_choice.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger_list.h>

#include <algorithm>
#include <set>

#include "host/behaviour_items.h"
#include "host/configured_item.h"
#include "host/mask_header_action.h"
#include "host/mask_unit_action.h"
#include "host/rule_trigger.h"

namespace brindle::host {

namespace {

std::string TextOf(CCommandTreeItem& item) {
    std::string text = item.GetText(1).str();
    const std::string reflect = item.GetReflect().str();
    return reflect.empty() ? text : text + ": " + reflect;
}

// Takes what the choice has left out from a behaviour; what is left of a trigger's repeats was ended before.
template <class T, class Take>
void TakeLeftOut(const std::vector<T*>& present, const std::vector<std::unique_ptr<ChosenItem>>& chosen,
                 const Take& take) {
    for (T* item : present) {
        const auto is = [&](const auto& kept) { return kept->Original() == item; };
        if (std::none_of(chosen.begin(), chosen.end(), is)) take(item);
    }
}

// Whether the action has more to say than its attributes.
bool KeepsMore(const CCommandAction* action) {
    return dynamic_cast<const MaskUnitAction*>(action) || dynamic_cast<const MaskHeaderAction*>(action);
}

}  // namespace

ChosenItem::ChosenItem(CCommandTrigger& trigger)
    : m_original(&trigger), m_copy(trigger.Replicate()), m_isTrigger(true) {
    Remember();
}
ChosenItem::ChosenItem(CCommandAction& action)
    : m_original(&action), m_copy(action.Replicate()), m_isTrigger(false) {
    Remember();
}
ChosenItem::ChosenItem(std::unique_ptr<CCommandTrigger> trigger)
    : m_copy(std::move(trigger)), m_isTrigger(true) {}
ChosenItem::ChosenItem(std::unique_ptr<CCommandAction> action)
    : m_copy(std::move(action)), m_isTrigger(false) {}

void ChosenItem::Remember() {
    m_text = TextOf(*m_original);
    m_wasEnabled = m_original->IsEnabled();
    for (const Attribute& attribute : Table()) m_before.push_back(attribute.text());
}

std::string ChosenItem::Text() const {
    return m_copy ? TextOf(*m_copy) : m_text;
}

bool ChosenItem::IsEnabled() const {
    return m_copy ? m_copy->IsEnabled() : m_wasEnabled;
}

void ChosenItem::SetEnabled(bool enabled) {
    if (m_copy) m_copy->SetEnabled(enabled);
}

AttributeTable ChosenItem::Table() const {
    auto* const configured = dynamic_cast<ConfiguredItem*>(m_copy.get());
    return configured ? configured->Attributes() : AttributeTable();
}

std::vector<ChosenItem::Value> ChosenItem::Values() const {
    std::vector<Value> values;
    for (const Attribute& attribute : Table()) {
        Value value{attribute.name, attribute.text(), attribute.expects, {}};
        if (const auto unread = m_unread.find(attribute.name); unread != m_unread.end()) {
            value.text = unread->second;
            value.why = attribute.parse(value.text);
        }
        values.push_back(std::move(value));
    }
    return values;
}

std::string ChosenItem::Set(const std::string& name, const std::string& text) {
    for (const Attribute& attribute : Table()) {
        if (attribute.name != name) continue;
        m_unread.erase(name);
        if (text == attribute.text()) return {};
        std::string why = attribute.parse(text);
        if (!why.empty()) m_unread[name] = text;
        return why;
    }
    return "it has no attribute \"" + name + "\"";
}

std::optional<std::string> ChosenItem::Rule() const {
    if (!dynamic_cast<const RuleTrigger*>(m_copy.get())) return {};
    for (const Attribute& attribute : Table())
        if (attribute.name == "Rule") return attribute.text();
    return {};
}

bool ChosenItem::IsChanged() const {
    if (!m_original) return true;
    if (!m_copy) return false;
    if (!m_unread.empty() || m_copy->IsEnabled() != m_wasEnabled) return true;
    const AttributeTable now = Table();
    return !std::equal(
        now.begin(), now.end(), m_before.begin(), m_before.end(),
        [](const Attribute& attribute, const std::string& text) { return attribute.text() == text; });
}

std::vector<std::string> ChosenItem::Faults() const {
    std::vector<std::string> faults;
    for (const Value& value : Values())
        if (!value.why.empty()) faults.push_back("attribute \"" + value.name + "\": " + value.why);
    const auto* const configured = dynamic_cast<const ConfiguredItem*>(m_copy.get());
    if (configured && IsChanged())
        for (std::string& conflict : configured->Conflicts()) faults.push_back(std::move(conflict));
    return faults;
}

void ChosenItem::WriteToOriginal() const {
    m_original->SetEnabled(m_copy->IsEnabled());
    auto* const configured = dynamic_cast<ConfiguredItem*>(m_original);
    if (!configured) return;
    const AttributeTable now = Table();
    const AttributeTable table = configured->Attributes();
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].text() != now[i].text()) table[i].parse(now[i].text());
}

std::string ChosenBehaviour::Text() const {
    std::string text;
    for (const auto& trigger : triggers) text += (text.empty() ? "" : ", ") + trigger->Text();
    return text.empty() ? "no trigger" : text;
}

bool ChosenBehaviour::IsChanged() const {
    if (!original || before.size() != triggers.size() + actions.size()) return true;
    std::size_t i = 0;
    for (const auto* const items : {&triggers, &actions})
        for (const auto& item : *items)
            if (item->Original() != before[i++] || item->IsChanged()) return true;
    return false;
}

ActionChoice::ActionChoice(CCommandBehaviourList& list, eHostType host)
    : m_list(list), m_before(BehavioursOf(list)), m_beforeText(SavedText(list)) {
    FindTypes(host);
    for (CCommandBehaviour* behaviour : m_before) {
        auto chosen = std::make_unique<ChosenBehaviour>();
        chosen->original = behaviour;
        for (CCommandTrigger* trigger : TriggersOf(*behaviour))
            chosen->triggers.push_back(std::make_unique<ChosenItem>(*trigger));
        for (CCommandAction* action : ActionsOf(*behaviour))
            chosen->actions.push_back(std::make_unique<ChosenItem>(*action));
        for (const auto* const items : {&chosen->triggers, &chosen->actions})
            for (const auto& item : *items) chosen->before.push_back(item->Original());
        m_behaviours.push_back(std::move(chosen));
    }
}

// Of several entries of one name only the first is ever found. What a type keeps beside its attributes cannot be edited
// here, so such types are not offered.
void ActionChoice::FindTypes(eHostType host) {
    CStringList names;
    std::set<std::string> found;
    CCommandActionList::GetTypeList(names);
    for (POSITION at = names.GetHeadPosition(); at;) {
        const CStringA name = names.GetNext(at);
        const std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject(name, 0));
        if (KeepsMore(action.get())) continue;
        if (action && action->SupportsHostType(host) && found.insert(name.str()).second)
            m_types.push_back({name.str(), action->GetText(1).str(), false});
    }
    found.clear();
    CCommandTriggerList::GetTypeList(names);
    for (POSITION at = names.GetHeadPosition(); at;) {
        const CStringA name = names.GetNext(at);
        const std::unique_ptr<CCommandTrigger> trigger(CCommandTriggerList::CreateObject(name, 0));
        if (trigger && found.insert(name.str()).second)
            m_types.push_back({name.str(), trigger->GetText(1).str(), true});
    }
}

ChosenBehaviour* ActionChoice::AddBehaviour() {
    m_behaviours.push_back(std::make_unique<ChosenBehaviour>());
    return m_behaviours.back().get();
}

ChosenItem* ActionChoice::Add(ChosenBehaviour& behaviour, const Type& type) {
    std::unique_ptr<ChosenItem> item;
    if (type.isTrigger) {
        std::unique_ptr<CCommandTrigger> made(CCommandTriggerList::CreateObject(type.name.c_str(), 0));
        if (made) item = std::make_unique<ChosenItem>(std::move(made));
    } else {
        std::unique_ptr<CCommandAction> made(CCommandActionList::CreateObject(type.name.c_str(), 0));
        if (made) item = std::make_unique<ChosenItem>(std::move(made));
    }
    if (!item) return nullptr;
    auto& items = type.isTrigger ? behaviour.triggers : behaviour.actions;
    items.push_back(std::move(item));
    return items.back().get();
}

void ActionChoice::Remove(const ChosenBehaviour* behaviour) {
    std::erase_if(m_behaviours, [&](const auto& chosen) { return chosen.get() == behaviour; });
}

void ActionChoice::Remove(const ChosenItem* item) {
    const auto is = [&](const auto& chosen) { return chosen.get() == item; };
    for (const auto& behaviour : m_behaviours) {
        std::erase_if(behaviour->triggers, is);
        std::erase_if(behaviour->actions, is);
    }
}

std::string ActionChoice::Fault() const {
    for (const auto& behaviour : m_behaviours)
        for (const auto* const items : {&behaviour->triggers, &behaviour->actions})
            for (const auto& item : *items)
                if (const std::vector<std::string> faults = item->Faults(); !faults.empty())
                    return item->Text() + ": " + faults[0];
    return {};
}

bool ActionChoice::IsChanged() const {
    return m_behaviours.size() != m_before.size() ||
           std::any_of(m_behaviours.begin(), m_behaviours.end(),
                       [](const auto& behaviour) { return behaviour->IsChanged(); });
}

bool ActionChoice::Apply() {
    if (!IsChanged()) return true;
    if (BehavioursOf(m_list) != m_before || SavedText(m_list) != m_beforeText) return false;
    std::vector<CCommandBehaviour*> order;
    for (const auto& chosen : m_behaviours) {
        const bool changed = chosen->IsChanged();
        if (changed && chosen->original) EndRepeats(*chosen->original, m_list);
        CCommandBehaviour* const behaviour = chosen->original ? chosen->original : new CCommandBehaviour;
        if (changed) ApplyTo(*behaviour, *chosen);
        order.push_back(behaviour);
    }
    // Taken out and put in again, so that the list finds out anew what it listens to.
    for (CCommandBehaviour* behaviour : m_before) m_list.Remove(behaviour);
    for (CCommandBehaviour* behaviour : order) m_list.Add(behaviour);
    for (CCommandBehaviour* behaviour : m_before) {
        if (std::find(order.begin(), order.end(), behaviour) != order.end()) continue;
        EndRepeats(*behaviour, m_list);
        delete behaviour;
    }
    m_behaviours.clear();
    return true;
}

void ActionChoice::ApplyTo(CCommandBehaviour& behaviour, ChosenBehaviour& chosen) {
    TakeLeftOut(TriggersOf(behaviour), chosen.triggers,
                [&](CCommandTrigger* trigger) { behaviour.RemoveTrigger(trigger); });
    TakeLeftOut(ActionsOf(behaviour), chosen.actions,
                [&](CCommandAction* action) { behaviour.RemoveAction(action); });
    for (const auto& item : chosen.triggers) {
        if (item->IsNew())
            behaviour.AddTrigger(static_cast<CCommandTrigger*>(item->m_copy.release()));
        else if (item->IsChanged())
            item->WriteToOriginal();
    }
    for (const auto& item : chosen.actions) {
        if (item->IsNew()) {
            auto* const action = static_cast<CCommandAction*>(item->m_copy.release());
            behaviour.AddAction(action);  // at the front
            behaviour.MoveAction(action, nullptr);
        } else if (item->IsChanged()) {
            item->WriteToOriginal();
        }
    }
}

}  // namespace brindle::host
