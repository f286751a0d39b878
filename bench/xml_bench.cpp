// Reading a behaviour list document of 5 MB with 10,000 behaviours: libxml2's own parse of it, beside
// XMLReader's load and a walk that enters every section and reads every attribute.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "brindle/xml/xml_reader.h"

namespace {

constexpr int kBehaviours = 10000;

// Ten elements and a dozen attributes, about 500 bytes.
void AppendBehaviour(int number, std::string& xml) {
    const std::string id = std::to_string(number);
    xml += "<Behaviour Name=\"Door " + id + "\"><Enabled value=\"TRUE\"/><TriggerList>";
    xml +=
        "<StateTrigger Address=\"0001:02:" + id + "\" State=\"2\"><Enabled value=\"TRUE\"/></StateTrigger>";
    xml +=
        "<CaptionTrigger Caption=\"On air\" Match=\"FALSE\"><Enabled "
        "value=\"TRUE\"/></CaptionTrigger></TriggerList>";
    xml += "<ActionList><RunCommand Command=\"notepad.exe &quot;a b " + id + ".txt&quot;\" Delay=\"250\">";
    xml += "<Enabled value=\"FALSE\"/></RunCommand><LogLine Text=\"Door " + id +
           " opened by %a\"/></ActionList>";
    xml += "</Behaviour>";
}

const std::string& Document() {
    static const std::string& document = *new std::string([] {
        std::string xml = "<?xml version=\"1.0\"?><BehaviourList>";
        for (int i = 0; i < kBehaviours; ++i) AppendBehaviour(i, xml);
        return xml + "</BehaviourList>";
    }());
    return document;
}

void XmlLibxmlParse(benchmark::State& state) {
    const std::string& xml = Document();
    for (auto _ : state) {
        xmlParserCtxt* context = xmlNewParserCtxt();
        xmlDoc* document = xmlCtxtReadMemory(context, xml.data(), static_cast<int>(xml.size()), nullptr,
                                             nullptr, XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_COMPACT);
        xmlFreeParserCtxt(context);
        benchmark::DoNotOptimize(document);
        xmlFreeDoc(document);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * xml.size()));
}
BENCHMARK(XmlLibxmlParse)->Unit(benchmark::kMillisecond);

void Read(XMLReader& reader, const char* name) {
    static std::string& text = *new std::string;
    int number = 0;
    bool flag = false;
    if (name[0] == 'E') {
        reader.ReadAttribute("value", flag);
    } else if (name[0] == 'S') {
        reader.ReadAttribute("Address", text);
        reader.ReadAttribute("State", number);
    } else if (name[0] == 'C') {
        reader.ReadAttribute("Caption", text);
        reader.ReadAttribute("Match", flag);
    } else if (name[0] == 'R') {
        reader.ReadAttribute("Command", text);
        reader.ReadAttribute("Delay", number);
    } else if (name[0] == 'L') {
        reader.ReadAttribute("Text", text);
    }
    benchmark::DoNotOptimize(number);
    benchmark::DoNotOptimize(flag);
}

void ReadChild(XMLReader& reader, const char* name, bool hasEnabled) {
    if (!reader.EnterSection(name, true)) std::abort();
    Read(reader, name);
    if (hasEnabled) ReadChild(reader, "Enabled", false);
    reader.CloseSection();
}

void Walk(XMLReader& reader) {
    std::string name;
    int behaviours = 0;
    if (!reader.EnterSection("BehaviourList", true)) std::abort();
    while (reader.EnterSection("Behaviour", false)) {
        reader.ReadAttribute("Name", name);
        ReadChild(reader, "Enabled", false);
        reader.EnterSection("TriggerList", true);
        ReadChild(reader, "StateTrigger", true);
        ReadChild(reader, "CaptionTrigger", true);
        reader.CloseSection();
        reader.EnterSection("ActionList", true);
        ReadChild(reader, "RunCommand", true);
        ReadChild(reader, "LogLine", false);
        reader.CloseSection();
        reader.CloseSection();
        ++behaviours;
    }
    reader.CloseSection();
    if (behaviours != kBehaviours) std::abort();
}

void XmlLoadAndWalk(benchmark::State& state) {
    const std::string& xml = Document();
    CStringA error;
    for (auto _ : state) {
        XMLReader reader;
        if (!reader.LoadFromString(xml.c_str(), error)) std::abort();
        Walk(reader);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * xml.size()));
}
BENCHMARK(XmlLoadAndWalk)->Unit(benchmark::kMillisecond);

void XmlLoadFileAndWalk(benchmark::State& state) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "brindle_xml_bench.xml";
    std::ofstream(path, std::ios::binary) << Document();
    CStringA error;
    for (auto _ : state) {
        XMLReader reader;
        if (!reader.Load(path.c_str(), error)) std::abort();
        Walk(reader);
    }
    std::filesystem::remove(path);
}
BENCHMARK(XmlLoadFileAndWalk)->Unit(benchmark::kMillisecond);

void XmlLoadPositioned(benchmark::State& state) {
    brindle::Result result;
    for (auto _ : state) {
        XMLReader reader;
        if (!reader.LoadFromStringPositioned(Document().c_str(), result)) std::abort();
    }
}
BENCHMARK(XmlLoadPositioned)->Unit(benchmark::kMillisecond);

// The walk alone, and the one that asks for the names of the children first: both linear in the children.
void XmlWalkByChildNames(benchmark::State& state) {
    std::string xml = "<L>";
    for (std::int64_t i = 0; i < state.range(0); ++i) xml += i % 2 ? "<A/>" : "<B/>";
    XMLReader reader;
    CStringA error;
    if (!reader.LoadFromString((xml + "</L>").c_str(), error)) std::abort();
    for (auto _ : state) {
        reader.EnterSection("L", true);
        for (const CStringA& name : reader.GetChildSections())
            if (reader.EnterSection(name, false)) reader.CloseSection();
        reader.CloseSection();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(XmlWalkByChildNames)->Arg(1000)->Arg(100000);

}  // namespace
