// The "%" stage. What it must give is a chain of replacements, each over the whole line before the next: "%%" is
// set aside as a marker, then the date tokens and the argument fields in their fixed order, then the markers become
// "%". So a replaced text may bring or complete a later field.
//
// Nearly always no replaced text holds a "%" and no two date tokens share one. Then one pass gives the same; it
// notices when that is not so, and the chain itself (ExpandByChain) runs instead. Tested in
// percent_fields_test.cpp, compared with testing/slow_format.h there and in fuzz/format_fuzz.cpp.
#include "brindle/macro/percent_fields.h"

#include <algorithm>
#include <stdexcept>

#include "brindle/macro/date_tokens.h"
#include "brindle/platform/clock.h"
#include "brindle/settings/line_limit.h"

namespace brindle {
namespace {

constexpr auto kNone = std::string::npos;
constexpr std::string_view kMarker = "\x03\x02\x01";  // an escaped "%"; not part of any line
constexpr std::string_view kFieldOrder = "nqaNUPpcthijvsr";

LocalTime Now() {
    LocalTime now;
    if (!CurrentClock().ToLocalTime(UnixSeconds(), now))
        throw std::invalid_argument("the present time cannot be expressed as local time");
    return now;
}

// Replaces every `from` by `to`, left to right, unless the line would become too long.
void ReplaceAll(std::string& line, std::string_view from, std::string_view to) {
    std::size_t count = 0;
    for (std::size_t at = line.find(from); at != kNone; at = line.find(from, at + from.size())) ++count;
    const std::size_t size = line.size() - count * from.size() + count * to.size();
    if (count == 0 || size > std::max(kLineLimit, line.size())) return;
    std::string replaced;
    replaced.reserve(size);
    std::size_t begin = 0;
    for (std::size_t at = line.find(from); at != kNone; at = line.find(from, begin)) {
        replaced.append(line, begin, at - begin).append(to);
        begin = at + from.size();
    }
    replaced.append(line, begin);
    line = std::move(replaced);
}

void ExpandByChain(std::string& line, FieldTexts& fields, const LocalTime& now) {
    ReplaceAll(line, "%%", kMarker);
    for (const DateToken& token : kDateTokens) ReplaceAll(line, token.field, DateText(token, now));
    for (const char letter : kFieldOrder) {
        const char field[] = {'%', letter};
        std::string_view text;
        if (line.find(field, 0, 2) != kNone && fields.Get(letter, text)) ReplaceAll(line, {field, 2}, text);
    }
    ReplaceAll(line, kMarker, "%");
}

// Could this text take part in a later replacement?
bool IsPlain(std::string_view text) {
    return text.find('%') == kNone && text.find(kMarker.front()) == kNone;
}

// The same in one pass. False when only the chain gets it right; `expanded` then is of no use.
bool ExpandInOnePass(std::string_view line, FieldTexts& fields, const LocalTime& now, std::string& expanded) {
    if (line.find(kMarker.front()) != kNone) return false;
    expanded.reserve(line.size() + line.size() / 2 + 32);
    std::size_t begin = 0;
    for (std::size_t at = line.find('%'); at != kNone; at = line.find('%', begin)) {
        expanded.append(line, begin, at - begin);
        const char letter = at + 1 < line.size() ? line[at + 1] : '\0';
        std::string_view text;
        if (letter == '%') {
            expanded += '%';
            begin = at + 2;
        } else if (const DateToken* token = DateTokenAt(line, at)) {
            const std::size_t end = at + token->field.size();
            if (DateTokenAt(line, end - 1)) return false;  // two tokens, one "%": their order decides
            const std::string date = DateText(*token, now);
            if (date.empty()) return false;  // its neighbours come together
            expanded.append(date);
            begin = end;
        } else if (fields.Get(letter, text)) {
            if (!IsPlain(text) || expanded.size() + text.size() > kLineLimit) return false;
            expanded.append(text);
            begin = at + 2;
        } else {
            expanded += '%';
            begin = at + 1;
        }
    }
    expanded.append(line, begin);
    return true;
}

}  // namespace

void ExpandPercentFields(std::string& line, const FormatArguments& arguments) {
    const LocalTime now = Now();
    FieldTexts fields(arguments);
    std::string expanded;
    if (ExpandInOnePass(line, fields, now, expanded)) {
        line = std::move(expanded);
    } else {
        ExpandByChain(line, fields, now);
    }
}

}  // namespace brindle
