// See create_difference.h. Tests: command_create_test.cpp.
#include "apps/brindle/create_difference.h"

#include <algorithm>
#include <vector>

#include "apps/brindle/cli_output.h"
#include "apps/brindle/create_files.h"
#include "apps/brindle/create_items.h"
#include "host/line_matching.h"

namespace brindle::tool {
namespace {

struct ShownItem {
    std::size_t behaviour;
    std::string text;

    // A behaviour that only has another number is the same.
    friend bool operator==(const ShownItem& a, const ShownItem& b) { return a.text == b.text; }
};

// Each behaviour is a line of its own before those of its items, so that items do not move between behaviours unseen.
std::vector<ShownItem> ItemsOf(const std::string& text, const std::string& file) {
    XMLReader reader;
    Result result;
    if (!reader.LoadFromStringPositioned(text.c_str(), result) || !reader.EnterSection("BehaviourList", true))
        throw Failure(kWrongUsage, file, result.ok() ? "is no behaviour list" : result.text);
    std::vector<ShownItem> items;
    std::size_t last = 0;
    const auto begin = [&](std::size_t behaviour) {
        while (last < behaviour) items.push_back({++last, "behaviour"});
    };
    const std::size_t behaviours = ForEachItem(reader, [&](const ListItem& item, XMLReader& at) {
        begin(item.behaviour);
        std::string markup;
        at.ReadXML(markup);
        std::replace(markup.begin(), markup.end(), '\n', ' ');
        items.push_back({item.behaviour, (item.isTrigger ? "trigger " : "action ") + markup});
    });
    begin(behaviours);
    return items;
}

void PrintItem(char mark, const ShownItem& item) {
    const std::string line = std::string(1, mark) + " behaviour " + std::to_string(item.behaviour) +
                             (item.text == "behaviour" ? "" : ": " + item.text);
    Print(Paint(Stream::kOutput, mark == '-' ? Colour::kRed : Colour::kGreen, line));
}

}  // namespace

bool PrintDifference(const std::string& oldFile, const std::string& newText) {
    const std::vector<ShownItem> before = ItemsOf(ReadDocument(oldFile, "BehaviourList"), oldFile);
    const std::vector<ShownItem> after = ItemsOf(newText, "the expansion");
    auto pairs = host::LineMatcher(before, after).Match();
    pairs.emplace_back(before.size(), after.size());
    std::size_t gone = 0, come = 0, b = 0, a = 0;
    for (const auto& [nextBefore, nextAfter] : pairs) {
        for (; b < nextBefore; ++b, ++gone) PrintItem('-', before[b]);
        for (; a < nextAfter; ++a, ++come) PrintItem('+', after[a]);
        b = nextBefore + 1;
        a = nextAfter + 1;
    }
    if (gone + come == 0) return false;
    Complain(oldFile, std::to_string(gone) + " items would go, " + std::to_string(come) + " would come");
    return true;
}

}  // namespace brindle::tool
