// The help texts: the overview of the tool, and the page of one command.
#pragma once

#include <string>
#include <vector>

namespace brindle::tool {

class Command;

// One line each, coloured for the standard output.
std::vector<std::string> HelpLines(const Command& command);

}  // namespace brindle::tool
