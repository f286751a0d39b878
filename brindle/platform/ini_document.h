// IniDocument: the text of an INI file, its names and values, and the edits that leave the rest of it alone. What
// the text means stands in ini_store.h. Thread: one at a time, also for reading.
// Tests: ini_document_test.cpp, ini_store_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brindle {

class IniDocument {
  public:
    explicit IniDocument(std::string text);
    IniDocument(const IniDocument&) = delete;
    IniDocument& operator=(const IniDocument&) = delete;

    const std::string& Text() const noexcept { return m_text; }

    // The value without its quotes. False, `value` unchanged, when there is none. Valid until the next edit.
    bool Find(std::string_view section, std::string_view key, std::string_view& value) const;
    // The names in the order of the file, each with a zero behind it; of a section its keys.
    std::string SectionList() const;
    std::string KeyList(std::string_view section) const;

    // The edits of IniStore::Write; false when nothing had to change.
    bool SetValue(std::string_view section, std::string_view key, std::string_view value);
    bool RemoveKey(std::string_view section, std::string_view key);
    bool RemoveSection(std::string_view section);

  private:
    enum class Kind { kBlank, kSection, kKey, kOther };
    // Offsets into the text, so that the document needs no copies.
    struct Line {
        Kind kind = Kind::kBlank;
        std::size_t begin = 0;  // of the line
        std::size_t end = 0;    // behind its line end
        std::size_t nameBegin = 0, nameEnd = 0;
        std::size_t valueBegin = 0, valueEnd = 0;  // without the blanks around it
    };
    // Lines [first, last) of a section, its own line included; first == last: there is none.
    struct Section {
        std::size_t first = 0;
        std::size_t last = 0;
        bool Exists() const noexcept { return first != last; }
    };

    void Parse();
    void ParseLine(Line& line, std::size_t contentEnd) const;
    std::string_view Slice(std::size_t begin, std::size_t end) const noexcept {
        return std::string_view(m_text).substr(begin, end - begin);
    }
    std::string_view Name(const Line& line) const noexcept { return Slice(line.nameBegin, line.nameEnd); }
    Section FindSection(std::string_view name) const;
    const Line* FindKey(const Section& section, std::string_view key) const;
    const Line* FindIndexedKey(const Section& section, std::string_view key) const;
    std::string LineEnd() const;
    void Insert(std::size_t line, std::string_view text);
    void Erase(std::size_t begin, std::size_t end);

    std::string m_text;
    std::vector<Line> m_lines;
    std::vector<std::size_t> m_sections;  // their lines

    // Where the keys of one long section are, made when it is asked again and again.
    mutable std::size_t m_indexed = 0;  // its first line
    mutable int m_asked = 0;            // how often in a row
    mutable std::unordered_map<std::string, std::size_t> m_index;
};

// The name without the blanks around it.
std::string_view TrimmedIniName(std::string_view name) noexcept;
// The value without a pair of quotes around it.
std::string_view WithoutIniQuotes(std::string_view value) noexcept;
// Whether a section or key of that name, once written, would be found again.
bool IsIniSectionName(std::string_view name) noexcept;
bool IsIniKeyName(std::string_view name) noexcept;

}  // namespace brindle
