// Two values of any type and text under every operator: the fast computation and the slow one agree.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "brindle/expressions/calculator.h"
#include "testing/slow_calculator.h"

namespace {

using brindle::testing::SlowValue;
using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;

// Operands come from texts, so that every type is within reach; "~" before digits makes a span of that many seconds.
void Read(const std::string& text, Literal& fast, SlowValue& slow) {
    if (text.starts_with("~")) {
        slow.type = SlowValue::kTimeSpan;
        slow.number = std::atoi(text.c_str() + 1);
        fast = Literal(slow.number, Literal::TimeSpan);
        return;
    }
    fast.FromString(text);
    slow = brindle::testing::SlowFromString(text);
}

void Require(bool condition) {
    if (!condition) std::abort();
}

// A pattern with special characters would compare two engines; rule_wildcard does that.
bool NeedsEngine(const std::string& text) {
    return text.find_first_of("\\.*+?()[]{}^$|") != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = input.find('\n');
    if (cut == std::string::npos || size > 500) return 0;
    Literal left;
    Literal right;
    SlowValue slowLeft;
    SlowValue slowRight;
    Read(input.substr(0, cut), left, slowLeft);
    Read(input.substr(cut + 1), right, slowRight);
    Require(left.AsString() == slowLeft.AsString() && left.AsInt() == slowLeft.AsInt());
    const bool asPattern = NeedsEngine(slowRight.AsString());
    for (int type = Operator::And; type <= Operator::GreaterEqual; ++type) {
        const Operator op(static_cast<Operator::Type>(type));
        const bool isEquality = type == Operator::Equal || type >= Operator::NotEqual;
        CCalculator::Expression expression;
        if (type != Operator::Not) expression.Add(new Literal(left));
        expression.Add(new Literal(right));
        expression.Add(new Operator(op));
        Literal result;
        Require(CCalculator().Run(expression, result));
        if (isEquality && asPattern) continue;
        const SlowValue slow = type == Operator::Not
                                   ? brindle::testing::SlowNegate(slowRight)
                                   : brindle::testing::SlowCompute(slowLeft, slowRight, op.AsString());
        Require(static_cast<int>(result.GetType()) == static_cast<int>(slow.type));
        Require(result.AsString() == slow.AsString());
    }
    return 0;
}
