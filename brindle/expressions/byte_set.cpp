// Sets of bytes and how the engine is told of them. Tests: wildcard_test.cpp.
#include "brindle/expressions/byte_set.h"

#include <array>

namespace brindle {
namespace {

struct NamedSet {
    std::string_view name;
    std::string_view ranges;  // pairs of first and last byte
};

constexpr std::array<NamedSet, 15> kNamedSets = {{
    {"alnum", "09AZaz"},
    {"alpha", "AZaz"},
    {"blank", "  \t\t"},
    {"cntrl", std::string_view("\0\x1F\x7F\x7F", 4)},
    {"d", "09"},
    {"digit", "09"},
    {"graph", "!~"},
    {"lower", "az"},
    {"print", " ~"},
    {"punct", "!/:@[`{~"},
    {"s", "\t\r  "},
    {"space", "\t\r  "},
    {"upper", "AZ"},
    {"w", "09AZ__az"},
    {"xdigit", "09AFaf"},
}};

void AppendByte(std::string& out, unsigned byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    out += "\\x";
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

// The engine compares the ends of a range as signed characters, so none may cross from 0x7F to 0x80.
constexpr unsigned LastOfHalf(unsigned byte) noexcept {
    return byte < 0x80 ? 0x7F : 0xFF;
}

}  // namespace

ByteSet ByteSet::All() {
    ByteSet set;
    set.Complement();
    return set;
}

bool ByteSet::OfName(std::string_view name, ByteSet& set) {
    for (const NamedSet& named : kNamedSets) {
        if (named.name != name) continue;
        for (std::size_t i = 0; i + 1 < named.ranges.size(); i += 2)
            set.AddRange(static_cast<unsigned char>(named.ranges[i]),
                         static_cast<unsigned char>(named.ranges[i + 1]));
        return true;
    }
    return false;
}

bool ByteSet::OfAbbreviation(char letter, ByteSet& set) {
    switch (letter) {
        case 'a':
            return OfName("alnum", set);
        case 'b':
            return OfName("blank", set);
        case 'c':
            return OfName("alpha", set);
        case 'd':
            return OfName("digit", set);
        case 'h':
            return OfName("xdigit", set);
        case 's':
            return OfName("space", set);
        case 'D':
            OfName("digit", set);
            break;
        case 'S':
            OfName("space", set);
            break;
        case 'W':
            OfName("w", set);
            break;
        default:
            return false;
    }
    set.Complement();
    return true;
}

void ByteSet::AddRange(unsigned char first, unsigned char last) {
    for (unsigned byte = first; byte <= last; ++byte) m_bytes.set(byte);
}

void ByteSet::AppendTo(std::string& out) const {
    if (m_bytes.none()) {
        out += "[^\\x00-\\x7f\\x80-\\xff]";
        return;
    }
    out += '[';
    for (unsigned first = 0; first < 256; ++first) {
        if (!m_bytes.test(first)) continue;
        unsigned last = first;
        while (last < LastOfHalf(first) && m_bytes.test(last + 1)) ++last;
        AppendByte(out, first);
        if (last > first) {
            out += '-';
            AppendByte(out, last);
        }
        first = last;
    }
    out += ']';
}

}  // namespace brindle
