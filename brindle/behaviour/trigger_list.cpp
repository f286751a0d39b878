// The triggers of one behaviour and the registry of trigger types. Tests: trigger_list_test.cpp.
#include "brindle/behaviour/trigger_list.h"

#include "brindle/behaviour/trigger.h"
#include "brindle/behaviour/type_registry.h"

namespace {

// Never destroyed: filled at start-up, read until the process ends.
brindle::TypeRegistry<CCommandTrigger>& Types() {
    static auto& types = *new brindle::TypeRegistry<CCommandTrigger>;
    return types;
}

}  // namespace

CCommandTriggerList::CCommandTriggerList() = default;

CCommandTriggerList& CCommandTriggerList::operator=(const CCommandTriggerList& other) {
    CCommandTreeItem::operator=(other);
    brindle::AppendReplicas(other.m_triggers, m_triggers);
    return *this;
}

CCommandTriggerList::~CCommandTriggerList() {
    brindle::DestroyItems(m_triggers);
}

void CCommandTriggerList::Register(const char* typeName, Factory factory) {
    Types().Register(typeName, factory);
}
CCommandTrigger* CCommandTriggerList::CreateObject(const char* typeName, unsigned long id) {
    return Types().Create(typeName, id);
}
void CCommandTriggerList::GetTypeList(CStringList& names) {
    Types().GetNames(names);
}

void CCommandTriggerList::Add(CCommandTrigger* trigger) {
    m_triggers.AddTail(trigger);
}
void CCommandTriggerList::Remove(CCommandTrigger* trigger) {
    brindle::RemoveAndDestroy(m_triggers, trigger);
}

void CCommandTriggerList::Init() {
    const brindle::EngineCall call;
    brindle::ItemWalk<CCommandTrigger> walk(m_triggers);
    while (CCommandTrigger* trigger = walk.Next()) trigger->Init();
}

POSITION CCommandTriggerList::GetFirstChildPosition() const {
    return m_triggers.GetHeadPosition();
}
const CCommandTreeItem* CCommandTriggerList::GetNextChild(POSITION& position) const {
    return position ? m_triggers.GetNext(position) : nullptr;
}
int CCommandTriggerList::GetChildCount() const {
    return m_triggers.GetCount();
}
bool CCommandTriggerList::IsVisible() const {
    return false;
}
CStringA CCommandTriggerList::GetText(int) {
    return {};
}
CStringA CCommandTriggerList::GetReflect() {
    return {};
}
int CCommandTriggerList::GetImage() const {
    return 0;
}

void CCommandTriggerList::Save(XMLWriter& writer) const {
    brindle::SaveItems(writer, "TriggerList", m_triggers);
}
void CCommandTriggerList::Load(XMLReader& reader) {
    brindle::LoadItems(reader, "TriggerList", Types(), m_triggers);
}
