// A host object's behaviours: contents, persistence, the list of all lists. Events run in
// behaviour_list_events.cpp, the timer in behaviour_list_timer.cpp. Tests: behaviour_list_test.cpp.
#include "brindle/behaviour/behaviour_list.h"

#include "brindle/behaviour/event_plan.h"
#include "brindle/behaviour/list_frame.h"
#include "brindle/behaviour/list_registry.h"
#include "brindle/behaviour/repeat_queue.h"
#include "brindle/behaviour/section.h"
#include "brindle/behaviour/traveral_funct.h"
#include "brindle/behaviour/type_registry.h"

using brindle::EngineCall;
using brindle::ItemWalk;
using brindle::ListFrame;

constinit CCommandBehaviourList::Registry CCommandBehaviourList::m_lObjects;

CCommandBehaviourList::CCommandBehaviourList(CCommandTrigger::eHostType host)
    : m_repeats(std::make_shared<brindle::RepeatQueue>()), m_hostType(host), m_serial(brindle::NextSerial()) {
    CacheStateTriggerProps();
    m_lObjects.Append(*this);
}

CCommandBehaviourList::~CCommandBehaviourList() {
    ResetRepeats();
    m_repeats->Close();
    brindle::DestroyItems(m_behaviours);
    m_lObjects.TakeOut(*this);
    brindle::OutdatePlans();
    ListFrame::ListDestroyed(m_frames, std::move(m_repeats));
}

POSITION CCommandBehaviourList::GetHeadPosition() {
    return reinterpret_cast<POSITION>(m_lObjects.first);
}

CCommandBehaviourList* CCommandBehaviourList::GetNext(POSITION& position) {
    auto* list = reinterpret_cast<CCommandBehaviourList*>(position);
    position = list ? reinterpret_cast<POSITION>(list->m_next) : nullptr;
    return list;
}

void CCommandBehaviourList::TraverseAll(const TraveralFunct& visitor) {
    const EngineCall call;
    Registry::Walk walk(m_lObjects);
    while (CCommandBehaviourList* list = walk.Next()) list->Traverse(visitor);
}

POSITION CCommandBehaviourList::GetFirstChildPosition() const {
    return m_behaviours.GetHeadPosition();
}
const CCommandTreeItem* CCommandBehaviourList::GetNextChild(POSITION& position) const {
    return position ? m_behaviours.GetNext(position) : nullptr;
}
int CCommandBehaviourList::GetChildCount() const {
    return m_behaviours.GetCount();
}
bool CCommandBehaviourList::IsVisible() const {
    return false;
}
CStringA CCommandBehaviourList::GetText(int) {
    return {};
}
CStringA CCommandBehaviourList::GetReflect() {
    return {};
}
int CCommandBehaviourList::GetImage() const {
    return 0;
}
bool CCommandBehaviourList::IsEmpty() const {
    return m_behaviours.GetCount() == 0;
}

void CCommandBehaviourList::Save(XMLWriter& writer) const {
    const EngineCall call;
    const brindle::WriteSection section(writer, "BehaviourList");
    ItemWalk<CCommandBehaviour> walk(m_behaviours);
    while (const CCommandBehaviour* behaviour = walk.Next()) behaviour->Save(writer);
    if (!walk.ListGone()) CacheStateTriggerProps();
}

void CCommandBehaviourList::Load(XMLReader& reader) {
    const ListFrame frame(this);
    {
        const EngineCall
            call;  // unless another call is in progress, what was there is gone before anything is read
        brindle::DestroyItems(m_behaviours);
    }
    if (!frame.List()) return;
    const EngineCall call;
    try {
        LoadBehaviours(reader, frame);
    } catch (...) {
        if (frame.List()) CacheStateTriggerProps();
        throw;
    }
    if (frame.List()) CacheStateTriggerProps();
}

// Stops when the code of an item destroys the list.
void CCommandBehaviourList::LoadBehaviours(XMLReader& reader, const ListFrame& frame) {
    const brindle::ReadSection section(reader, "BehaviourList");
    while (section) {
        const brindle::ReadSection child(reader, "Behaviour");
        if (!child) return;
        auto behaviour = std::make_unique<CCommandBehaviour>();
        behaviour->Load(reader);
        if (!frame.List()) return;
        m_behaviours.AddTail(behaviour.get());
        static_cast<void>(behaviour.release());  // the list's from now on
    }
}

void CCommandBehaviourList::Add(CCommandBehaviour* behaviour) {
    m_behaviours.AddTail(behaviour);
    const EngineCall call;
    const ListFrame frame(this);
    try {
        CacheStateTriggerProps();
    } catch (...) {
        const POSITION position = frame.List() ? m_behaviours.Find(behaviour) : nullptr;
        if (position) m_behaviours.RemoveAt(position);
        throw;
    }
}

void CCommandBehaviourList::Remove(CCommandBehaviour* behaviour) {
    const POSITION position = behaviour ? m_behaviours.Find(behaviour) : nullptr;
    if (!position) return;
    m_behaviours.RemoveAt(position);
    CacheStateTriggerProps();
}

void CCommandBehaviourList::ResetList() {
    const EngineCall call;
    const ListFrame frame(this);
    ResetRepeats();
    if (!frame.List()) return;
    while (POSITION position = m_behaviours.GetHeadPosition()) m_behaviours.RemoveAt(position);
    CacheStateTriggerProps();
}

void CCommandBehaviourList::Init() {
    const EngineCall call;
    const ListFrame frame(this);
    ResetRepeats();
    if (!frame.List()) return;
    ItemWalk<CCommandBehaviour> walk(m_behaviours);
    while (CCommandBehaviour* behaviour = walk.Next()) behaviour->Init();
}

bool CCommandBehaviourList::HasConfig(const std::string& kind) const {
    const EngineCall call;
    ItemWalk<CCommandBehaviour> walk(m_behaviours);
    while (const CCommandBehaviour* behaviour = walk.Next())
        if (behaviour->HasConfig(kind)) return true;
    return false;
}

// A trigger's HasConfig may destroy the list. Should it throw, the answers are what keeps every event coming.
void CCommandBehaviourList::CacheStateTriggerProps() const {
    m_hasStateTriggers = m_hasAnyDataChanged = true;
    const EngineCall call;
    const ItemWalk<CCommandBehaviour> watch(m_behaviours);
    const bool hasStateTriggers = HasConfig("StateTrigger");
    // Kept: a list whose triggers answer only the narrower kind counts as having neither.
    const bool hasAnyDataChanged =
        hasStateTriggers && !watch.ListGone() && HasConfig("StateTrigger::AnyChange");
    if (watch.ListGone()) return;
    m_hasStateTriggers = hasStateTriggers;
    m_hasAnyDataChanged = hasAnyDataChanged;
}

void CCommandBehaviourList::Traverse(const TraveralFunct& visitor) {
    const EngineCall call;
    ItemWalk<CCommandBehaviour> walk(m_behaviours);
    visitor(this);
    while (CCommandBehaviour* behaviour = walk.Next()) behaviour->Traverse(visitor);
}
