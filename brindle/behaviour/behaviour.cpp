// One rule: triggers and actions. Tests: behaviour_test.cpp.
#include "brindle/behaviour/behaviour.h"

#include <cstdint>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/list_frame.h"
#include "brindle/behaviour/observer_slot.h"
#include "brindle/behaviour/section.h"
#include "brindle/behaviour/traveral_funct.h"
#include "brindle/behaviour/trigger.h"

using brindle::EngineCall;
using brindle::ItemWalk;

namespace {

// A position of a behaviour's children is a count from 1.
POSITION ToPosition(int count) {
    return reinterpret_cast<POSITION>(static_cast<std::intptr_t>(count));
}
int ToCount(POSITION position) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(position));
}

template <class List>
auto* ChildAt(const List& list, int index) {
    POSITION position = list.GetFirstChildPosition();
    while (index-- > 0 && position) list.GetNextChild(position);
    return list.GetNextChild(position);
}

}  // namespace

CCommandBehaviour::CCommandBehaviour() = default;

CCommandBehaviour& CCommandBehaviour::operator=(const CCommandBehaviour& other) {
    CCommandTreeItem::operator=(other);
    const EngineCall call;
    const ItemWalk<CCommandTrigger> target(
        m_triggers.m_triggers);  // a Replicate may destroy either behaviour
    const ItemWalk<CCommandTrigger> source(other.m_triggers.m_triggers);
    m_actions = other.m_actions;
    if (!target.ListGone() && !source.ListGone()) m_triggers = other.m_triggers;
    return *this;
}

CCommandBehaviour::~CCommandBehaviour() = default;

int CCommandBehaviour::GetChildCount() const {
    const int triggers = GetTriggerCount();
    return (triggers < 2 ? 0 : triggers) + m_actions.GetChildCount();
}

POSITION CCommandBehaviour::GetFirstChildPosition() const {
    return GetChildCount() > 0 ? ToPosition(1) : nullptr;
}

const CCommandTreeItem* CCommandBehaviour::GetNextChild(POSITION& position) const {
    const int count = ToCount(position);
    const int children = GetChildCount();
    if (count < 1 || count > children) {
        position = nullptr;
        return nullptr;
    }
    position = count < children ? ToPosition(count + 1) : nullptr;
    const int shownTriggers = children - m_actions.GetChildCount();
    if (count <= shownTriggers) return ChildAt(m_triggers, count - 1);
    return ChildAt(m_actions, count - shownTriggers - 1);
}

bool CCommandBehaviour::IsVisible() const {
    return true;
}
CStringA CCommandBehaviour::GetText(int) {
    return "Multi";
}
CStringA CCommandBehaviour::GetReflect() {
    return {};
}
int CCommandBehaviour::GetImage() const {
    return 1;
}

CCommandTreeItem* CCommandBehaviour::GetRealObject() {
    if (GetTriggerCount() != 1) return this;
    POSITION position = m_triggers.m_triggers.GetHeadPosition();
    CCommandTrigger* only = m_triggers.m_triggers.GetNext(position);
    return only ? static_cast<CCommandTreeItem*>(only) : this;
}

void CCommandBehaviour::Save(XMLWriter& writer) const {
    const brindle::WriteSection section(writer, "Behaviour");
    m_triggers.Save(writer);
    m_actions.Save(writer);
}

void CCommandBehaviour::Load(XMLReader& reader) {
    const EngineCall call;
    const ItemWalk<CCommandAction> watch(m_actions.m_actions);
    m_triggers.Load(reader);
    if (!watch.ListGone()) m_actions.Load(reader);
}

void CCommandBehaviour::AddTrigger(CCommandTrigger* trigger) {
    m_triggers.Add(trigger);
}
void CCommandBehaviour::RemoveTrigger(CCommandTrigger* trigger) {
    m_triggers.Remove(trigger);
}
void CCommandBehaviour::AddAction(CCommandAction* action) {
    m_actions.Add(action);
}
void CCommandBehaviour::RemoveAction(CCommandAction* action) {
    m_actions.Remove(action);
}
void CCommandBehaviour::MoveAction(CCommandAction* action, CCommandAction* before) {
    m_actions.Move(action, before);
}
int CCommandBehaviour::GetTriggerCount() const {
    return m_triggers.GetChildCount();
}
void CCommandBehaviour::Init() {
    m_triggers.Init();
}

bool CCommandBehaviour::HasConfig(const std::string& kind) const {
    const EngineCall call;
    ItemWalk<CCommandTrigger> walk(m_triggers.m_triggers);
    while (const CCommandTrigger* trigger = walk.Next())
        if (trigger->HasConfig(kind)) return true;
    return false;
}

void CCommandBehaviour::Traverse(const TraveralFunct& visitor) {
    const EngineCall call;
    ItemWalk<CCommandTrigger> triggers(m_triggers.m_triggers);
    ItemWalk<CCommandAction> actions(m_actions.m_actions);
    visitor(this);
    while (CCommandTrigger* trigger = triggers.Next()) visitor(trigger);
    while (CCommandAction* action = actions.Next()) visitor(action);
}

void CCommandBehaviour::OnEvent(const CCommandEvent* event, CCommandBehaviourList* list,
                                const VariableManager* variables) {
    const EngineCall call;
    const brindle::ListFrame frame(list);
    ItemWalk<CCommandTrigger> walk(m_triggers.m_triggers);
    while (CCommandTrigger* trigger = walk.Next()) {
        const int verdict = trigger->Test(event);
        if (walk.HoldsCurrent()) Deliver(trigger, verdict, event, frame.List(), variables);
    }
}

void CCommandBehaviour::Deliver(CCommandTrigger* trigger, int verdict, const CCommandEvent* event,
                                CCommandBehaviourList* list, const VariableManager* variables) {
    if (IBehaviourObserver* observer = brindle::CurrentObserver())
        observer->OnVerdict(list, this, trigger, event, verdict, false);
    if (!trigger->IsEnabled()) return;
    if (verdict == CCommandTrigger::kFired)
        m_actions.Go(list, event, trigger, variables);
    else if (verdict == CCommandTrigger::kEnded && list)
        list->CancelRepeats(trigger);
}

bool CCommandBehaviour::CanUnLock(const CCommandEvent* event, CCommandBehaviourList* list) {
    const EngineCall call;
    const brindle::ListFrame frame(list);
    ItemWalk<CCommandTrigger> walk(m_triggers.m_triggers);
    while (CCommandTrigger* trigger = walk.Next()) {
        const int verdict = trigger->Test(event);
        if (!walk.HoldsCurrent()) continue;
        if (IBehaviourObserver* observer = brindle::CurrentObserver())
            observer->OnVerdict(frame.List(), this, trigger, event, verdict, true);
        if (verdict == CCommandTrigger::kFired && m_actions.CanUnLock(frame.List(), event, trigger))
            return true;
    }
    return false;
}
