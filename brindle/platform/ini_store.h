// IniStore: values by section and key in INI files. A private service.
//
// A file is lines: "[section]", "key=value", comments that begin with ";", and anything else, which is left alone.
//   - Names compare without regard to case, by the code page's table; of several sections or keys of one name the
//     first counts. A section runs up to the next section line; what stands behind its "]" does not count.
//   - Blanks (space, tab, vertical tab, form feed, 1A) around names and values are dropped. A value in a pair of
//     quotes, " or ', loses them and keeps the blanks inside. ";" is no comment behind a key. The value may be
//     empty, which is not absent; it ends at its first zero byte.
//   - Lines end with CR LF, LF or CR. A UTF-8 byte order mark is not known: it hides the line it stands in.
//   - Names that are asked for lose their outer blanks too; an empty one is never found.
// Files are host paths (files.h) of at most kIniMaxBytes; a file that cannot be read counts as missing.
// Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>

#include "brindle/framework/result.h"

namespace brindle {

constexpr std::uint64_t kIniMaxBytes = 16u << 20;

class IniStore {
  public:
    // Puts the value into `buffer` of `size` bytes, cut to size - 1 and with a zero behind it; returns its length.
    // Without one it is `defaultValue` (null: ""), less trailing spaces and a pair of quotes. A null `key` asks for
    // the list of the section's keys, a null `section` for the list of sections: each name with a zero, and one
    // more zero at the end, which the length does not count; an empty list is the default. A list longer than
    // size - 2 is cut to that and ends with two zeros. Size 0 puts nothing and returns 0.
    virtual std::size_t Read(const char* section, const char* key, const char* defaultValue, char* buffer,
                             std::size_t size, const char* file) = 0;
    // Sets the value of a key; a null `value` removes the key, a null `key` the section with all it holds. Only the
    // lines concerned change: comments, order, spelling and line ends stay. A new key goes behind the last line of
    // its section that is not blank, a new section to the end. The file is made when missing; its folder is not.
    // All or nothing, and two programs that write one file lose nothing. A value is written as it stands; one with
    // a line end or a zero byte in it is refused, and so are names that could not be found again.
    virtual Result Write(const char* section, const char* key, const char* value, const char* file) = 0;

  protected:
    ~IniStore() = default;  // never destroyed through this interface
};

// What the linked backend provides.
IniStore& BackendIniStore() noexcept;

IniStore& CurrentIniStore() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
IniStore* SetIniStore(IniStore* service) noexcept;

}  // namespace brindle
