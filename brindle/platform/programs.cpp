// The program service's slot, and how a command line is split. Tests: programs_test.cpp.
#include "brindle/platform/programs.h"

#include <algorithm>

#include "brindle/platform/backend.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

constinit ServiceSlot<Programs> g_programs;

constexpr std::string_view kBlanks = " \t";

constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

// Takes one argument, which begins at the front, off the text.
std::string TakeArgument(std::string_view& text) {
    std::string argument;
    bool quoted = false;
    std::size_t at = 0;
    while (at < text.size() && (quoted || !IsBlank(text[at]))) {
        const std::size_t slashes = std::min(text.find_first_not_of('\\', at), text.size()) - at;
        at += slashes;
        const bool quote = at < text.size() && text[at] == '"';
        argument.append(quote ? slashes / 2 : slashes, '\\');
        if (slashes > 0 && !quote) continue;
        if (!quote) {
            argument += text[at++];
        } else if (slashes % 2 != 0) {
            argument += '"';
            ++at;
        } else if (quoted && at + 1 < text.size() && text[at + 1] == '"') {
            argument += '"';
            at += 2;
        } else {
            quoted = !quoted;
            ++at;
        }
    }
    text.remove_prefix(at);
    return argument;
}

}  // namespace

Programs& CurrentPrograms() noexcept {
    return g_programs.GetOr(BackendPrograms());
}

Programs* SetPrograms(Programs* service) noexcept {
    return g_programs.Set(service);
}

std::vector<std::string> SplitArguments(std::string_view text) {
    std::vector<std::string> arguments;
    text = WithoutLeadingBlanks(text);
    while (!text.empty()) {
        arguments.push_back(TakeArgument(text));
        text = WithoutLeadingBlanks(text);
    }
    return arguments;
}

ProgramText SplitProgram(std::string_view commandLine) {
    commandLine = WithoutLeadingBlanks(commandLine);
    if (commandLine.starts_with('"')) {
        commandLine.remove_prefix(1);
        const std::size_t close = std::min(commandLine.find('"'), commandLine.size());
        return {commandLine.substr(0, close), commandLine.substr(std::min(close + 1, commandLine.size()))};
    }
    const std::size_t blank = std::min(commandLine.find_first_of(kBlanks), commandLine.size());
    return {commandLine.substr(0, blank), commandLine.substr(blank)};
}

}  // namespace brindle
