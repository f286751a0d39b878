// The files and texts of a site, through the library's services: the one place where this host touches them.
//
// Paths are host paths in the ANSI code page: "\" reads as "/", and case does not matter where the exact
// spelling is missing. Texts of JSON and of the terminal are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brindle::host {

// The largest INI or XML file of a site.
constexpr std::uint64_t kLargestFile = 16U << 20;

// Returns why the file cannot be read, or an empty text with the file in `bytes`.
std::string ReadSiteFile(std::string_view path, std::string& bytes);
// The path the system knows the file by.
std::string SystemFilePath(std::string_view path);
// `path` seen from `folder`; an absolute path stays as it is.
std::string InFolder(std::string_view folder, std::string_view path);
// Whether the path names a folder.
bool IsFolder(std::string_view path);

// Between the library's bytes and UTF-8. What has no byte in the code page becomes "?".
std::string TextToUtf8(std::string_view bytes);
std::string TextFromUtf8(std::string_view utf8);

}  // namespace brindle::host
