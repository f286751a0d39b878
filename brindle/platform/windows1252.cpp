// The Windows-1252 table and the conversions through it. Tested in code_page_test.cpp.
#include "brindle/platform/windows1252.h"

#include <algorithm>
#include <array>

#include "brindle/platform/utf8.h"

namespace brindle {
namespace {

constexpr std::array<char16_t, 256> MakeTable() {
    constexpr std::array<char16_t, 32> c1 = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88
        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98
    };
    std::array<char16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<char16_t>(i);
    std::copy(c1.begin(), c1.end(), table.begin() + 0x80);
    return table;
}

constexpr std::array<char16_t, 256> kTable = MakeTable();

// The byte of a character, or -1.
int ByteOf(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<int>(character);
    for (int byte = 0x80; byte < 0xA0; ++byte)
        if (kTable[static_cast<std::size_t>(byte)] == character) return byte;
    return -1;
}

}  // namespace

void AppendUtf8FromWindows1252(std::string_view bytes, std::string& utf8) {
    const std::size_t ascii = AsciiPrefix(bytes);
    utf8.append(bytes.substr(0, ascii));
    for (const char byte : bytes.substr(ascii)) EncodeUtf8(kTable[static_cast<unsigned char>(byte)], utf8);
}

bool AppendWindows1252FromUtf8(std::string_view utf8, std::string& bytes) {
    bool complete = true;
    std::size_t i = AsciiPrefix(utf8);
    bytes.append(utf8.substr(0, i));
    while (i < utf8.size()) {
        const char32_t character = DecodeUtf8(utf8, i);
        const int byte = character == kNotUtf8 ? -1 : ByteOf(character);
        complete = complete && byte >= 0;
        bytes += byte >= 0 ? static_cast<char>(byte) : '?';
    }
    return complete;
}

}  // namespace brindle
