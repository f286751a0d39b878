// The library's string resources: texts that belong to the design, by number. The numbers are part of the
// interface: do not change. Thread: any; the texts are constants.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

namespace brindle {

constexpr unsigned kTextSearchPath = 2;         // INI section of substitute macros
constexpr unsigned kTextMacroNotDefined = 3;    // warning; "%s" stands for the macro's name
constexpr unsigned kTextCommandActions = 4;     // INI section of macro definitions
constexpr unsigned kTextExecutableFilter = 5;   // file-dialog filter for choosing a program
constexpr unsigned kTextBrowseForFile = 6;      // file-dialog title
constexpr unsigned kTextUnsavedSchematic = 8;   // message for hosts
constexpr unsigned kTextProductWord = 15;       // carried for the host
constexpr unsigned kTextLastSchematicDir = 16;  // INI key
constexpr unsigned kTextLastComponentDir = 17;  // INI key
constexpr unsigned kTextLastGraphicsDir = 18;   // INI key
constexpr unsigned kTextDirectories = 19;       // INI section of the last-used directories
constexpr unsigned kTextStatusBlack = 32;       // the four status colour names, in order
constexpr unsigned kTextStatusGreen = 33;
constexpr unsigned kTextStatusYellow = 34;
constexpr unsigned kTextStatusRed = 35;

// The text of that number; empty for a number without one. Thread: any.
BRINDLE_API CStringA LoadStringResource(unsigned id);
// The name of a status code's colour: below 1 "Black", 1 "Green", 2 "Yellow", above 2 "Red".
BRINDLE_API CStringA StatusColourName(int status);

}  // namespace brindle
