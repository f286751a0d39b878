// Tests: settings_test.cpp.
#include "host/settings_text.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "host/words.h"

namespace brindle::host {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Where a key's value stands, or where its line would.
class IniPlace {
  public:
    IniPlace(std::string_view bytes, std::string_view section, std::string_view key) : m_bytes(bytes) {
        std::size_t begin = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
        while (begin < bytes.size() && !value) {
            const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
            Line(begin, end, section, key);
            begin = std::min(end + 1, bytes.size());
        }
    }

    std::optional<Span> value;
    std::optional<std::size_t> newLine;  // behind the section's last line that says something
    bool spaced = false;                 // its keys have blanks around "="

  private:
    void Line(std::size_t begin, std::size_t end, std::string_view section, std::string_view key) {
        const std::string_view line = Trimmed(Text(begin, end));
        if (line.empty() || line[0] == ';' || line[0] == '#') return;
        if (line[0] == '[') {
            m_inside =
                !m_seen && line.ends_with(']') && SameWord(Trimmed(line.substr(1, line.size() - 2)), section);
            m_seen = m_seen || m_inside;
            if (m_inside) newLine = std::min(end + 1, m_bytes.size());
            return;
        }
        if (!m_inside) return;
        newLine = std::min(end + 1, m_bytes.size());
        const std::size_t equals = m_bytes.find('=', begin);
        if (equals >= end) return;
        spaced = equals > begin && m_bytes[equals - 1] == ' ';
        if (!SameWord(Trimmed(Text(begin, equals)), key)) return;
        const std::string_view written = Text(equals + 1, end);
        const std::string_view trimmed = Trimmed(written);
        const std::size_t first =
            trimmed.empty() ? equals + 1 : static_cast<std::size_t>(trimmed.data() - m_bytes.data());
        value = Span{first, first + trimmed.size()};
    }
    // Without the end of the line.
    std::string_view Text(std::size_t begin, std::size_t end) const {
        std::string_view text = m_bytes.substr(begin, end - begin);
        if (text.ends_with('\r')) text.remove_suffix(1);
        return text;
    }

    std::string_view m_bytes;
    bool m_inside = false;
    bool m_seen = false;  // of several sections the first one counts
};

// The tags of a well-formed document, one after the other.
class TagWalk {
  public:
    explicit TagWalk(std::string_view bytes) : m_bytes(bytes) {}

    std::string_view name;
    Span attributes;
    bool closes = false;
    bool isEmpty = false;

    bool Next() {
        for (;;) {
            m_at = m_bytes.find('<', m_at);
            if (m_at == std::string_view::npos) return false;
            if (!Skip("<!--", "-->") && !Skip("<?", "?>") && !Skip("<![CDATA[", "]]>") && !Skip("<!", ">"))
                return Read();
        }
    }

  private:
    bool Skip(std::string_view begin, std::string_view end) {
        if (!m_bytes.substr(m_at).starts_with(begin)) return false;
        const std::size_t found = m_bytes.find(end, m_at + begin.size());
        m_at = found == std::string_view::npos ? m_bytes.size() : found + end.size();
        return true;
    }
    bool Read() {
        closes = m_bytes.substr(m_at).starts_with("</");
        const std::size_t begin = m_at + (closes ? 2 : 1);
        std::size_t end = begin;
        for (char quote = 0; end < m_bytes.size() && (quote || m_bytes[end] != '>'); ++end) {
            const char c = m_bytes[end];
            if (quote == 0 && (c == '"' || c == '\'')) {
                quote = c;
            } else if (c == quote) {
                quote = 0;
            }
        }
        if (end == m_bytes.size()) return false;
        isEmpty = !closes && m_bytes[end - 1] == '/';
        const std::string_view tag = m_bytes.substr(begin, end - begin - (isEmpty ? 1 : 0));
        name = tag.substr(0, tag.find_first_of(kBlanks));
        attributes = {begin + name.size(), begin + tag.size()};
        m_at = end + 1;
        return true;
    }

    std::string_view m_bytes;
    std::size_t m_at = 0;
};

// Where the attribute's value stands.
std::optional<Span> ValueOf(std::string_view bytes, Span attributes, std::string_view wanted) {
    std::size_t at = attributes.begin;
    while ((at = bytes.find_first_not_of(kBlanks, at)) < attributes.end) {
        const std::size_t equals = bytes.find('=', at);
        if (equals >= attributes.end) return {};
        const std::size_t open = bytes.find_first_of("\"'", equals);
        if (open >= attributes.end) return {};
        const std::size_t close = bytes.find(bytes[open], open + 1);
        if (close >= attributes.end) return {};
        std::string_view name = bytes.substr(at, equals - at);
        name = name.substr(0, name.find_last_not_of(kBlanks) + 1);
        if (name == wanted) return Span{open + 1, close};
        at = close + 1;
    }
    return {};
}

}  // namespace

void SetIniValue(std::string& bytes, std::string_view section, std::string_view key, std::string_view value) {
    const IniPlace place(bytes, section, key);
    if (place.value) {
        bytes.replace(place.value->begin, place.value->end - place.value->begin, value);
        return;
    }
    const std::string end = bytes.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    const std::string line = std::string(key) + (place.spaced ? " = " : "=") + std::string(value) + end;
    const std::size_t at = place.newLine.value_or(bytes.size());
    const bool open = at > 0 && at == bytes.size() && bytes[at - 1] != '\n';
    std::string added = open ? end : "";
    if (!place.newLine) added += (bytes.empty() ? "" : end) + "[" + std::string(section) + "]" + end;
    bytes.insert(at, added + line);
}

std::string SetSkinText(std::string& bytes, std::string_view mode, std::string_view element,
                        std::string_view attribute, std::string_view value) {
    if (bytes.find("<!DOCTYPE") != std::string::npos) return "the document has a DOCTYPE";
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return "the document is in UTF-16; only what writes one byte for \"<\" can be changed here";
    std::vector<std::string_view> open;
    std::optional<Span> found;
    for (TagWalk tag(bytes); tag.Next();) {
        if (tag.closes) {
            if (!open.empty()) open.pop_back();
            continue;
        }
        if (open.size() == 2 && open[1] == mode && tag.name == element)
            if (const auto span = ValueOf(bytes, tag.attributes, attribute)) found = span;
        if (!tag.isEmpty) open.push_back(tag.name);
    }
    if (!found) return "the file does not say it any more";
    bytes.replace(found->begin, found->end - found->begin, value);
    return {};
}

}  // namespace brindle::host
