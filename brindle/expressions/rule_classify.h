// Classification: what type a text has. An operand of a rule and the text of a device's value are classified by
// the same rules. Tests: rule_classify_test.cpp.
#pragma once

#include <string_view>

#include "brindle/expressions/rule_value.h"

namespace brindle {

bool IsDigits(std::string_view text) noexcept;
bool IsNumeric(std::string_view text) noexcept;
bool IsOVAddress(std::string_view text) noexcept;
bool IsDateTime(std::string_view text, COleDateTime& date) noexcept;

// Without the blanks (the space character only) at both ends.
std::string_view Trim(std::string_view text) noexcept;

// The value a text stands for; a String or Address views the text.
RuleValue Classify(std::string_view text);
// The value an operand of a rule stands for, its delimiters taken off. The operand must not be blank.
RuleValue ClassifyOperand(std::string_view operand);

}  // namespace brindle
