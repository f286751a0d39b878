// See xml_dom_text.h.
#include "brindle/platform/xml_dom_text.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "brindle/platform/utf8.h"

namespace brindle {
namespace {

enum ByteKind : std::uint8_t { kPlain, kMarkup, kAttributeOnly, kLead, kRefused };

constexpr std::array<std::uint8_t, 256> MakeByteKinds() {
    std::array<std::uint8_t, 256> kinds{};
    for (unsigned byte = 0; byte < 0x20; ++byte) kinds[byte] = kRefused;
    for (unsigned byte = 0x80; byte < 0x100; ++byte) kinds[byte] = kLead;
    for (const char byte : {'<', '>', '&', '\r'}) kinds[static_cast<unsigned char>(byte)] = kMarkup;
    for (const char byte : {'"', '\t', '\n'}) kinds[static_cast<unsigned char>(byte)] = kAttributeOnly;
    return kinds;
}
constexpr std::array<std::uint8_t, 256> kByteKinds = MakeByteKinds();

std::string_view Escape(char byte) {
    switch (byte) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        default:
            return "&#13;";
    }
}

// The shortest attribute is a blank, a letter, "=" and two quotes.
constexpr std::size_t kShortestAttribute = 5;

// Whether a start tag that begins with this text ("<" included) has too many attributes.
bool IsAttributeFlood(std::string_view tag) noexcept {
    if (tag.size() < 2 || tag[1] == '/' || tag[1] == '!' || tag[1] == '?') return false;
    unsigned attributes = 0;
    std::size_t at = 1;
    while ((at = tag.find_first_of("\"'>", at)) != std::string_view::npos && tag[at] != '>') {
        if (++attributes > kXmlMaxAttributes) return true;
        at = tag.find(tag[at], at + 1);
        if (at++ == std::string_view::npos) return false;
    }
    return false;
}

}  // namespace

bool AppendXmlText(std::string_view text, XmlTextKind kind, std::string& markup) {
    std::size_t copied = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const auto byteKind = kByteKinds[static_cast<unsigned char>(text[at])];
        if (byteKind == kPlain) {
            ++at;
        } else if (byteKind == kLead) {
            const char32_t character = DecodeUtf8(text, at);
            if (character == kNotUtf8 || character == 0xFFFE || character == 0xFFFF) return false;
        } else if (byteKind == kRefused) {
            return false;
        } else if (kind == XmlTextKind::kVerbatim ||
                   (byteKind == kAttributeOnly && kind == XmlTextKind::kText)) {
            ++at;
        } else {
            markup.append(text, copied, at - copied).append(Escape(text[at]));
            copied = ++at;
        }
    }
    markup.append(text, copied);
    return true;
}

std::size_t FindAttributeFlood(std::string_view markup) noexcept {
    constexpr std::size_t kShortestFlood = (kXmlMaxAttributes + 1) * kShortestAttribute;
    std::size_t tag = markup.find('<');
    while (tag != std::string_view::npos && markup.size() - tag > kShortestFlood) {
        const std::size_t next = markup.find('<', tag + 1);
        const std::size_t end = next == std::string_view::npos ? markup.size() : next;
        if (end - tag > kShortestFlood && IsAttributeFlood(markup.substr(tag, end - tag))) return tag;
        tag = next;
    }
    return std::string_view::npos;
}

XmlPosition XmlPlaces::At(std::size_t offset) noexcept {
    if (offset > m_text.size()) offset = m_text.size();
    if (offset < m_lineStart) *this = XmlPlaces(m_text);
    while (m_scanned < offset) {
        const void* end = std::memchr(m_text.data() + m_scanned, '\n', offset - m_scanned);
        m_scanned = offset;
        if (!end) break;
        m_scanned = m_lineStart = static_cast<std::size_t>(static_cast<const char*>(end) - m_text.data()) + 1;
        ++m_line;
    }
    return {m_line, static_cast<std::uint32_t>(offset - m_lineStart) + 1};
}

}  // namespace brindle
