// The exchange of behaviours. Tests: site_reload_test.cpp.
#include "host/behaviours_file.h"

#include <brindle/behaviour/behaviour.h>

#include <deque>
#include <unordered_map>

#include "host/behaviour_items.h"
#include "host/host_files.h"
#include "host/start_event.h"

namespace brindle::host {

namespace {

// The behaviours of a list by their saved text, to be taken in their order.
class Present {
  public:
    explicit Present(const std::vector<CCommandBehaviour*>& behaviours) {
        for (CCommandBehaviour* behaviour : behaviours) m_byText[SavedText(*behaviour)].push_back(behaviour);
    }
    // The first one of that text that was not taken; null: there is none.
    CCommandBehaviour* Take(const std::string& text) {
        const auto found = m_byText.find(text);
        if (text.empty() || found == m_byText.end() || found->second.empty()) return nullptr;
        CCommandBehaviour* behaviour = found->second.front();
        found->second.pop_front();
        return behaviour;
    }
    std::vector<std::unique_ptr<CCommandBehaviour>> TakeRest() {
        std::vector<std::unique_ptr<CCommandBehaviour>> rest;
        for (auto& [text, behaviours] : m_byText)
            for (CCommandBehaviour* behaviour : std::exchange(behaviours, {})) rest.emplace_back(behaviour);
        return rest;
    }

  private:
    std::unordered_map<std::string, std::deque<CCommandBehaviour*>> m_byText;
};

// New behaviours learn that the run began, as all do at its start.
void Begin(const std::vector<CCommandBehaviour*>& behaviours, SiteObject& object, RunState& state) {
    const CCommandEvent* start = new StartEvent;
    state.current = &object;
    for (CCommandBehaviour* behaviour : behaviours) {
        behaviour->Init();
        SubscribeDevices(*behaviour, object.plan.address, state.site.devices);
        behaviour->OnEvent(start, &object.list, &object.scope);
    }
    state.current = nullptr;
    start->Release();
}

void Exchange(SiteObject& object, CCommandBehaviourList& fresh, const std::string& path, RunState& state) {
    CCommandBehaviourList& list = object.list;
    const std::vector<CCommandBehaviour*> old = BehavioursOf(list);
    Present present(old);
    std::vector<CCommandBehaviour*> order;
    std::vector<CCommandBehaviour*> added;
    for (CCommandBehaviour* behaviour : BehavioursOf(fresh)) {
        CCommandBehaviour* kept = present.Take(SavedText(*behaviour));
        order.push_back(kept ? kept : behaviour);
        if (!kept) added.push_back(behaviour);
    }
    if (order == old) return;
    for (CCommandBehaviour* behaviour : old) list.Remove(behaviour);
    for (CCommandBehaviour* behaviour : added) fresh.Remove(behaviour);
    for (CCommandBehaviour* behaviour : order) list.Add(behaviour);
    const auto removed = present.TakeRest();
    RunRecord record = ReloadRecord(state, path);
    record["object"] = TextToUtf8(object.plan.name);
    record["kept"] = order.size() - added.size();
    record["added"] = added.size();
    record["removed"] = removed.size();
    state.sink.Write(record);
    for (const auto& behaviour : removed) EndRepeats(*behaviour, list);
    Begin(added, object, state);
}

}  // namespace

void BehavioursFile::Read(Problems& problems) {
    m_fresh.clear();
    for (const SiteObject* object : m_objects) {
        m_fresh.push_back(std::make_unique<CCommandBehaviourList>(object->plan.host));
        if (!ReadBehaviours(Path(), *m_fresh.back(), problems)) return;
    }
}

void BehavioursFile::TakeOver(RunState& state) {
    for (std::size_t i = 0; i < m_objects.size(); ++i) Exchange(*m_objects[i], *m_fresh[i], Path(), state);
    m_fresh.clear();
}

}  // namespace brindle::host
