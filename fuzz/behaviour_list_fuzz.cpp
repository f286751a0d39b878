// Loads a behaviour list from any document, runs it, saves it, loads what was saved and saves that: the two saved
// documents are the same, byte for byte.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "brindle/behaviour/behaviour_list.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "testing/behaviour_probe.h"

namespace {

using brindle::testing::LiveProbes;
using brindle::testing::ProbeEvent;
using brindle::testing::ProbeVisitor;

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "behaviour list: %s\n", what);
    std::abort();
}

bool Load(CCommandBehaviourList& list, const std::string& text) {
    XMLReader reader;
    CStringA unused;
    if (!reader.LoadFromString(text.c_str(), unused)) return false;
    list.Load(reader);
    // Every section was closed again.
    Require(reader.EnterSection("*", false), "a section was left open");
    return true;
}

std::string Save(const CCommandBehaviourList& list) {
    XMLWriter writer;
    std::string text;
    Require(writer.Initialize(), "no document");
    list.Save(writer);
    Require(writer.SaveToString(text), "what was loaded cannot be saved");
    return text;
}

// Every trigger fires, so that every enabled action runs and repeats.
void Run(CCommandBehaviourList& list, brindle::FakeClock& clock) {
    list.Traverse(ProbeVisitor([](CCommandTreeItem* item) {
        if (auto* trigger = dynamic_cast<brindle::testing::ProbeTrigger*>(item)) trigger->verdict = 2;
    }));
    list.Execute(new ProbeEvent, nullptr);
    for (int tick = 0; tick < 2; ++tick) {
        clock.AdvanceMilliseconds(1'000);
        CCommandBehaviourList::CallOnTimer();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::testing::RegisterProbes();
    brindle::FakeClock clock;
    const brindle::ScopedService<brindle::Clock> installed(brindle::SetClock, clock);
    const std::string text(reinterpret_cast<const char*>(data), size);
    const int live = LiveProbes();
    {
        CCommandBehaviourList list(CCommandTrigger::eHostSystem);
        if (Load(list, text)) {
            const std::string first = Save(list);
            Run(list, clock);
            Require(Load(list, first), "what was saved cannot be loaded");
            Require(Save(list) == first, "saved differently the second time");
        }
    }
    Require(LiveProbes() == live, "objects left behind");
    return 0;
}
