// INI text: parsed into lines once, looked up by name, edited line by line.
#include "brindle/platform/ini_document.h"

#include <algorithm>

#include "brindle/framework/letter_case.h"

namespace brindle {
namespace {

constexpr auto kNone = std::string_view::npos;
constexpr std::string_view kLineEnds = "\r\n";

constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\x1A';
}

std::string Folded(std::string_view name) {
    std::string folded(name);
    for (char& c : folded) c = ToLower(c);
    return folded;
}

bool IsQuote(char c) noexcept {
    return c == '"' || c == '\'';
}

}  // namespace

std::string_view TrimmedIniName(std::string_view name) noexcept {
    while (!name.empty() && IsBlank(name.front())) name.remove_prefix(1);
    while (!name.empty() && IsBlank(name.back())) name.remove_suffix(1);
    return name;
}

std::string_view WithoutIniQuotes(std::string_view value) noexcept {
    const bool pair = value.size() > 1 && IsQuote(value.front()) && value.front() == value.back();
    return pair ? value.substr(1, value.size() - 2) : value;
}

bool IsIniSectionName(std::string_view name) noexcept {
    return !TrimmedIniName(name).empty() && name.find_first_of(kLineEnds) == kNone;
}

bool IsIniKeyName(std::string_view name) noexcept {
    const std::string_view key = TrimmedIniName(name);
    return !key.empty() && key.find_first_of("=\r\n") == kNone && key[0] != ';' && key[0] != '[';
}

IniDocument::IniDocument(std::string text) : m_text(std::move(text)) {
    Parse();
}

void IniDocument::Parse() {
    m_lines.clear();
    m_sections.clear();
    m_index.clear();
    m_asked = 0;
    for (std::size_t at = 0; at < m_text.size();) {
        const std::size_t content = std::min(m_text.find_first_of(kLineEnds, at), m_text.size());
        Line line;
        line.begin = at;
        line.end = std::min(content + 1, m_text.size());
        if (content + 1 < m_text.size() && m_text.compare(content, 2, kLineEnds) == 0) ++line.end;
        ParseLine(line, content);
        if (line.kind == Kind::kSection) m_sections.push_back(m_lines.size());
        m_lines.push_back(line);
        at = line.end;
    }
}

void IniDocument::ParseLine(Line& line, std::size_t contentEnd) const {
    const std::string_view content = TrimmedIniName(Slice(line.begin, contentEnd));
    if (content.empty()) return;
    const auto offset = [this](std::string_view part) {
        return static_cast<std::size_t>(part.data() - m_text.data());
    };
    const auto setName = [&](std::string_view name, Kind kind) {
        line.kind = kind;
        line.nameBegin = offset(name);
        line.nameEnd = line.nameBegin + name.size();
    };
    line.kind = Kind::kOther;
    if (content[0] == ';') return;
    if (content[0] == '[') {
        const std::size_t close = content.rfind(']');
        if (close != kNone) return setName(TrimmedIniName(content.substr(1, close - 1)), Kind::kSection);
    }
    const std::size_t equals = content.find('=');
    if (equals == kNone || equals == 0) return;
    setName(TrimmedIniName(content.substr(0, equals)), Kind::kKey);
    const std::string_view value = TrimmedIniName(content.substr(equals + 1));
    line.valueBegin = value.empty() ? offset(content) + equals + 1 : offset(value);
    line.valueEnd = line.valueBegin + value.size();
}

IniDocument::Section IniDocument::FindSection(std::string_view name) const {
    const std::string_view wanted = TrimmedIniName(name);
    if (wanted.empty()) return {};
    const auto found = std::find_if(m_sections.begin(), m_sections.end(), [&](std::size_t line) {
        return EqualNoCase(Name(m_lines[line]), wanted);
    });
    if (found == m_sections.end()) return {};
    return {*found, found + 1 == m_sections.end() ? m_lines.size() : *(found + 1)};
}

const IniDocument::Line* IniDocument::FindKey(const Section& section, std::string_view key) const {
    constexpr std::size_t kLong = 64;
    constexpr int kOften = 4;
    const std::string_view wanted = TrimmedIniName(key);
    if (m_indexed != section.first) {
        m_indexed = section.first;
        m_asked = 0;
        m_index.clear();
    }
    m_asked = std::min(m_asked + 1, kOften + 1);
    if (section.last - section.first > kLong && m_asked > kOften) return FindIndexedKey(section, wanted);
    for (std::size_t i = section.first; i < section.last; ++i)
        if (m_lines[i].kind == Kind::kKey && EqualNoCase(Name(m_lines[i]), wanted)) return &m_lines[i];
    return nullptr;
}

const IniDocument::Line* IniDocument::FindIndexedKey(const Section& section, std::string_view key) const {
    if (m_index.empty())
        for (std::size_t i = section.first; i < section.last; ++i)
            if (m_lines[i].kind == Kind::kKey) m_index.emplace(Folded(Name(m_lines[i])), i);
    const auto found = m_index.find(Folded(key));
    return found == m_index.end() ? nullptr : &m_lines[found->second];
}

bool IniDocument::Find(std::string_view section, std::string_view key, std::string_view& value) const {
    const Line* line = FindKey(FindSection(section), key);
    if (!line) return false;
    value = WithoutIniQuotes(Slice(line->valueBegin, line->valueEnd));
    value = value.substr(0, value.find('\0'));
    return true;
}

std::string IniDocument::SectionList() const {
    std::string list;
    for (const std::size_t line : m_sections)
        if (m_lines[line].nameBegin != m_lines[line].nameEnd)
            list.append(Name(m_lines[line])).append(1, '\0');
    return list;
}

std::string IniDocument::KeyList(std::string_view section) const {
    const Section found = FindSection(section);
    std::string list;
    for (std::size_t i = found.first; i < found.last; ++i)
        if (m_lines[i].kind == Kind::kKey) list.append(Name(m_lines[i])).append(1, '\0');
    return list;
}

// What the document's lines end with; CR LF where there is none yet.
std::string IniDocument::LineEnd() const {
    const std::size_t first = m_text.find_first_of(kLineEnds);
    if (first == std::string::npos) return std::string(kLineEnds);
    return m_text.compare(first, 2, kLineEnds) == 0 ? std::string(kLineEnds) : m_text.substr(first, 1);
}

// Puts a new line behind the line of that number.
void IniDocument::Insert(std::size_t line, std::string_view text) {
    const std::size_t at = m_lines[line].end;
    const bool open = kLineEnds.find(m_text[at - 1]) == kNone;  // the file's last line, not ended
    const std::string lineEnd = LineEnd();
    m_text.insert(at, (open ? lineEnd : std::string()) + std::string(text) + lineEnd);
    Parse();
}

void IniDocument::Erase(std::size_t begin, std::size_t end) {
    m_text.erase(begin, end - begin);
    Parse();
}

bool IniDocument::SetValue(std::string_view section, std::string_view key, std::string_view value) {
    const Section found = FindSection(section);
    const std::string entry = std::string(TrimmedIniName(key)) + "=" + std::string(value);
    if (!found.Exists()) {
        const std::string lineEnd = LineEnd();
        const bool open = !m_text.empty() && kLineEnds.find(m_text.back()) == kNone;
        m_text += (open ? lineEnd : std::string()) + "[" + std::string(TrimmedIniName(section)) + "]" +
                  lineEnd + entry + lineEnd;
        Parse();
        return true;
    }
    if (const Line* line = FindKey(found, key)) {
        if (Slice(line->valueBegin, line->valueEnd) == value) return false;
        m_text.replace(line->valueBegin, line->valueEnd - line->valueBegin, value);
        Parse();
        return true;
    }
    std::size_t last = found.last - 1;
    while (m_lines[last].kind == Kind::kBlank) --last;
    Insert(last, entry);
    return true;
}

bool IniDocument::RemoveKey(std::string_view section, std::string_view key) {
    const Line* line = FindKey(FindSection(section), key);
    if (!line) return false;
    Erase(line->begin, line->end);
    return true;
}

bool IniDocument::RemoveSection(std::string_view section) {
    const Section found = FindSection(section);
    if (!found.Exists()) return false;
    Erase(m_lines[found.first].begin, m_lines[found.last - 1].end);
    return true;
}

}  // namespace brindle
