// A behaviour list at work: a trigger type and an action type of the host, a rule read from XML, an event that
// fires it, and the timer that repeats the action until the condition ends. The clock is the example's own.
#include <brindle/brindle.h>

#include <iostream>

struct SteppedClock final : brindle::Clock {
    std::uint64_t now = 0;  // milliseconds
    std::uint64_t SystemTicks() override { return now * 10'000; }
    std::uint64_t MonotonicMilliseconds() override { return now; }
    bool ToLocalTime(std::int64_t, brindle::LocalTime&) override { return false; }
    brindle::TimeZone StandardZone() override { return {}; }
};

struct AlarmTrigger final : CCommandTrigger {  // fires on state 3, ends on any other
    CStringA GetText(int) override { return "Alarm"; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent* event) override {
        const auto* change = dynamic_cast<const CStateChangedEvent*>(event);
        if (!change) return kNotConcerned;
        return change->GetState() == 3 ? kFired : kEnded;
    }
    void Reserved23() override {}
};

struct HornAction final : CCommandAction {  // sounds once a second while the alarm lasts
    CStringA GetText(int) override { return "Horn"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override { std::cout << "horn\n"; }
    bool IsRepeat() const override { return true; }
    int GetRepeatTime() const override { return 1000; }
};

int main() {
    SteppedClock clock;
    brindle::SetClock(&clock);
    CCommandTriggerList::Register("Alarm",
                                  [](unsigned long) -> CCommandTrigger* { return new AlarmTrigger; });
    CCommandActionList::Register("Horn", [](unsigned long) -> CCommandAction* { return new HornAction; });
    XMLReader reader;
    CStringA error;
    if (!reader.LoadFromString("<BehaviourList><Behaviour><TriggerList><Alarm/></TriggerList>"
                               "<ActionList><Horn/></ActionList></Behaviour></BehaviourList>",
                               error)) {
        return 1;
    }
    CCommandBehaviourList list(CCommandTrigger::eHostSystem);
    list.Load(reader);
    const auto feed = [&list](int state) {  // Execute consumes the event
        list.Execute(new CStateChangedEvent(CAddressOv("1:2:3"), false, state, "", "", "", "", "", ""),
                     nullptr);
    };
    feed(3);  // the horn sounds, and is queued
    for (clock.now = 500; clock.now <= 2000; clock.now += 500) {
        CCommandBehaviourList::CallOnTimer();  // sounds at 1000 and 2000
    }
    feed(0);  // the condition ended
    std::cout << list.GetRepeatCount() << " repeats left\n";
    brindle::SetClock(nullptr);
}
