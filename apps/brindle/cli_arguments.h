// The command line in the one plain form that CLI11 gets: subcommand names, then each option with its value as
// the argument behind it, then the texts. Every value and text carries a guard character in front, so that none
// of them is empty or looks like an option, a list or a subcommand.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apps/brindle/cli.h"

namespace brindle::tool {

inline constexpr char kGuard = '=';

struct ParsedArguments {
    const Command* command = nullptr;  // the innermost one named
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::vector<std::string> plain;
};

// Throws Failure(kWrongUsage) for an unknown subcommand, an option without its value, or a flag with one.
ParsedArguments ParseArguments(const Command& tool, const std::vector<std::string>& arguments);

// The candidate a mistyped word was probably meant to be; empty when none is near.
std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace brindle::tool
