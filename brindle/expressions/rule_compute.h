// Computation: one operator applied to its operands. What has no meaning gives the empty String; nothing fails.
// Tests: rule_compute_test.cpp.
#pragma once

#include "brindle/expressions/rule_value.h"

namespace brindle {

// Any of the binary operators, And to GreaterEqual; others give the empty String. The result takes the left operand's
// place. A text that is made is owned by a string of the pool; what the operands own goes back to it unless the result
// goes on with it.
void Compute(RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool);

// Likewise, in the operand's place.
void Negate(RuleValue& value, TextPool& pool);

// A function call: DATE (the local time of the installed clock) or TIMESPAN.
RuleValue CallFunction(std::string_view call);

}  // namespace brindle
