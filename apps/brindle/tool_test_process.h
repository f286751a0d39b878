// Starts the built tool as a process of its own and keeps what it wrote. For tests only.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace brindle::testing {

struct ToolResult {
    std::string out;
    std::string err;
    int code = -1;  // exit code; -1: ended by a signal or not at all
};

enum class OutputTo { kPipe, kTerminal, kFullDisk, kNowhere /* the descriptor is closed */ };

struct ToolStart {
    std::vector<std::string> arguments;
    std::string input;
    std::vector<std::pair<std::string, std::string>> environment;  // added to a plain one
    OutputTo output = OutputTo::kPipe;  // of results; the standard error follows only to a terminal
};

// Runs the tool; one that does not end within two minutes is stopped, which is a test failure.
ToolResult RunTool(const ToolStart& start);
// Runs a line of the shell in the project's folder, "brindle" being the tool; errors come among the results.
ToolResult RunShell(const std::string& line);

}  // namespace brindle::testing
