// IniText: the sections and keys of a site's INI file, with the lines they stand on. It is stricter than what
// hosts read from INI files elsewhere: whatever it does not understand is a problem, not silence.
//
//   [section name]        ends at the next one
//   key = value           blanks around both are dropped; the value may be empty and may hold "="
//   ; comment             whole lines only, also with "#"
//
// Section names and keys compare without regard to the case of A to Z. A section or a key that comes twice is
// a problem; the first one counts. Bytes are in the ANSI code page; a UTF-8 byte order mark is skipped.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/problem.h"

namespace brindle::host {

struct IniKey {
    std::string name;
    std::string value;
    std::uint32_t line = 0;
};

struct IniSection {
    std::string name;
    std::uint32_t line = 0;
    std::vector<IniKey> keys;  // in the order of the file

    const IniKey* Find(std::string_view name) const noexcept;
};

class IniText {
  public:
    static constexpr std::size_t kMostLines = 200'000;

    // Reads the text; problems name `file`. What could be read is kept.
    IniText(std::string_view bytes, const std::string& file, Problems& problems);

    const std::vector<IniSection>& Sections() const noexcept { return m_sections; }
    const IniSection* Find(std::string_view name) const noexcept;

  private:
    void ReadLine(std::string_view line, std::uint32_t number, const std::string& file, Problems& problems);
    void OpenSection(std::string_view line, std::uint32_t number, const std::string& file,
                     Problems& problems);

    std::vector<IniSection> m_sections;
    bool m_inSection = false;
};

}  // namespace brindle::host
