// The public side of the environment service. Tests: host_text_test.cpp.
#include "brindle/library/console.h"

#include "brindle/platform/environment.h"

namespace brindle {

bool OutputIsTerminal() {
    return CurrentEnvironment().IsTerminal(StandardStream::kOutput);
}

bool ErrorIsTerminal() {
    return CurrentEnvironment().IsTerminal(StandardStream::kError);
}

bool ColoursAllowed() {
    std::string value;
    if (CurrentEnvironment().Variable("NO_COLOR", value) && !value.empty()) return false;
    return !CurrentEnvironment().Variable("TERM", value) || value != "dumb";
}

}  // namespace brindle
