// Letter case of the ANSI code page, as data: the same on every system and under every process locale.
//
// In Windows-1252 the Latin letters above 0x7F fold too; a letter whose other case has no byte there stays as
// it is. Under a UTF-8 (or any other) code page only ASCII folds. Thread: the rule is chosen at start-up, by
// the code page service; folding may come from any thread.
#pragma once

#include <string_view>

#include "brindle/framework/export.h"

namespace brindle {

enum class LetterCaseRule { kWindows1252, kAsciiOnly };

// Chooses the rule and returns the one chosen before. Windows-1252 is in place without any call.
BRINDLE_API LetterCaseRule SetLetterCaseRule(LetterCaseRule rule) noexcept;

// The character in that case by the rule in place; what has no other case stays.
BRINDLE_API char ToUpper(char character) noexcept;
BRINDLE_API char ToLower(char character) noexcept;

// Compares the lower-case forms as unsigned bytes: negative, 0 or positive. Zero bytes count as bytes.
BRINDLE_API int CompareNoCase(std::string_view a, std::string_view b) noexcept;
// Whether the lower-case forms are the same bytes, or begin with the same.
BRINDLE_API bool EqualNoCase(std::string_view a, std::string_view b) noexcept;
BRINDLE_API bool StartsWithNoCase(std::string_view text, std::string_view start) noexcept;

// Tests of ASCII characters that no locale changes.
constexpr bool IsSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsAsciiLetter(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace brindle
