// UTF-8 decoding and encoding for the code page service. Tested in code_page_test.cpp.
#include "brindle/platform/utf8.h"

#include <cstdint>
#include <cstring>

namespace brindle {
namespace {

// Bytes behind the lead byte, and the smallest character that needs so many.
struct LeadByte {
    unsigned tailCount;
    unsigned bits;
    char32_t smallest;
};

bool ClassifyLead(unsigned char lead, LeadByte& out) noexcept {
    if (lead >= 0xC2 && lead <= 0xDF) {
        out = {1, lead & 0x1Fu, 0x80};
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        out = {2, lead & 0x0Fu, 0x800};
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        out = {3, lead & 0x07u, 0x10000};
    } else {
        return false;
    }
    return true;
}

bool IsScalar(char32_t character) noexcept {
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

}  // namespace

char32_t DecodeUtf8(std::string_view text, std::size_t& position) noexcept {
    const auto lead = static_cast<unsigned char>(text[position]);
    const std::size_t begin = position++;
    if (lead < 0x80) return lead;
    LeadByte kind{};
    if (!ClassifyLead(lead, kind) || text.size() - begin <= kind.tailCount) return kNotUtf8;
    char32_t character = kind.bits;
    for (unsigned i = 1; i <= kind.tailCount; ++i) {
        const auto tail = static_cast<unsigned char>(text[begin + i]);
        if ((tail & 0xC0) != 0x80) return kNotUtf8;
        character = (character << 6) | (tail & 0x3Fu);
    }
    if (character < kind.smallest || !IsScalar(character)) return kNotUtf8;
    position = begin + 1 + kind.tailCount;
    return character;
}

void EncodeUtf8(char32_t character, std::string& text) {
    const auto tail = [&](unsigned shift) {
        text += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | (character >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

bool IsUtf8(std::string_view text) noexcept {
    for (std::size_t i = AsciiPrefix(text); i < text.size();)
        if (DecodeUtf8(text, i) == kNotUtf8) return false;
    return true;
}

std::size_t AsciiPrefix(std::string_view text) noexcept {
    constexpr std::uint64_t kHighBits = 0x8080808080808080u;
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= text.size(); i += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + i, sizeof word);
        if (word & kHighBits) break;
    }
    while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) ++i;
    return i;
}

}  // namespace brindle
