// The INI files of a site. Duplicates are found with a set at the end, so that a hostile file costs no more
// than its length. Tests: host_values_test.cpp.
#include "host/ini_text.h"

#include <algorithm>
#include <unordered_set>

#include "host/words.h"

namespace brindle::host {

namespace {

std::string Folded(std::string_view text) {
    std::string folded(text);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

void ReportDuplicates(std::vector<IniSection>& sections, const std::string& file, Problems& problems) {
    std::unordered_set<std::string> names;
    std::erase_if(sections, [&](const IniSection& section) {
        if (names.insert(Folded(section.name)).second) return false;
        problems.push_back({file, section.line, 1, "section [" + section.name + "] comes twice"});
        return true;
    });
    for (IniSection& section : sections) {
        names.clear();
        std::erase_if(section.keys, [&](const IniKey& key) {
            if (names.insert(Folded(key.name)).second) return false;
            problems.push_back({file, key.line, 1, "key \"" + key.name + "\" comes twice in its section"});
            return true;
        });
    }
}

}  // namespace

const IniKey* IniSection::Find(std::string_view wanted) const noexcept {
    for (const IniKey& key : keys)
        if (SameWord(key.name, wanted)) return &key;
    return nullptr;
}

const IniSection* IniText::Find(std::string_view name) const noexcept {
    for (const IniSection& section : m_sections)
        if (SameWord(section.name, name)) return &section;
    return nullptr;
}

IniText::IniText(std::string_view bytes, const std::string& file, Problems& problems) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    std::uint32_t number = 0;
    while (!bytes.empty()) {
        if (++number > kMostLines) {
            problems.push_back({file, number, 1, "more than " + std::to_string(kMostLines) + " lines"});
            break;
        }
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        ReadLine(Trimmed(line), number, file, problems);
    }
    ReportDuplicates(m_sections, file, problems);
}

void IniText::ReadLine(std::string_view line, std::uint32_t number, const std::string& file,
                       Problems& problems) {
    if (line.empty() || line[0] == ';' || line[0] == '#') return;
    if (line[0] == '[') {
        OpenSection(line, number, file, problems);
        return;
    }
    const std::size_t equals = line.find('=');
    const std::string_view name = Trimmed(line.substr(0, equals));
    if (equals == std::string_view::npos || name.empty())
        problems.push_back({file, number, 1, "is neither [section] nor key=value nor a comment"});
    else if (!m_inSection)
        problems.push_back({file, number, 1, "key \"" + std::string(name) + "\" stands before any section"});
    else
        m_sections.back().keys.push_back(
            {std::string(name), std::string(Trimmed(line.substr(equals + 1))), number});
}

void IniText::OpenSection(std::string_view line, std::uint32_t number, const std::string& file,
                          Problems& problems) {
    const std::string_view name = line.ends_with(']') ? Trimmed(line.substr(1, line.size() - 2)) : "";
    m_inSection = !name.empty();
    if (m_inSection)
        m_sections.push_back({std::string(name), number, {}});
    else
        problems.push_back({file, number, 1, "is not a section: a name between \"[\" and \"]\""});
}

}  // namespace brindle::host
