// One event through a behaviour list whose triggers are not concerned (the usual case), beside a bare loop of
// virtual calls over the same triggers and beside as many Boost.Signals2 slots. "Churned" lists were loaded into
// a heap full of holes, as after a long life.
#include <benchmark/benchmark.h>

#include <boost/signals2.hpp>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "brindle/address/state_changed_event.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/traveral_funct.h"
#include "brindle/xml/xml_reader.h"

namespace {

// Compares the state, as a state trigger would, and is never concerned.
class QuietTrigger final : public CCommandTrigger {
  public:
    CStringA GetText(int) override { return "Quiet"; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent* event) override {
        return static_cast<const CStateEvent*>(event)->GetState() == m_state ? kFired : kNotConcerned;
    }
    void Reserved23() override {}

  private:
    int m_state = 1000;
};

class Collect final : public TraveralFunct {
  public:
    explicit Collect(std::vector<CCommandTrigger*>& triggers) : m_triggers(triggers) {}
    void operator()(CCommandTreeItem* item) const override {
        if (auto* trigger = dynamic_cast<CCommandTrigger*>(item)) m_triggers.push_back(trigger);
    }

  private:
    std::vector<CCommandTrigger*>& m_triggers;
};

// Leaves holes of mixed sizes behind, so that what is allocated next is scattered.
std::vector<std::unique_ptr<char[]>> ChurnHeap(std::size_t objects) {
    std::mt19937 random(7);
    std::vector<std::unique_ptr<char[]>> blocks;
    for (std::size_t i = 0; i < objects * 16; ++i)
        blocks.push_back(std::make_unique<char[]>(24 + random() % 300));
    std::shuffle(blocks.begin(), blocks.end(), random);
    blocks.resize(blocks.size() / 2);
    return blocks;
}

struct Station {
    std::vector<std::unique_ptr<char[]>> ballast;
    CCommandBehaviourList list{CCommandTrigger::eHostSystem};
    std::vector<CCommandTrigger*> triggers;
    std::vector<std::unique_ptr<CCommandTrigger>> plain;
    boost::signals2::signal<int(const CCommandEvent*)> signal;
    CAddressOv address{1, 2, 3};
};

Station& StationOf(std::size_t behaviours, bool churned) {
    static std::map<std::pair<std::size_t, bool>, std::unique_ptr<Station>> stations;
    std::unique_ptr<Station>& station = stations[{behaviours, churned}];
    if (station) return *station;
    static const bool registered = [] {
        CCommandTriggerList::Register("T",
                                      [](unsigned long) -> CCommandTrigger* { return new QuietTrigger; });
        return true;
    }();
    benchmark::DoNotOptimize(registered);
    station = std::make_unique<Station>();
    if (churned) station->ballast = ChurnHeap(behaviours);
    std::string document = "<BehaviourList>";
    for (std::size_t i = 0; i < behaviours; ++i)
        document += "<Behaviour><TriggerList><T/></TriggerList></Behaviour>";
    document += "</BehaviourList>";
    XMLReader reader;
    CStringA error;
    if (!reader.LoadFromString(document.c_str(), error)) std::abort();
    station->list.Load(reader);
    station->list.Traverse(Collect(station->triggers));
    if (station->triggers.size() != behaviours) std::abort();
    for (CCommandTrigger* trigger : station->triggers)
        station->signal.connect([trigger](const CCommandEvent* event) { return trigger->Test(event); });
    return *station;
}

CStateChangedEvent* NewEvent(const Station& station) {
    return new CStateChangedEvent(station.address, false, 1, "", "", "", "", "", "");
}

void ListExecute(benchmark::State& state) {
    Station& station = StationOf(static_cast<std::size_t>(state.range(0)), state.range(1) != 0);
    CStateChangedEvent* event = NewEvent(station);
    for (auto _ : state) {
        event->AddRef();
        station.list.Execute(event, nullptr);
    }
    event->Release();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareLoop(benchmark::State& state) {
    Station& station = StationOf(static_cast<std::size_t>(state.range(0)), state.range(1) != 0);
    CStateChangedEvent* event = NewEvent(station);
    for (auto _ : state) {
        int fired = 0;
        for (CCommandTrigger* trigger : station.triggers) fired += trigger->Test(event);
        benchmark::DoNotOptimize(fired);
    }
    event->Release();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BoostSignals2(benchmark::State& state) {
    Station& station = StationOf(static_cast<std::size_t>(state.range(0)), state.range(1) != 0);
    CStateChangedEvent* event = NewEvent(station);
    for (auto _ : state) benchmark::DoNotOptimize(station.signal(event));
    event->Release();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const std::vector<std::vector<int64_t>> kSizes = {{1000, 100000}, {0, 1}};
BENCHMARK(ListExecute)->ArgsProduct(kSizes)->ArgNames({"behaviours", "churned"});
BENCHMARK(BareLoop)->ArgsProduct(kSizes)->ArgNames({"behaviours", "churned"});
BENCHMARK(BoostSignals2)->ArgsProduct(kSizes)->ArgNames({"behaviours", "churned"});

}  // namespace
