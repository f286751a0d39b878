// UTF-8, one character at a time. Strict: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brindle {

constexpr char32_t kNotUtf8 = 0xFFFFFFFF;

// The character that begins at `position`, which moves behind it; kNotUtf8, moved by one byte, where none
// begins.
char32_t DecodeUtf8(std::string_view text, std::size_t& position) noexcept;
void EncodeUtf8(char32_t character, std::string& text);
bool IsUtf8(std::string_view text) noexcept;
// The number of ASCII bytes the text begins with.
std::size_t AsciiPrefix(std::string_view text) noexcept;

}  // namespace brindle
