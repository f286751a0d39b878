// The string table: constant data, looked up by number. Tests: library_test.cpp.
#include "brindle/library/string_table.h"

#include <algorithm>
#include <iterator>

namespace brindle {
namespace {

struct Entry {
    unsigned id;
    const char* text;
};

constexpr Entry kEntries[] = {
    {kTextSearchPath, "SearchPath"},
    {kTextMacroNotDefined,
     "Macro <%s> is not defined in the Orvane configuration. \n"
     "Please see Configuration | Macro Setup... for the list of all defined macros."},
    {kTextCommandActions, "CommandActions"},
    // Kept: the pattern "*pif" lacks its dot.
    {kTextExecutableFilter,
     "Executable files|*.exe;*.com;*.bat;*.pif|Windows executable files (*.exe)|*.exe|DOS files "
     "(*.com)|*.com|"
     "Batch files (*.bat)|*.bat|Program Information files (*.pif)|*pif|All Files (*.*)|*.*||"},
    {kTextBrowseForFile, "Browse for File"},
    {kTextUnsavedSchematic,
     "The current schematic has no name. Please save file first before attempting to find a valid "
     "substitution "
     "search path."},
    {kTextProductWord, "Halvard"},
    {kTextLastSchematicDir, "LastSchematicDir"},
    {kTextLastComponentDir, "LastComponentDir"},
    {kTextLastGraphicsDir, "LastGraphicsDir"},
    {kTextDirectories, "Directories"},
    {kTextStatusBlack, "Black"},
    {kTextStatusGreen, "Green"},
    {kTextStatusYellow, "Yellow"},
    {kTextStatusRed, "Red"},
};

}  // namespace

CStringA LoadStringResource(unsigned id) {
    const auto found = std::find_if(std::begin(kEntries), std::end(kEntries),
                                    [id](const Entry& entry) { return entry.id == id; });
    return found == std::end(kEntries) ? "" : found->text;
}

CStringA StatusColourName(int status) {
    return LoadStringResource(kTextStatusBlack + static_cast<unsigned>(std::clamp(status, 0, 3)));
}

}  // namespace brindle
