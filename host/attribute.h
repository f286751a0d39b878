// Attribute: one XML attribute of a trigger or action type: its name, how its text is read into a field and
// written back. A type describes itself once, as a table of these; loading, saving, replacing of
// placeholders, checking of files and the tests of the documentation all work from that table.
//
// An attribute refers to a field of the object it was made for and is valid as long as that object.
#pragma once

#include <brindle/framework/string_a.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

struct Attribute {
    std::string name;
    std::string expects;  // what a text must be, for documents and messages
    bool required = false;
    bool formatted = false;  // fields and variables in it are filled in at every run
    // Reads the text into the field. Returns why it cannot, the field then unchanged, or an empty text.
    std::function<std::string(std::string_view text)> parse;
    std::function<std::string()> text;
};

using AttributeTable = std::vector<Attribute>;

Attribute TextAttribute(std::string name, CStringA& field);
// A text whose "%" and "#" fields and "{name}" references are filled in at every run.
Attribute FormattedAttribute(std::string name, CStringA& field);
Attribute NumberAttribute(std::string name, int& field, int lowest, int highest);
// An optional number with a point.
Attribute RealAttribute(std::string name, std::optional<double>& field);
// "TRUE", "1", "ON" or "FALSE", "0", "OFF" in any case.
Attribute FlagAttribute(std::string name, bool& field);
// One of a few words, in any case; the field is the index of the word.
Attribute ChoiceAttribute(std::string name, int& field, std::vector<std::string> words);

// A field of a class with `std::string Parse(text)` (why not, or empty) and `Text()`.
template <class Field>
Attribute ParsedAttribute(std::string name, std::string expects, Field& field) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = std::move(expects);
    attribute.parse = [&field](std::string_view text) { return field.Parse(text); };
    attribute.text = [&field] { return field.Text(); };
    return attribute;
}

Attribute Required(Attribute attribute);

}  // namespace brindle::host
