// The kinds of attributes. Tests: host_values_test.cpp.
#include "host/attribute.h"

#include <algorithm>
#include <cmath>

#include "host/words.h"

namespace brindle::host {

namespace {

std::string NotA(std::string_view text, const std::string& expects) {
    return "\"" + std::string(text) + "\" is not " + expects;
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i) text += i + 1 == words.size() ? " or " : ", ";
        text += words[i];
    }
    return text;
}

}  // namespace

Attribute TextAttribute(std::string name, CStringA& field) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = "a text";
    attribute.parse = [&field](std::string_view text) {
        field = std::string(text);
        return std::string();
    };
    attribute.text = [&field] { return field.str(); };
    return attribute;
}

Attribute FormattedAttribute(std::string name, CStringA& field) {
    Attribute attribute = TextAttribute(std::move(name), field);
    attribute.expects = "a text with fields";
    attribute.formatted = true;
    return attribute;
}

Attribute NumberAttribute(std::string name, int& field, int lowest, int highest) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
    attribute.parse = [&field, lowest, highest, expects = attribute.expects](std::string_view text) {
        int value = 0;
        if (!ParseInt(Trimmed(text), value) || value < lowest || value > highest) return NotA(text, expects);
        field = value;
        return std::string();
    };
    attribute.text = [&field] { return std::to_string(field); };
    return attribute;
}

Attribute RealAttribute(std::string name, std::optional<double>& field) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = "a number such as -12.5";
    attribute.parse = [&field, expects = attribute.expects](std::string_view text) {
        double value = 0;
        if (!ParseReal(Trimmed(text), value)) return NotA(text, expects);
        field = value;
        return std::string();
    };
    attribute.text = [&field] { return field ? RealText(*field) : std::string(); };
    return attribute;
}

Attribute FlagAttribute(std::string name, bool& field) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = "TRUE or FALSE";
    attribute.parse = [&field, expects = attribute.expects](std::string_view text) {
        const std::string_view word = Trimmed(text);
        const bool on = SameWord(word, "TRUE") || word == "1" || SameWord(word, "ON");
        if (!on && !SameWord(word, "FALSE") && word != "0" && !SameWord(word, "OFF"))
            return NotA(text, expects);
        field = on;
        return std::string();
    };
    attribute.text = [&field] { return std::string(field ? "TRUE" : "FALSE"); };
    return attribute;
}

Attribute ChoiceAttribute(std::string name, int& field, std::vector<std::string> words) {
    Attribute attribute;
    attribute.name = std::move(name);
    attribute.expects = JoinWords(words);
    attribute.text = [&field, words] { return words.at(static_cast<std::size_t>(field)); };
    attribute.parse = [&field, words = std::move(words), expects = attribute.expects](std::string_view text) {
        const auto found = std::find_if(words.begin(), words.end(), [&](const std::string& word) {
            return SameWord(word, Trimmed(text));
        });
        if (found == words.end()) return NotA(text, expects);
        field = static_cast<int>(found - words.begin());
        return std::string();
    };
    return attribute;
}

Attribute Required(Attribute attribute) {
    attribute.required = true;
    return attribute;
}

}  // namespace brindle::host
