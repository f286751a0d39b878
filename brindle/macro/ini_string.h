// Values of any length from INI files, and the directories a host's editors used last.
//
// What an INI file means: names without regard to case, the first of several counts, blanks and one pair of quotes
// around a value are dropped, ";" begins a comment only at the start of a line. File names are host paths: "\" reads
// as "/", drives are mapped, and where the exact spelling is missing case does not matter.
// Thread: any for GetIniString; the directories belong to the user interface's thread.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

// The value of a key into `out`, `defaultValue` without trailing blanks when there is none; returns its length. A
// null `key` reads the list of the section's keys, each with a zero behind it, zeros included: walk it with
// strlen up to an empty name. A missing file, section or key is the default (null: "").
// `chunk` is the step in bytes by which the buffer grows; with 0 and below there is no buffer, which gives
// `defaultValue` as it stands.
BRINDLE_API int GetIniString(const char* section, const char* key, const char* defaultValue, CStringA& out,
                             const char* iniFile, int chunk);

// The directories of the "Directories" section of the search-path INI file; empty when never set, cut to 259 bytes.
// Setting writes the file, whole or not at all; the warning sink is told when that fails.
BRINDLE_API CStringA GetLastSchematicDir();
BRINDLE_API void SetLastSchematicDir(const char* directory);
BRINDLE_API CStringA GetLastComponentDir();
BRINDLE_API void SetLastComponentDir(const char* directory);
BRINDLE_API CStringA GetLastGraphicsDir();
BRINDLE_API void SetLastGraphicsDir(const char* directory);
