// Small text helpers of the host: everything here works on bytes and knows no locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

// Without the blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text) noexcept;
// The parts between separators, blanks trimmed; an empty text has no parts.
std::vector<std::string_view> Split(std::string_view text, char separator);
// Equality without regard to the case of the letters A to Z.
bool SameWord(std::string_view a, std::string_view b) noexcept;
// The whole text as a decimal 32-bit number; false, `value` unchanged, when it is anything else.
bool ParseInt(std::string_view text, int& value) noexcept;
// The whole text as a finite decimal number with "." as the point.
bool ParseReal(std::string_view text, double& value) noexcept;
// The shortest text that reads back as the same number.
std::string RealText(double value);
std::string RealText(float value);
// `text` with every occurrence of `from` replaced; nothing happens when `from` is empty.
std::string Replaced(std::string_view text, std::string_view from, std::string_view to);

}  // namespace brindle::host
