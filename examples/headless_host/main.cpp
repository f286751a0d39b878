// A host without a desktop: its behaviours come from a file, and one timer object of the plain event loop drives both
// the engine and what the devices report. usage: headless_host BEHAVIOURS.xml
#include <brindle/brindle.h>

#include <iostream>

struct StateIs final : CCommandTrigger {  // <State Is="3"/>
    int wanted = 0;
    void Load(XMLReader& reader) override {
        reader.ReadAttribute("Is", wanted);
        CCommandTrigger::Load(reader);
    }
    int Test(const CCommandEvent* event) override {
        const auto* change = dynamic_cast<const CStateChangedEvent*>(event);
        return !change ? kNotConcerned : change->GetState() == wanted ? kFired : kEnded;
    }
    CStringA GetText(int) override { return "State"; }
    CStringA GetReflect() override { return {}; }
    void Reserved23() override {}
};

struct PrintAction final : CCommandAction {  // <Print Text="on air"/>
    CStringA text;
    void Load(XMLReader& reader) override {
        reader.ReadAttribute("Text", text);
        CCommandAction::Load(reader);
    }
    void Fire(const CCommandEvent*) override { std::cout << text.GetString() << std::endl; }
    CStringA GetText(int) override { return "Print"; }
    CStringA GetReflect() override { return text; }
};

struct Host final : CTimer {
    CCommandBehaviourList behaviours{CCommandTrigger::eHostSystem};
    brindle::RunLoop loop;
    int reported = 0;
    void Run() {
        CreateTimer(1, 20);   // repeats and schedules are as punctual as this
        CreateTimer(2, 100);  // stands for a device: its states are 0, 1, 2, 3
        loop.Run();
    }
    void OnTimer(std::uint64_t timer) override {
        if (timer == 1) return CCommandBehaviourList::CallOnTimer();
        const CAddressOv device("1:2:3");
        behaviours.Execute(new CStateChangedEvent(device, false, reported, "", "", "", "", "", ""), nullptr);
        if (++reported == 4) loop.Quit();
    }
};

int main(int count, char** arguments) {
    CCommandTriggerList::Register("State", [](unsigned long) -> CCommandTrigger* { return new StateIs; });
    CCommandActionList::Register("Print", [](unsigned long) -> CCommandAction* { return new PrintAction; });
    XMLReader reader;
    brindle::Result read;
    if (count < 2 || !reader.LoadPositioned(arguments[1], read))
        return std::cerr << "headless_host: " << read.text << "\n", 2;
    Host host;
    host.behaviours.Load(reader);
    host.Run();
}
