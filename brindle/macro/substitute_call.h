// Substitute paths without fixed buffers, for this folder.
#pragma once

#include <cstddef>
#include <string>

#include "brindle/macro/format_arguments.h"

namespace brindle {

constexpr std::size_t kMostSubstitutePath = 4'095;  // bytes of an expanded command line or path

// No address, no texts, status 0, no numbers.
FormatArguments NoFields() noexcept;

// GetSubstitutePathEx without its cut. `iniFile` null: the search-path INI file.
std::string ExpandSubstitutes(const char* path, bool checkExists, const FormatArguments& arguments,
                              const char* iniFile, bool format);
// The same as most callers need it: formatted, with the search-path INI file, cut to kMostSubstitutePath.
std::string SubstitutePath(const char* path, bool checkExists, const FormatArguments& arguments);

}  // namespace brindle
