// The actions of one behaviour, the registry of action types, and how actions run. Tests:
// action_list_test.cpp.
#include "brindle/behaviour/action_list.h"

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/action_run.h"
#include "brindle/behaviour/list_frame.h"
#include "brindle/behaviour/observer_slot.h"
#include "brindle/behaviour/time_based_trigger.h"
#include "brindle/behaviour/type_registry.h"

namespace {

// Never destroyed: filled at start-up, read until the process ends.
brindle::TypeRegistry<CCommandAction>& Types() {
    static auto& types = *new brindle::TypeRegistry<CCommandAction>;
    return types;
}

// A trigger is recognised by the text of its type.
bool IsTimeBased(const CCommandTrigger* trigger) {
    return const_cast<CCommandTrigger*>(trigger)->GetText(1) == CTimeBasedTrigger::kTypeText;
}

}  // namespace

CCommandActionList::CCommandActionList() = default;

CCommandActionList& CCommandActionList::operator=(const CCommandActionList& other) {
    brindle::AppendReplicas(other.m_actions, m_actions);
    return *this;
}

CCommandActionList::~CCommandActionList() {
    brindle::DestroyItems(m_actions);
}

POSITION CCommandActionList::GetFirstChildPosition() const {
    return m_actions.GetHeadPosition();
}
const CCommandAction* CCommandActionList::GetNextChild(POSITION& position) const {
    return position ? m_actions.GetNext(position) : nullptr;
}
int CCommandActionList::GetChildCount() const {
    return m_actions.GetCount();
}
bool CCommandActionList::IsVisible() const {
    return false;
}
CStringA CCommandActionList::GetText() {
    return {};
}
int CCommandActionList::GetImage() const {
    return 0;
}

void CCommandActionList::Save(XMLWriter& writer) const {
    brindle::SaveItems(writer, "ActionList", m_actions);
}
void CCommandActionList::Load(XMLReader& reader) {
    brindle::LoadItems(reader, "ActionList", Types(), m_actions);
}

void CCommandActionList::Register(const char* typeName, Factory factory) {
    Types().Register(typeName, factory);
}
CCommandAction* CCommandActionList::CreateObject(const char* typeName, unsigned long id) {
    return Types().Create(typeName, id);
}
void CCommandActionList::GetTypeList(CStringList& names) {
    Types().GetNames(names);
}

void CCommandActionList::Add(CCommandAction* action) {
    m_actions.AddHead(action);
}
void CCommandActionList::Move(CCommandAction* action, CCommandAction* before) {
    if (action) m_actions.Move(action, before);
}
void CCommandActionList::Remove(CCommandAction* action) {
    brindle::RemoveAndDestroy(m_actions, action);
}

void CCommandActionList::Go(CCommandBehaviourList* list, const CCommandEvent* event,
                            const CCommandTrigger* trigger, const VariableManager* variables) const {
    const brindle::EngineCall call;
    const brindle::ListFrame frame(list);
    brindle::ItemWalk<CCommandAction> walk(m_actions);
    const bool timeBased = IsTimeBased(trigger);
    while (CCommandAction* action = walk.Next()) {
        const bool isTemplate = action->IsTemplate();
        if (isTemplate || !action->IsEnabled()) {
            const auto reason = isTemplate ? IBehaviourObserver::kTemplate : IBehaviourObserver::kDisabled;
            if (IBehaviourObserver* observer = brindle::CurrentObserver())
                observer->OnActionSkipped(frame.List(), trigger, action, event, reason);
            continue;
        }
        if (timeBased) {
            if (frame.List()) frame.List()->AddRepeatTrigger(trigger, event, action);
            continue;
        }
        if (action->IsRepeat() && frame.List())
            frame.List()->AddRepeatAction(trigger, event, action, variables);
        const brindle::ActionRun run(*action, variables);
        if (IBehaviourObserver* observer = brindle::CurrentObserver())
            observer->OnActionRun(frame.List(), trigger, action, event);
        action->Fire(event);
    }
}

bool CCommandActionList::CanUnLock(CCommandBehaviourList* list, const CCommandEvent* event,
                                   const CCommandTrigger* trigger) const {
    const brindle::EngineCall call;
    const brindle::ListFrame frame(list);
    brindle::ItemWalk<CCommandAction> walk(m_actions);
    if (IsTimeBased(trigger)) return false;  // scheduled actions never count
    while (CCommandAction* action = walk.Next()) {
        if (action->IsTemplate() || !action->CanUnLock(event)) continue;
        if (IBehaviourObserver* observer = brindle::CurrentObserver())
            observer->OnUnlockAllowed(frame.List(), trigger, action, event);
        return true;
    }
    return false;
}
