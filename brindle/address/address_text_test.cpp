// Address texts: the rows that matter, then every prefix of valid texts and every short text over the letters that
// mean something, compared with a slow parser that is written down straight from the rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <regex>
#include <string>

#include "brindle/address/address_ov.h"

namespace {

struct Parsed {
    bool ok = false;
    std::uint32_t number[3] = {};
    bool deferred[3] = {};

    std::string Text() const {
        std::string out = ok ? "yes" : "no";
        for (int i = 0; i < 3; ++i) {
            out += " " + std::to_string(number[i]);
            if (deferred[i]) out += "?";
        }
        return out;
    }
};

// Starts from parts that are all set and not deferred, as SetAddress does on an address with nothing deferred.
Parsed ByLibrary(const std::string& text) {
    CAddressOv address(7u, 7u, 7u);
    Parsed out;
    out.ok = address.SetAddress(text.c_str()) == 1;
    const CStringA parts[] = {address.GetNetString(), address.GetUnitString(), address.GetPortString()};
    const bool deferred[] = {address.IsNetDeferred(), address.IsUnitDeferred(), address.IsPortDeferred()};
    for (int i = 0; i < 3; ++i) {
        out.number[i] = static_cast<std::uint32_t>(std::stoul(parts[i].str(), nullptr, 16));
        out.deferred[i] = deferred[i];
    }
    return out;
}

// --- the slow parser ---

const char* const kNumber = "[ \\t\\n\\v\\f\\r]*([+-]?)(?:0[xX]([0-9A-Fa-f]+)|(?!0[xX])([0-9A-Fa-f]+))";

// A matched number: sign, then the digits behind "0x" or without it. Nothing when it needs more than 32 bits.
std::optional<std::uint32_t> Number(const std::smatch& match, std::size_t group) {
    std::string digits = match[group + 1].str() + match[group + 2].str();
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
    if (digits.size() > 8) return std::nullopt;
    const auto magnitude = static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
    return match[group].str() == "-" ? 0u - magnitude : magnitude;
}

bool SlowNumbers(const std::string& text, Parsed& out) {
    static const std::regex pattern(std::string("^") + kNumber + ":" + kNumber + ":" + kNumber);
    std::smatch match;
    if (!std::regex_search(text, match, pattern)) return false;
    const std::uint32_t masks[] = {0xFFFF, 0xFF, 0xFF};
    for (std::size_t i = 0; i < 3; ++i) {
        // Saturated before the sign counts: a negative number that is too large becomes 1.
        const std::uint32_t tooLarge = match[1 + 3 * i].str() == "-" ? 1u : 0xFFFFFFFFu;
        out.number[i] = Number(match, 1 + 3 * i).value_or(tooLarge) & masks[i];
    }
    return true;
}

bool SlowPart(const std::string& text, std::uint32_t& number, bool& deferred) {
    static const std::regex pattern(std::string("^") + kNumber);
    deferred = std::all_of(text.begin(), text.end(), [](char c) { return c == '?'; });
    if (deferred) return true;
    std::smatch match;
    if (!std::regex_search(text, match, pattern)) {
        number = 0;
        return false;
    }
    const auto read = Number(match, 1);
    number = read.value_or(0xFFFFFFFFu);
    return read.has_value();
}

Parsed BySlowParser(const std::string& text) {
    Parsed out;
    if (SlowNumbers(text, out)) {
        out.ok = true;
        return out;
    }
    const std::string used = text.substr(0, text.find(','));
    static const std::regex colons("^([^:]*):([^:]*):([^]*)$");
    std::smatch match;
    if (!std::regex_match(used, match, colons)) return out;
    out.ok = true;
    for (std::size_t i = 0; i < 3; ++i)
        if (!SlowPart(match[i + 1].str(), out.number[i], out.deferred[i])) out.ok = false;
    return out;
}

// --- the tests ---

TEST(AddressText, Rows) {
    struct Row {
        const char* label;
        const char* text;
        const char* expected;  // verdict, numbers in decimal, "?" behind a deferred part
    };
    const Row rows[] = {
        // the plain form
        {"canonical", "0012:03:04", "yes 18 3 4"},
        {"short", "1:2:3", "yes 1 2 3"},
        {"lower case", "ab:c:d", "yes 171 12 13"},
        {"cut to the range", "1FFFF:1FF:1FF", "yes 65535 255 255"},
        {"0x", "0x12:0X3:0x4", "yes 18 3 4"},
        {"signs", "+1:-1:-2", "yes 1 255 254"},
        {"white space before numbers", " 1:\t2:\n\v\f\r3", "yes 1 2 3"},
        {"text behind the third number", "1:2:3zebra", "yes 1 2 3"},
        {"a fourth part", "1:2:3:4", "yes 1 2 3"},
        {"a comma behind", "1:2:3,?:?:?", "yes 1 2 3"},
        {"saturated, then cut", "123456789:123456789:123456789", "yes 65535 255 255"},
        {"negative and saturated", "-123456789:2:3", "yes 1 2 3"},
        {"many zeros", "0000000000000000012:3:4", "yes 18 3 4"},
        // deferred parts
        {"unit open", "12:?:4", "yes 18 0? 4"},
        {"two colons alone", "::", "yes 0? 0? 0?"},
        {"question marks", "?:??:???", "yes 0? 0? 0?"},
        {"comma and more", "??:01:02,extra", "yes 0? 1 2"},
        {"empty port", "12:3:", "yes 18 3 0?"},
        {"kept uncut", "?:1FF:2", "yes 0? 511 2"},
        {"net kept uncut", "12345:?:2", "yes 74565 0? 2"},
        {"sign kept uncut", "?:-1:2", "yes 0? 4294967295 2"},
        {"0x in a part", "?:0x1F:2", "yes 0? 31 2"},
        {"further colons stay in the port text", "?:1:2:3", "yes 0? 1 2"},
        {"text behind a number is ignored", "?:1x:2y", "yes 0? 1 2"},
        {"space before a colon: parts, uncut", "1FFFF :2:3", "yes 131071 2 3"},
        {"largest number", "?:FFFFFFFF:2", "yes 0? 4294967295 2"},
        // no addresses
        {"empty", "", "no 0 0 0"},
        {"one colon", "1:2", "no 0 0 0"},
        {"no colon", "123", "no 0 0 0"},
        {"blanks for colons", "1 2 3", "no 0 0 0"},
        {"dashes for colons", "1-2-3", "no 0 0 0"},
        {"comma before the second colon", "1:2,:3", "no 0 0 0"},
        {"comma first", ",1:2:3", "no 0 0 0"},
        {"three colons alone: the port text is one", ":::", "no 0? 0? 0"},
        {"letters", "xx:yy:zz", "no 0 0 0"},
        {"a letter in one part: the others are read", "12:x:4", "no 18 0 4"},
        {"question mark and more", "1:?2:3", "no 1 0 3"},
        {"blank and question mark", "1: ?:3", "no 1 0 3"},
        {"blank part", "1: :3", "no 1 0 3"},
        {"0x alone", "1:0x:3", "no 1 0 3"},
        {"0x alone in the port", "1:2:0x", "no 1 2 0"},
        {"sign alone", "1:-:3", "no 1 0 3"},
        {"too large: fails and holds the largest", "?:100000000:2", "no 0? 4294967295 2"},
        {"too large and negative", "?:-100000000:2", "no 0? 4294967295 2"},
        {"a high byte", "1:\xE9:3", "no 1 0 3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(ByLibrary(row.text).Text(), row.expected);
        EXPECT_EQ(BySlowParser(row.text).Text(), row.expected) << "the slow parser";
    }
}

TEST(AddressText, NullTextChangesNothing) {
    CAddressOv address("1:?:3");
    EXPECT_EQ(address.SetAddress(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(address.GetString(), "0001:00:03");
    EXPECT_TRUE(address.IsUnitDeferred());
    EXPECT_FALSE(address.IsNetDeferred());
}

TEST(AddressText, FlagsOfAnAddressWithoutTwoColonsStayAsTheyWere) {
    CAddressOv address;
    EXPECT_EQ(address.SetAddress("1:2"), 0);
    EXPECT_TRUE(address.IsNetDeferred() && address.IsUnitDeferred() && address.IsPortDeferred());
    EXPECT_FALSE(CAddressOv("1:2").IsDeferred());
}

TEST(AddressText, EveryPrefixOfValidTexts) {
    for (const std::string text :
         {"0012:03:04", "1FFFF:1FF:1FF", "12:?:4", "::", "??:01:02,extra", " 0x12 : -3:\t+0X4g", "?:1FF:2",
          "123456789:123456789:123456789", "?:123456789:?,:"}) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            const std::string prefix = text.substr(0, length);
            SCOPED_TRACE(prefix);
            EXPECT_EQ(ByLibrary(prefix).Text(), BySlowParser(prefix).Text());
        }
    }
}

// All texts of up to five of the letters that mean something, put behind and between parts.
TEST(AddressText, EveryShortText) {
    const std::string letters = "0Fx:?-, ";
    for (std::size_t length = 0; length <= 5; ++length) {
        std::size_t count = 1;
        for (std::size_t i = 0; i < length; ++i) count *= letters.size();
        for (std::size_t n = 0; n < count; ++n) {
            std::string text;
            for (std::size_t i = 0, rest = n; i < length; ++i, rest /= letters.size())
                text += letters[rest % letters.size()];
            for (const std::string& whole : {text, "1:" + text})
                ASSERT_EQ(ByLibrary(whole).Text(), BySlowParser(whole).Text()) << "text: " << whole;
        }
    }
}

}  // namespace
