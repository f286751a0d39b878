// Looking up a colour in a skin of 50 elements, beside the same with two bare map look-ups; loading a skin of 1 MB,
// beside libxml2's own parse of the same bytes. Loads include destroying what they made.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "brindle/skin/ov_skin.h"

namespace {

constexpr int kElements = 50;
constexpr const char* kNames[] = {
    "bordersize", "bordercolour", "fillstyle", "fillcoloura", "fillcolourb", "x", "y"};

std::string ElementName(int i) {
    return "element" + std::to_string(i);
}

void LookUp(benchmark::State& state) {
    OVSkin skin;
    for (int i = 0; i < kElements; ++i)
        for (const char* name : kNames)
            skin.SetExactProp("default", ElementName(i).c_str(), name, CStringA("#8090a0"));
    const CStringA mode = "default";
    const CStringA element = ElementName(kElements / 2).c_str();
    const CStringA attribute = "fillcoloura";
    for (auto _ : state) {
        unsigned long colour = 0;
        skin.GetExactProp(mode, element, attribute, colour);
        benchmark::DoNotOptimize(colour);
    }
}
BENCHMARK(LookUp)->Name("SkinColour");

void LookUpInMaps(benchmark::State& state) {
    std::map<std::string, std::map<std::string, std::string, std::less<>>, std::less<>> elements;
    for (int i = 0; i < kElements; ++i)
        for (const char* name : kNames) elements[ElementName(i)][name] = "#8090a0";
    const std::string wantedElement = ElementName(kElements / 2);
    const std::string wantedAttribute = "fillcoloura";
    for (auto _ : state) {
        const auto element = elements.find(std::string_view(wantedElement));
        const auto attribute = element->second.find(std::string_view(wantedAttribute));
        unsigned long colour = std::strtoul(attribute->second.c_str() + 1, nullptr, 16);
        benchmark::DoNotOptimize(colour);
    }
}
BENCHMARK(LookUpInMaps)->Name("TwoMapsAndStrtoul");

// About a megabyte: modes of 50 elements of 7 attributes.
const std::string& Document() {
    static const std::string& text = *new std::string([] {
        std::string made = "<?xml version=\"1.0\"?><skin>";
        for (int mode = 0; made.size() < 1'000'000; ++mode) {
            made += "<mode" + std::to_string(mode) + ">";
            for (int i = 0; i < kElements; ++i) {
                made += "<" + ElementName(i);
                for (const char* name : kNames) made += " " + std::string(name) + "=\"#8090a0\"";
                made += "/>";
            }
            made += "</mode" + std::to_string(mode) + ">";
        }
        return made + "</skin>";
    }());
    return text;
}

void Load(benchmark::State& state) {
    const CStringA text = Document().c_str();
    for (auto _ : state) {
        OVSkin skin;
        if (!skin.LoadFromStr(text)) std::abort();
        benchmark::DoNotOptimize(skin);
    }
}
BENCHMARK(Load)->Name("SkinLoad")->Unit(benchmark::kMillisecond);

void LibxmlParse(benchmark::State& state) {
    const std::string& text = Document();
    for (auto _ : state) {
        xmlDoc* document =
            xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET);
        if (!document) std::abort();
        xmlFreeDoc(document);
    }
}
BENCHMARK(LibxmlParse)->Name("SkinLibxmlParse")->Unit(benchmark::kMillisecond);

}  // namespace
