// One template multiplied by 10,000 fields and values, beside the same two documents built and saved node by node with
// libxml2 itself, by somebody who knows beforehand what they hold.
#include <benchmark/benchmark.h>
#include <libxml/tree.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/syscreate/sys_create.h"
#include "host/register_types.h"

namespace {

constexpr int kPairs = 10'000;

const char* const kTemplate =
    "<BehaviourList><Behaviour><TriggerList><PollTrigger Name=\"Every poll\"><Enabled "
    "value=\"TRUE\"/></PollTrigger>"
    "</TriggerList><ActionList><GetSNMPAction Name=\"Transmitter\" Agent=\"10.0.0.11\" Community=\"station\" "
    "Object=\"%OBJFLD%\" Label=\"%OBJVAL%\" Variable=\"Tx %OBJVAL%\" Scope=\"SITE\" Timeout=\"500\" "
    "ResultUnit=\"Tx\">"
    "<Enabled value=\"TRUE\"/></GetSNMPAction></ActionList></Behaviour></BehaviourList>";

struct Pairs {
    CStringArray fields;
    CStringArray values;
};

const Pairs& AllPairs() {
    static const Pairs& pairs = *[] {
        brindle::host::RegisterHostTypes();
        auto* made = new Pairs;
        for (int i = 0; i < kPairs; ++i) {
            made->fields.Add(CStringA("1.3.6.1.4.1.8072.9." + std::to_string(i) + ".0"));
            made->values.Add(CStringA("Value " + std::to_string(i)));
        }
        return made;
    }();
    return pairs;
}

xmlNode* Add(xmlNode* parent, const char* name) {
    return xmlNewChild(parent, nullptr, BAD_CAST name, nullptr);
}

void Set(xmlNode* element, const char* name, const char* value) {
    xmlNewProp(element, BAD_CAST name, BAD_CAST value);
}

void AddEnabled(xmlNode* parent) {
    Set(Add(parent, "Enabled"), "value", "TRUE");
}

void AddAction(xmlNode* list, const char* object, const char* label, bool isTemplate) {
    xmlNode* action = Add(list, "GetSNMPAction");
    Set(action, "Name", "Transmitter");
    Set(action, "Agent", "10.0.0.11");
    Set(action, "Community", "station");
    Set(action, "Object", object);
    Set(action, "Label", label);
    Set(action, "Variable", ("Tx " + std::string(label)).c_str());
    Set(action, "Scope", "SITE");
    Set(action, "Timeout", "500");
    if (isTemplate) Set(action, "Template", "TRUE");
    Set(action, "ResultUnit", "Tx");
    AddEnabled(action);
}

std::string SaveAndFree(xmlDoc* document) {
    xmlChar* text = nullptr;
    int length = 0;
    xmlDocDumpMemory(document, &text, &length);
    std::string saved(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
    xmlFree(text);
    xmlFreeDoc(document);
    return saved;
}

std::string BuildList() {
    xmlDoc* document = xmlNewDoc(BAD_CAST "1.0");
    xmlNode* root = xmlNewNode(nullptr, BAD_CAST "BehaviourList");
    xmlDocSetRootElement(document, root);
    xmlNode* behaviour = Add(root, "Behaviour");
    xmlNode* trigger = Add(Add(behaviour, "TriggerList"), "PollTrigger");
    Set(trigger, "Name", "Every poll");
    AddEnabled(trigger);
    xmlNode* actions = Add(behaviour, "ActionList");
    AddAction(actions, "%OBJFLD%", "%OBJVAL%", true);
    for (int i = 0; i < kPairs; ++i) AddAction(actions, AllPairs().fields[i], AllPairs().values[i], false);
    return SaveAndFree(document);
}

std::string BuildResults() {
    xmlDoc* document = xmlNewDoc(BAD_CAST "1.0");
    xmlNode* root = xmlNewNode(nullptr, BAD_CAST "ResultsList");
    xmlDocSetRootElement(document, root);
    for (int i = 0; i < kPairs; ++i) {
        xmlNode* result = Add(root, "Result");
        Set(result, "ID", std::to_string(i).c_str());
        Set(result, "Objval", AllPairs().values[i]);
        Set(result, "Unit", "Tx");
        Set(result, "Header", AllPairs().values[i]);
    }
    return SaveAndFree(document);
}

// libxml2's writer puts a line feed behind the declaration and at the end.
std::string WithoutLineFeeds(std::string text) {
    std::string plain;
    for (const char c : text)
        if (c != '\n') plain += c;
    return plain;
}

void ExpandTemplate(benchmark::State& state) {
    const Pairs& pairs = AllPairs();
    SysCreate create;
    CStringA list;
    for (auto _ : state) {
        list = create.ExpandXML(kTemplate, &pairs.fields, &pairs.values);
        benchmark::DoNotOptimize(list.GetString());
    }
    if (list.str() != WithoutLineFeeds(BuildList()) ||
        create.ResultInfo().str() != WithoutLineFeeds(BuildResults()))
        std::abort();  // not the same work
}
BENCHMARK(ExpandTemplate)->Unit(benchmark::kMillisecond);

void BuildAndSaveWithLibxml2(benchmark::State& state) {
    AllPairs();
    for (auto _ : state) {
        std::string list = BuildList();
        std::string results = BuildResults();
        benchmark::DoNotOptimize(list);
        benchmark::DoNotOptimize(results);
    }
}
BENCHMARK(BuildAndSaveWithLibxml2)->Unit(benchmark::kMillisecond);

}  // namespace
