// Loading a behaviour list document of 5 MB with 10,000 behaviours, beside libxml2's own parse of the same bytes.
// Both include destroying what they made.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/xml/xml_reader.h"

namespace {

constexpr int kBehaviours = 10'000;

class StateTrigger final : public CCommandTrigger {
  public:
    CStringA GetText(int) override { return "State"; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent*) override { return kNotConcerned; }
    void Reserved23() override {}
    void Load(XMLReader& reader) override {
        CCommandTrigger::Load(reader);
        reader.ReadAttribute("address", m_address);
        reader.ReadAttribute("from", m_from);
        reader.ReadAttribute("to", m_to);
        reader.ReadAttribute("header", m_header);
        reader.ReadAttribute("masked", m_masked);
    }

  private:
    CStringA m_address;
    int m_from = 0;
    int m_to = 0;
    CStringA m_header;
    bool m_masked = false;
};

class RunAction final : public CCommandAction {
  public:
    CStringA GetText(int) override { return "Run"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
    void Load(XMLReader& reader) override {
        CCommandAction::Load(reader);
        reader.ReadAttribute("command", m_command);
        reader.ReadAttribute("path", m_path);
        reader.ReadAttribute("repeat", m_repeat);
        reader.ReadAttribute("period", m_period);
    }

  private:
    CStringA m_command;
    CStringA m_path;
    bool m_repeat = false;
    int m_period = 0;
};

const std::string& Document() {
    static const std::string& document = *[] {
        CCommandTriggerList::Register("StateTrigger",
                                      [](unsigned long) -> CCommandTrigger* { return new StateTrigger; });
        CCommandActionList::Register("RunAction",
                                     [](unsigned long) -> CCommandAction* { return new RunAction; });
        auto* text = new std::string("<?xml version=\"1.0\"?><BehaviourList>");
        for (int i = 0; i < kBehaviours; ++i) {
            char behaviour[800];
            std::snprintf(
                behaviour, sizeof behaviour,
                "<Behaviour><TriggerList><StateTrigger address=\"%04X:%02X:%02X\" from=\"%d\" to=\"2\" "
                "header=\"Transmitter output level\" masked=\"FALSE\"><Enabled value=\"TRUE\"/>"
                "</StateTrigger></TriggerList><ActionList><RunAction command=\"notify.exe -t %%c -s %%i "
                "#LEVEL# {Dir}/log_%d.txt\" path=\"C:\\Station\\Schematics\" repeat=\"TRUE\" "
                "period=\"1000\"><Enabled value=\"TRUE\"/></RunAction><RunAction command=\"route "
                "%%a 12 &amp; beep\" path=\"\" repeat=\"FALSE\" period=\"0\"><Enabled value=\"TRUE\"/>"
                "</RunAction></ActionList></Behaviour>",
                static_cast<unsigned>(i / 65536), static_cast<unsigned>(i / 256 % 256),
                static_cast<unsigned>(i % 256), i % 4, i);
            *text += behaviour;
        }
        *text += "</BehaviourList>";
        return text;
    }();
    return document;
}

void ListLoad(benchmark::State& state) {
    const std::string& document = Document();
    for (auto _ : state) {
        XMLReader reader;
        CStringA error;
        if (!reader.LoadFromString(document.c_str(), error)) std::abort();
        CCommandBehaviourList list(CCommandTrigger::eHostSystem);
        list.Load(reader);
        if (list.GetChildCount() != kBehaviours) std::abort();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(document.size()));
}

void LibxmlParse(benchmark::State& state) {
    const std::string& document = Document();
    for (auto _ : state) {
        xmlDoc* parsed = xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                                       XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_BIG_LINES);
        if (!parsed) std::abort();
        xmlFreeDoc(parsed);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(document.size()));
}

BENCHMARK(ListLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(LibxmlParse)->Unit(benchmark::kMillisecond);

}  // namespace
