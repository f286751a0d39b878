// Conversion: an infix rule text becomes a program in reverse Polish order, in one pass over its characters.
// Tests: rule_convert_test.cpp.
#pragma once

#include <cstddef>
#include <string_view>

#include "brindle/expressions/rule_program.h"

namespace brindle {

struct RuleFault {
    const char* why = nullptr;  // null: no fault
    std::size_t position = 0;   // offset in the rule's text
    bool ok() const noexcept { return why == nullptr; }
};

// Appends the rule's steps to the program, which views the text: it must live as long as the program does. On
// a fault the program holds what was converted before it.
RuleFault ConvertRule(std::string_view text, RuleProgram& program);

// The operator a character stands for, or None.
OperatorType IsOperator(char character) noexcept;

}  // namespace brindle
