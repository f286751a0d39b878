// What the tests of the behaviour engine share: a fixture whose clock stands still and which notices objects left
// behind, rules made in one line, and XML in memory.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "brindle/behaviour/behaviour_list.h"
#include "brindle/macro/command_line.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "testing/behaviour_probe.h"

namespace brindle::testing {

inline PreFormatHook CurrentHook() {
    const PreFormatHook hook = AttachPreFormatHook(nullptr);
    AttachPreFormatHook(hook);
    return hook;
}

// The text as the hook in force leaves it.
inline std::string Expanded(const char* text) {
    CStringA line(text);
    if (const PreFormatHook hook = CurrentHook()) hook(line);
    return line.str();
}

// Runs a function that is expected to make the engine write XML; the document it wrote.
inline std::string Written(const std::function<void(XMLWriter&)>& write) {
    XMLWriter writer;
    EXPECT_TRUE(writer.Initialize());
    write(writer);
    std::string xml;
    EXPECT_TRUE(writer.SaveToString(xml));
    return xml;
}

// A reader on a document; the root section is not entered.
inline XMLReader ReaderOf(const std::string& xml) {
    XMLReader reader;
    CStringA unused;
    EXPECT_TRUE(reader.LoadFromString(xml.c_str(), unused)) << xml;
    return reader;
}

// A list that lets a test call what only derived lists may.
class ProbeList : public CCommandBehaviourList {
  public:
    ProbeList() : CCommandBehaviourList(CCommandTrigger::eHostSystem) {}
    using CCommandBehaviourList::OnTimer;
};

// A behaviour with one trigger and one action.
struct Rule {
    CCommandBehaviour* behaviour;
    ProbeTrigger* trigger;
    ProbeAction* action;
};

inline Rule MakeRule(int verdict, std::function<void(const CCommandEvent*)> fire = {}) {
    const Rule rule{new CCommandBehaviour, new ProbeTrigger(verdict), new ProbeAction(std::move(fire))};
    rule.behaviour->AddTrigger(rule.trigger);
    rule.behaviour->AddAction(rule.action);
    return rule;
}

inline Rule AddRule(CCommandBehaviourList& list, int verdict,
                    std::function<void(const CCommandEvent*)> fire = {}) {
    const Rule rule = MakeRule(verdict, std::move(fire));
    list.Add(rule.behaviour);
    return rule;
}

// A fired rule whose action repeats; its runs count from here.
inline Rule AddRepeating(CCommandBehaviourList& list, int period,
                         std::function<void(const CCommandEvent*)> fire = {}) {
    const Rule rule = AddRule(list, CCommandTrigger::kFired, std::move(fire));
    rule.action->repeats = true;
    rule.action->period = period;
    list.Execute(new ProbeEvent, nullptr);
    rule.trigger->verdict = CCommandTrigger::kNotConcerned;
    rule.action->runs = 0;
    return rule;
}

// Queues a repeat of the rule's action without an event.
inline void QueueRepeat(CCommandBehaviourList& list, const Rule& rule, int period = 0) {
    rule.action->period = period;
    list.AddRepeatAction(rule.trigger, nullptr, rule.action, nullptr);
}

// Replaces the list's contents by one rule of probes.
inline void Reload(CCommandBehaviourList& list) {
    XMLReader reader = ReaderOf(
        "<BehaviourList><Behaviour><TriggerList><ProbeTrigger/></TriggerList><ActionList><ProbeAction/>"
        "</ActionList></Behaviour></BehaviourList>");
    list.Load(reader);
}

class BehaviourTest : public ::testing::Test {
  protected:
    BehaviourTest() { RegisterProbes(); }

    void TearDown() override {
        EXPECT_EQ(LiveProbes(), m_live) << "objects left behind, or destroyed twice";
        EXPECT_EQ(CurrentHook(), nullptr) << "a hook left behind";
        EXPECT_EQ(CCommandBehaviourList::GetHeadPosition(), nullptr) << "a list left behind";
    }

    std::uint64_t Now() const { return SystemMilliseconds(); }
    void Advance(std::uint64_t milliseconds) { clock.AdvanceMilliseconds(milliseconds); }
    // The clock moves on and the host's timer ticks.
    void Tick(std::uint64_t milliseconds = 0) {
        Advance(milliseconds);
        CCommandBehaviourList::CallOnTimer();
    }
    // Sets the clock so many milliseconds back.
    void GoBack(std::uint64_t milliseconds) { clock.AdvanceMilliseconds(0 - milliseconds); }

    FakeClock clock;

  private:
    int m_live = LiveProbes();
    ScopedService<Clock> m_installed{SetClock, clock};
};

}  // namespace brindle::testing
