#include "brindle/macro/date_tokens.h"

#include "brindle/framework/time_text.h"

namespace brindle {
namespace {
constexpr std::size_t kLongest = 128;  // bytes of a date's text
}

const DateToken* DateTokenAt(std::string_view line, std::size_t at) noexcept {
    if (at + 2 >= line.size()) return nullptr;
    const char letter = line[at + 1];
    std::size_t close = at + 2;
    while (close < line.size() && line[close] == letter) ++close;
    if (close == line.size() || line[close] != '%') return nullptr;
    if (close + 1 < line.size() && line[close + 1] == '%') return nullptr;
    const std::string_view field = line.substr(at, close + 1 - at);
    for (const DateToken& token : kDateTokens)
        if (token.field == field) return &token;
    return nullptr;
}

std::string DateText(const DateToken& token, const LocalTime& time) {
    return FormatTime(time, token.conversion, kLongest + 1);
}

}  // namespace brindle
