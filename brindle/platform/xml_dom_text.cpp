// See xml_dom_text.h.
#include "brindle/platform/xml_dom_text.h"

#include <algorithm>
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

// A comment holds no "--" and does not end with "-".
std::string WithoutDoubleHyphens(std::string_view comment) {
    std::string broken;
    broken.reserve(comment.size());
    for (const char c : comment) {
        if (c == '-' && broken.ends_with('-')) broken += ' ';
        broken += c;
    }
    if (broken.ends_with('-')) broken += ' ';
    return broken;
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

bool ReplaceXmlText(std::string_view text, XmlTextKind kind, const XmlReplacements& replacements,
                    std::string& replaced) {
    const auto occurs = [&](const XmlReplacement& replacement) {
        return !replacement.from.empty() && text.find(replacement.from) != std::string_view::npos;
    };
    if (std::none_of(replacements.begin(), replacements.end(), occurs)) return false;
    // Where each of them stands next: no part of the text is searched twice for the same.
    std::vector<std::size_t> next(replacements.size(), 0);
    std::string changed;
    std::size_t copied = 0;
    for (;;) {
        std::size_t first = 0;
        for (std::size_t i = 0; i < next.size(); ++i) {
            const std::string_view from = replacements[i].from;
            if (from.empty())
                next[i] = std::string_view::npos;
            else if (next[i] != std::string_view::npos && (copied == 0 || next[i] < copied))
                next[i] = text.find(from, copied);
            if (next[i] < next[first]) first = i;
        }
        if (next[first] == std::string_view::npos) break;
        changed.append(text, copied, next[first] - copied).append(replacements[first].to);
        copied = next[first] + replacements[first].from.size();
    }
    changed.append(text, copied);
    replaced = kind == XmlTextKind::kVerbatim ? WithoutDoubleHyphens(changed) : std::move(changed);
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
