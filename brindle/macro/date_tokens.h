// The date tokens of command lines, "%dd%" to "%s%".
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "brindle/framework/local_time.h"

namespace brindle {

struct DateToken {
    std::string_view field;       // one letter, repeated, between two "%"
    std::string_view conversion;  // of strftime
};

// In the order in which they are replaced.
constexpr std::array<DateToken, 11> kDateTokens = {{{"%dd%", "%d"},
                                                    {"%MM%", "%m"},
                                                    {"%yyyy%", "%Y"},
                                                    {"%ddd%", "%a"},
                                                    {"%dddd%", "%A"},
                                                    {"%MMM%", "%b"},
                                                    {"%MMMM%", "%B"},
                                                    {"%z%", "%z"},
                                                    {"%H%", "%H"},
                                                    {"%m%", "%M"},
                                                    {"%s%", "%S"}}};

// The token that begins at the "%" at `at`, or null. One whose last "%" is the first of "%%" is none: that pair is
// an escaped "%".
const DateToken* DateTokenAt(std::string_view line, std::size_t at) noexcept;
// English words whatever the locale; empty when the time cannot be written so.
std::string DateText(const DateToken& token, const LocalTime& time);

}  // namespace brindle
