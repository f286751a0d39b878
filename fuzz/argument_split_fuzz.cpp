// Arguments: any texts, written the way the rules want them quoted, split into themselves; any line splits.
//
// Input: the arguments, a zero byte behind each; as a whole also a line.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/platform/programs.h"

namespace {

// In quotes, with each row of backslashes before a quote doubled.
std::string Quoted(std::string_view argument) {
    std::string text = "\"";
    std::size_t slashes = 0;
    for (const char c : argument) {
        if (c == '"') text.append(slashes + 1, '\\');
        slashes = c == '\\' ? slashes + 1 : 0;
        text += c;
    }
    text.append(slashes, '\\');
    return text + "\"";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4'000) return 0;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> arguments;
    std::string line = "program";
    for (std::string_view rest = input; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        arguments.emplace_back(rest.substr(0, end));
        line += " " + Quoted(arguments.back());
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (brindle::SplitArguments(brindle::SplitProgram(line).arguments) != arguments) std::abort();

    std::size_t total = 0;
    for (const std::string& argument : brindle::SplitArguments(input)) total += argument.size();
    if (total > input.size()) std::abort();
    const brindle::ProgramText text = brindle::SplitProgram(input);
    if (text.program.size() + text.arguments.size() > input.size()) std::abort();
    return 0;
}
