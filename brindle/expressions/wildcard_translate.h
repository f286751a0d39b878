// Translation: a pattern of the classic language in the syntax of the standard library's engine. Tests:
// wildcard_test.cpp.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

// False, and `out` undefined, for a pattern that does not compile: groups that do not close, that close
// another kind or are nested too deeply, a character class that does not close, a back-reference, a look-ahead.
// What only the engine can judge (a repeat of nothing) it judges later.
bool TranslateWildcard(std::string_view pattern, std::string& out);

}  // namespace brindle
