// CheckCommand: what is wrong with the command lines of a site, found by running them without starting anything.
#pragma once

#include <string>
#include <vector>

namespace brindle::host {

// Where the commands of a site run.
struct CommandSurroundings {
    std::string folder;  // of the site
    std::string macros;  // the INI file; empty: none
    bool lookForPrograms = true;
};

// One message for each macro and search path that is not defined, for definitions that do not end, and for each
// program that is not there. Fields are not filled in: a program that is named by one is not looked for.
std::vector<std::string> CheckCommand(const std::string& line, const CommandSurroundings& surroundings);
// The same for what a search path stands for.
std::vector<std::string> CheckSearchPath(const std::string& name, const CommandSurroundings& surroundings);

// The fields of a line whose texts come from elsewhere: "%c", "%t", "%h", "%r", "{...}", "#...#"; as written, each
// once.
std::vector<std::string> ForeignFields(const std::string& line);

}  // namespace brindle::host
