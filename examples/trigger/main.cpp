// A trigger type with a state of its own: it fires when a device was in alarm several times in a row, and can be
// stored, read and copied.
#include <brindle/brindle.h>

#include <iostream>
#include <memory>

class RepeatedAlarmTrigger final : public CCommandTrigger {
  public:
    int Test(const CCommandEvent* event) override {
        const auto* change = dynamic_cast<const CStateChangedEvent*>(event);
        if (!change || change->GetAddress() != m_device) return kNotConcerned;
        m_seen = change->GetState() >= 3 ? m_seen + 1 : 0;
        return m_seen == 0 ? kEnded : m_seen >= m_times ? kFired : kNotConcerned;
    }
    void Init() override { m_seen = 0; }
    CStringA GetText(int) override { return "Repeated alarm"; }
    CStringA GetReflect() override { return m_device.GetString(); }
    void Reserved23() override {}
    CCommandTrigger* Replicate() override { return new RepeatedAlarmTrigger(*this); }

    void Load(XMLReader& reader) override {  // the list has entered the element
        CStringA device;
        if (reader.ReadAttribute("Device", device)) m_device.SetAddress(device.GetString());
        reader.ReadAttribute("Times", m_times);
        CCommandTrigger::Load(reader);
    }
    void Save(XMLWriter& writer) const override {
        writer.EnterSection("RepeatedAlarm");
        writer.WriteAttribute("Device", CAddressOv(m_device).GetString());
        writer.WriteAttribute("Times", m_times);
        CCommandTrigger::Save(writer);
        writer.CloseSection();
    }

  private:
    CAddressOv m_device{"1:2:3"};
    int m_times = 1;
    int m_seen = 0;
};

int main() {
    CCommandTriggerList::Register("RepeatedAlarm",
                                  [](unsigned long) -> CCommandTrigger* { return new RepeatedAlarmTrigger; });
    const std::unique_ptr<CCommandTrigger> trigger(CCommandTriggerList::CreateObject("RepeatedAlarm", 0));
    XMLReader reader;
    CStringA unused;
    if (!reader.LoadFromString("<RepeatedAlarm Device='1:2:4' Times='2'/>", unused) ||
        !reader.EnterSection("RepeatedAlarm", true)) {
        return 1;
    }
    trigger->Load(reader);  // what a behaviour list does with each element of its file
    for (const int state : {3, 4, 0, 3}) {
        auto* event = new CStateChangedEvent(CAddressOv("1:2:4"), false, state, "", "", "", "", "", "");
        std::cout << "state " << state << ": verdict " << trigger->Test(event) << "\n";
        event->Release();
    }
}
