// Computation: one operator applied to its operands. What has no meaning gives the empty String; nothing fails.
// Tests: rule_compute_test.cpp.
#pragma once

#include "brindle/expressions/rule_value.h"

namespace brindle {

// Any of the binary operators, And to GreaterEqual; others give the empty String. A text that is made is owned by
// a string of the pool; an operand's own string may be taken over.
RuleValue Compute(const RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool);

RuleValue Negate(const RuleValue& value);

// A function call: DATE (the local time of the installed clock) or TIMESPAN.
RuleValue CallFunction(std::string_view call);

}  // namespace brindle
