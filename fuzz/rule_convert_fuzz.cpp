// Any text as a rule: the fast conversion and the slow one agree, and a rule that evaluates does so in every form.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "brindle/expressions/prepared_rule.h"
#include "brindle/expressions/solver.h"
#include "testing/slow_calculator.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string rule(reinterpret_cast<const char*>(data), size);
    CCalculator::Expression expression;
    brindle::testing::SlowExpression slow;
    const bool converted = CCalculator().ToReversePolish(rule, expression);
    if (converted != brindle::testing::SlowConvert(rule, slow)) std::abort();
    if (expression.AsString() != brindle::testing::SlowText(slow)) std::abort();
    CStringA rpn;
    CCalculator::Literal result;
    const bool valid = CSolver().Validate(CStringA(rule), rpn);
    if (valid != (converted && CCalculator().Run(expression, result))) std::abort();
    if (valid != brindle::PreparedRule(CStringA(rule)).Structure().ok()) std::abort();
    return 0;
}
