// Paths as text: nothing here looks at a file. Host paths may be written with "\" or "/" and with a drive.
// Thread: any.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

// What stands behind the last separator ("\", "/" or ":") that something follows, trailing separators included:
// "A\" of "C:\A\"; the whole path when there is no such separator.
std::string_view FileNameOf(std::string_view path) noexcept;

// One spelling for all of a path's: absolute (a relative one begins at the folder), written with "\", without "." and
// "..", which never leaves the root, and without doubled separators. Letter case stays.
std::string FullPathOf(std::string_view folder, std::string_view path);

// The way from a folder to a file, beginning with "." or "..": ".\f.txt", "..\..\x\f.txt". Names compare without
// regard to case. The steps up are written with "/" when the folder is, and the rest of the path as it stands.
// False, `relative` unchanged, when the two have nothing in common (other drives, relative paths that begin
// differently, an empty path), or the result would be longer than kMostRelativePath.
constexpr std::size_t kMostRelativePath = 259;
bool RelativePathTo(std::string_view fromFolder, std::string_view toFile, std::string& relative);

}  // namespace brindle
