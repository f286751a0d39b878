// The expansion of "$NAME$" in a macro part, pass by pass. What it does stands in substitute_path.h.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/macro/format_arguments.h"

namespace brindle {

// Stands for "$$" during an expansion; not part of any text.
constexpr std::string_view kDollarMarker = "\x02\x03\x04";

class PathExpansion {
  public:
    static constexpr int kMostPasses = 64;
    static constexpr std::size_t kMostBytes = 65'536;     // with more to do
    static constexpr std::size_t kMostInPass = 16 << 20;  // what would go beyond stays as typed

    // All must outlive the object.
    PathExpansion(const FormatArguments& arguments, const char* iniFile, bool format)
        : m_arguments(arguments), m_iniFile(iniFile), m_format(format) {}

    // The macro part expanded, "$$" still as the marker.
    std::string Expand(std::string text) const;

  private:
    std::string Pass(const std::string& text) const;
    void AppendElement(std::string_view element, bool last, std::string& result) const;
    void AppendDirectories(std::string_view prefix, std::string value, std::string_view suffix,
                           std::string& result) const;

    const FormatArguments& m_arguments;
    const char* m_iniFile;
    bool m_format;
};

// Replaces every `from` by `to`.
void ReplaceEvery(std::string& text, std::string_view from, std::string_view to);
// The parts between the separators; empty ones vanish.
std::vector<std::string_view> SplitList(std::string_view text, char separator);

}  // namespace brindle
