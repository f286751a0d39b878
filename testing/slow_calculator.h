// SlowCalculator: the language of rules written down as it is explained, step by step and with no thought of speed:
// the oracle of the calculator's random tests. It shares nothing with the calculator but number texts, dates and
// addresses. Patterns are matched by following the sets of places they can lead to (slow_pattern.h).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "brindle/framework/ole_date_time.h"

namespace brindle::testing {

struct SlowValue {
    enum Type { kBool, kDouble, kString, kInt, kDateTime, kAddress, kTimeSpan };
    Type type = kString;
    bool truth = false;
    int integer = 0;
    double number = 0;
    COleDateTime date;
    std::string text;
    bool replaceable = false;

    int AsInt() const;
    double AsDouble() const;
    bool AsBool() const;
    std::string AsString() const;
};

struct SlowToken {
    enum Kind { kOperator, kLiteral, kFunction };
    Kind kind = kOperator;
    std::string text;  // the operator, or the call
    SlowValue value;
};
using SlowExpression = std::vector<SlowToken>;

SlowValue SlowFromString(const std::string& text);
std::optional<SlowValue> SlowCreate(std::string text);
bool SlowConvert(const std::string& text, SlowExpression& out);
std::string SlowText(const SlowExpression& expression);
SlowValue SlowCompute(const SlowValue& left, const SlowValue& right, const std::string& op);
SlowValue SlowNegate(const SlowValue& value);
bool SlowRun(const SlowExpression& expression, SlowValue& result);

// Name as the rule writes it, to value.
using SlowLookup = std::function<std::optional<std::string>(const std::string& reference)>;
bool SlowSolve(std::string rule, const SlowLookup& lookup, bool upper, SlowValue& result);

}  // namespace brindle::testing
