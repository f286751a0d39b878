// Substitute paths: "$NAME$" in paths and command lines stands for one or more directories, listed in the
// "SearchPath" section of an INI file, so that an installation moves its files by editing that file.
//
//   [SearchPath]
//   LIB=C:\A;%ProgramData%\Station\;$SHARED$\lib
//
// A directory may refer to environment variables, "%NAME%" in any letter case, and to further macros; ";" separates
// candidates; "$$" is a plain "$". A macro that is not defined becomes "?NAME?".
//
// Expansion is textual, and it comes before a line is split into arguments: what a field stands for may hold "$",
// ";" or a quote, and then names a macro, becomes a candidate or ends an argument. Hosts that start programs with
// texts from devices put those fields in quotes and install a start filter (start_filter.h).
//
// Thread: the user interface's; the settings are plain values, set at start-up.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

struct FullAddress_t;

// Expands `path` into `out`, cut to outSize - 1 bytes and always ended by a zero (nothing is written when `outSize`
// is below 1). Returns 1.
//   - The text before the first "$" is only formatted; the rest, or a text without "$" as a whole, is the macro part.
//   - The macro part is formatted with the arguments (FormatCommandLineEx; not when `format` is false), then split at
//     ";". Each element loses "/", "\", blanks and tabs at its end; a "$NAME$" in it becomes each directory of the
//     macro in turn. This repeats while "$...$" is left and something changes; after 64 passes, or beyond 65,536
//     bytes with more to do, the text is left as it then stands.
//   - `checkExists` not 0: of the candidates, which are then told apart at ";", the first that exists (file or
//     folder; as it stands, without the text before it) is the result; without one, and with 0, all of them are.
//   - `iniFile` null: the search-path INI file.
//
// Kept, since stored texts rely on them: the text before an undefined macro in its element is dropped; no ";"
// follows the last directory of a macro, even when more elements come.
BRINDLE_API int GetSubstitutePathEx(const char* path, char* out, int outSize, int checkExists,
                                    const FullAddress_t* address, const char* pathArg, const char* caption,
                                    const char* text, const char* help, int status, const char* r,
                                    const char* iniFile, bool format, int n, int q);
// The same without r, n and q.
BRINDLE_API int GetSubstitutePath(const char* path, char* out, int outSize, int checkExists,
                                  const FullAddress_t* address, const char* pathArg, const char* caption,
                                  const char* text, const char* help, int status, const char* iniFile,
                                  bool format);
// The first existing candidate, else the whole expansion, cut to 4,095 bytes; fields without address, with empty
// texts, no help and status 0.
BRINDLE_API CStringA ExpandSearchPaths(const CStringA& s);
// `in` with its fields filled in (no address, no texts, status 0) and its search paths expanded.
BRINDLE_API void ResolveHashFields(const CStringA& in, CStringA& out);

// What FindSubstitutePath answers. Hosts store these numbers: do not change them.
enum SubstitutePathCode : int {
    kPathNoBase = 0,      // no base directory: the path as it is
    kPathInBase = 1,      // the file lies in the base directory: its name
    kPathSubstitute = 2,  // through a macro: "$NAME$\rest"
    kPathRelative = 3,    // seen from the base directory
    kPathUnrelated = 4,   // none of them: the path as it is
};
// The other direction: the shortest form of `fullPath` for storing. The macro whose expansion is the longest
// beginning of the path wins, of equal ones the first in the file. Paths may be written with "/".
BRINDLE_API int FindSubstitutePath(const CStringA& baseDir, const CStringA& fullPath, CStringA& out);

// The search-path INI file: sections "SearchPath" and "Directories". Empty until set; a copy is kept.
BRINDLE_API void SetSearchPathIniFile(const char* file);
BRINDLE_API CStringA GetSearchPathIniFile();
// A switch kept for the host; 1 until set.
BRINDLE_API void SetGlobalSubPathFlag(int flag) noexcept;
BRINDLE_API int GetGlobalSubPathFlag() noexcept;
