// An action type: it fills variables and the fields of the event into a command line, and can be stored and read.
// What a real host does with the line (start it, log it) is one call more.
#include <brindle/brindle.h>

#include <iostream>
#include <memory>

class TellAction final : public CCommandAction {
  public:
    void Fire(const CCommandEvent* event) override {
        const auto* state = dynamic_cast<const CStateEvent*>(event);
        FullAddress_t device{};
        if (state) state->GetAddress().GetFullAddressStruct(device);
        // "{name}" is resolved by the scope in force while Fire runs, "%a" and "%i" by the event.
        CStringA line = m_line;
        FormatCommandLine(line, state ? &device : nullptr, nullptr, nullptr, nullptr, nullptr,
                          state ? state->GetState() : 0);
        std::cout << line.GetString() << "\n";
    }
    CStringA GetText(int) override { return "Tell"; }
    CStringA GetReflect() override { return m_line; }
    CCommandAction* Replicate() override { return new TellAction(*this); }

    void Load(XMLReader& reader) override {
        reader.ReadAttribute("Line", m_line);
        CCommandAction::Load(reader);
    }
    void Save(XMLWriter& writer) const override {
        writer.EnterSection("Tell");
        writer.WriteAttribute("Line", m_line);
        CCommandAction::Save(writer);
        writer.CloseSection();
    }

  private:
    CStringA m_line;
};

int main() {
    CCommandActionList::Register("Tell", [](unsigned long) -> CCommandAction* { return new TellAction; });
    const std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject("Tell", 0));
    XMLReader reader;
    CStringA text;
    if (!reader.LoadFromString("<Tell Line='{desk}: %a is %i'/>", text)) return 1;
    if (!reader.EnterSection("Tell", true)) return 1;
    action->Load(reader);
    VariableManager variables;
    variables.addVariable(Variable("desk", "Studio A"));
    auto* event = new CStateChangedEvent(CAddressOv("1:2:3"), false, 2, "", "", "", "", "", "");
    const VariableHookScope scope(&variables);
    action->Fire(event);
    event->Release();
    XMLWriter writer;
    if (!writer.Initialize()) return 1;
    action->Save(writer);
    if (!writer.SaveToString(text)) return 1;
    std::cout << text.GetString() << "\n";
}
