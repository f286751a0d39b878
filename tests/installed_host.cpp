// A host built against the installed library: run-time type information and exceptions cross its boundary both ways.
// installed_test.sh compiles and runs it; it prints one line and exits with 0 when all is well.
#include <brindle/brindle.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <typeinfo>

namespace {

int g_wrong = 0;

void Expect(bool holds, const char* what) {
    if (holds) return;
    std::cerr << "installed_host: " << what << "\n";
    ++g_wrong;
}

struct HostFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Derived from exported classes, several levels deep.
struct ScheduleTrigger : CTimeBasedTrigger {
    CStringA GetReflect() override { return {}; }
    int GetNextTime() const override { return 60; }
    int Test(const CCommandEvent* event) override {
        const auto* change = dynamic_cast<const CStateChangedEvent*>(event);
        return change && change->GetState() == 3 ? kFired : kNotConcerned;
    }
    void Reserved23() override {}
};
struct StateTrigger final : ScheduleTrigger {
    CStringA GetText(int) override { return "State"; }  // fires at once
};
struct FaultyAction final : CCommandAction {
    CStringA GetText(int) override { return "Faulty"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override { throw HostFault("host"); }
};
struct FullStream final : CArchiveStream {
    std::size_t Read(void*, std::size_t) override { return 0; }
    bool Write(const void*, std::size_t) override { throw HostFault("full"); }
    std::uint64_t Left() const override { return 0; }
};

template <class Exception, class Work>
bool Throws(Work work) {
    try {
        work();
    } catch (const Exception& exception) {
        return exception.what() != nullptr;
    } catch (...) {
    }
    return false;
}

void ExpectTypesToCross() {
    CCommandTriggerList::Register("State",
                                  [](unsigned long) -> CCommandTrigger* { return new StateTrigger; });
    const CCommandTrigger* made = CCommandTriggerList::CreateObject("state", 0);
    Expect(dynamic_cast<const CTimeBasedTrigger*>(made) != nullptr, "a host's trigger is a time based one");
    Expect(dynamic_cast<const ScheduleTrigger*>(made) != nullptr, "a host's trigger is the host's own");
    Expect(typeid(*made) == typeid(StateTrigger), "the type of a host's trigger");
    Expect(dynamic_cast<const CCommandAction*>(static_cast<const CCommandTreeItem*>(made)) == nullptr,
           "a trigger is no action");
    delete made;
    CCommandEvent* event = new CStateChangedEvent(CAddressOv("1:2:3"), false, 3, "", "", "", "", "", "");
    CCommandEvent* replica = event->Replicate();
    event->Release();
    Expect(typeid(*replica) == typeid(CStateChangedEvent), "the type of an event the library made");
    Expect(dynamic_cast<CStateEvent*>(replica) != nullptr, "its base class");
    replica->Release();
}

void ExpectExceptionsToCross() {
    CCommandBehaviourList list(CCommandTrigger::eHostSystem);
    auto* behaviour = new CCommandBehaviour;
    behaviour->AddTrigger(new StateTrigger);
    behaviour->AddAction(new FaultyAction);
    list.Add(behaviour);
    const auto fire = [&] {
        list.Execute(new CStateChangedEvent(CAddressOv("1:2:3"), false, 3, "", "", "", "", "", ""), nullptr);
    };
    Expect(Throws<HostFault>(fire), "the host's exception through the library");
    Expect(Throws<std::runtime_error>(fire), "and by its base class, a second time");
    FullStream stream;
    CArchive loading(stream, CArchive::load);
    std::uint32_t value = 0;
    Expect(Throws<CArchiveException>([&] { loading >> value; }), "the library's own exception");
    Expect(Throws<std::exception>([&] { loading >> value; }), "and by the standard's base class");
    CArchive storing(stream, CArchive::store);
    Expect(Throws<HostFault>([&] { storing << value; }), "the exception of a host's stream");
}

}  // namespace

int main() {
    ExpectTypesToCross();
    ExpectExceptionsToCross();
    if (g_wrong == 0) std::cout << "types and exceptions cross\n";
    return g_wrong == 0 ? 0 : 1;
}
