// Files by host path, for hosts: the library's own reading of a path, so that a site moved over from the other
// system opens for the host exactly as for the library.
//
// A host path is bytes in the ANSI code page. "\" reads as "/", a drive letter goes through the table of
// MapDriveLetter (by default to the root), ".." never leaves a mapped drive, and where the exact spelling is
// missing each component is looked for without regard to case. Thread: any; drives are mapped at start-up.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"

namespace brindle {

// The whole file into `bytes`. Fails, `bytes` unchanged, when it cannot be opened or holds more than `limit`
// bytes.
BRINDLE_API Result ReadHostFile(std::string_view hostPath, std::uint64_t limit, std::string& bytes);
// Writes the whole file or nothing: an existing file stays as it was when this fails.
BRINDLE_API Result WriteHostFile(std::string_view hostPath, std::string_view bytes);
// What tells one content of a file from another: its size, its times, which file it is. Equal marks mean the same
// content, except for changes that follow one another within the resolution of the file system's clock.
struct HostFileMarks {
    bool exists = false;
    std::array<std::uint64_t, 6> marks{};

    friend bool operator==(const HostFileMarks&, const HostFileMarks&) = default;
};
// All zero when there is no such regular file.
BRINDLE_API HostFileMarks MarksOfHostFile(std::string_view hostPath);
// The path the system knows an existing file by: UTF-8, or whatever bytes the system uses.
BRINDLE_API std::string SystemPathOf(std::string_view hostPath);
// A path that holds wherever the current directory moves to: a relative one gets the current directory before it.
BRINDLE_API std::string AbsoluteHostPath(std::string_view hostPath);
// Maps a drive letter (any case) to a folder of the system; an empty folder removes the mapping. False for what
// is not a letter.
BRINDLE_API bool MapDriveLetter(char letter, std::string_view systemFolder);

}  // namespace brindle
