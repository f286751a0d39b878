// Loading and saving through attribute tables. Tests: triggers_test.cpp.
#include "host/configured_item.h"

#include <algorithm>

namespace brindle::host {

namespace {

bool IsKnown(const AttributeTable& table, const CStringA& name) {
    return std::any_of(table.begin(), table.end(),
                       [&](const Attribute& attribute) { return name == attribute.name; });
}

}  // namespace

std::string FilledIn(std::string_view text, const std::vector<XMLWriter::Replacement>& placeholders) {
    std::string filled;
    while (!text.empty()) {
        const auto begins = [&](const XMLWriter::Replacement& placeholder) {
            return !placeholder.from.IsEmpty() && text.starts_with(placeholder.from.view());
        };
        const auto found = std::find_if(placeholders.begin(), placeholders.end(), begins);
        if (found == placeholders.end()) {
            filled += text.front();
            text.remove_prefix(1);
        } else {
            filled += found->to.view();
            text.remove_prefix(found->from.view().size());
        }
    }
    return filled;
}

std::vector<std::string> ReadAttributes(const XMLReader& reader, const AttributeTable& table) {
    std::vector<std::string> problems;
    for (const Attribute& attribute : table) {
        CStringA text;
        if (!reader.ReadAttribute(attribute.name.c_str(), text)) {
            if (attribute.required)
                problems.push_back("attribute \"" + attribute.name + "\" is missing: " + attribute.expects);
            continue;
        }
        const std::string why = attribute.parse(text.str());
        if (!why.empty()) problems.push_back("attribute \"" + attribute.name + "\": " + why);
    }
    for (const CStringA& name : reader.GetAttributeNames())
        if (!IsKnown(table, name))
            problems.push_back("attribute \"" + name.str() + "\" is unknown and has no effect");
    return problems;
}

void WriteAttributes(XMLWriter& writer, const AttributeTable& table, const AttributeTable& initial) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::string text = table[i].text();
        if (table[i].required || text != initial[i].text())
            writer.WriteAttribute(table[i].name.c_str(), text.c_str());
    }
}

std::string DescribeAttributes(const AttributeTable& table, const AttributeTable& initial) {
    std::string description;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::string text = table[i].text();
        if (table[i].name == "Name" || text == initial[i].text()) continue;
        if (!description.empty()) description += ' ';
        description += table[i].name + "=\"" + text + "\"";
    }
    return description;
}

}  // namespace brindle::host
