// The comparison of a line with what became of it. Tests: argument_filter_test.cpp, run_program_test.cpp.
#include "host/argument_filter.h"

#include <brindle/platform/programs.h>

#include "host/words.h"

namespace brindle::host {

namespace {

// The length of the reference at the front of the text; 0: there is none.
std::size_t ReferenceLength(std::string_view text) {
    if (text.starts_with('{')) {
        int depth = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '{') ++depth;
            if (text[i] == '}' && --depth == 0) return i + 1;
        }
        return 0;
    }
    if (!text.starts_with('#') && !text.starts_with('$')) return 0;
    const std::size_t close = text.find(text[0], 1);
    return close == text.npos ? 0 : close + 1;
}

std::size_t CountArguments(std::string_view line) {
    const ProgramText text = SplitProgram(line);
    return 1 + SplitArguments(text.arguments).size();
}

}  // namespace

std::size_t CountWrittenArguments(std::string_view line) {
    std::string plain;
    while (!line.empty()) {
        if (line.starts_with("%H%")) {
            plain += 'x';
            line.remove_prefix(3);
        } else if (line.starts_with("%H")) {
            line.remove_prefix(2);
        } else if (const std::size_t length = ReferenceLength(line); length > 0) {
            plain += 'x';
            line.remove_prefix(length);
        } else {
            plain += line[0];
            line.remove_prefix(1);
        }
    }
    return CountArguments(Trimmed(plain));
}

bool ArgumentFilter::Allow(const ProgramStart& start, CStringA& reason) {
    const std::size_t written = CountWrittenArguments(start.line);
    // The program's own path may hold blanks; it was found as one.
    const std::size_t found = 1 + start.arguments.size();
    if (written == found || written == CountArguments(start.command)) return true;
    reason = "Refused: " + std::to_string(found - 1) + " arguments instead of " + std::to_string(written - 1);
    return false;
}

}  // namespace brindle::host
