// Patterns with special characters, on the standard library's regular expressions. Its linear-time executor is
// used: the default one overflows the stack on long texts and takes exponential time on nested repeats. Tests:
// wildcard_test.cpp.
#pragma once

#include <string_view>

#include "brindle/expressions/wildcard.h"

namespace brindle {

// Compiled patterns stay in a small cache.
WildcardResult MatchWithEngine(std::string_view text, std::string_view pattern);

}  // namespace brindle
