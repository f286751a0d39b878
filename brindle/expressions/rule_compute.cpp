// The operators. Entry points: Compute and Negate. Tests: rule_compute_test.cpp.
#include "brindle/expressions/rule_compute.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/wildcard.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;

constexpr double kEqualWithin = 0.00001;
constexpr double kLargestSpan = 9e15;  // seconds; whole numbers up to there are exact

bool IsText(const RuleValue& value) noexcept {
    return value.type == Literal::String || value.type == Literal::Address;
}

// A value's text; of a number or date it is printed into `buffer`.
std::string_view TextOf(const RuleValue& value, std::string& buffer) {
    if (IsText(value)) return value.text;
    buffer = value.AsString();
    return buffer;
}

// Calls the function with the texts of both values.
template <class Function>
auto WithTexts(const RuleValue& left, const RuleValue& right, Function function) {
    if (IsText(left) && IsText(right)) return function(left.text, right.text);
    std::string leftBuffer;
    std::string rightBuffer;
    return function(TextOf(left, leftBuffer), TextOf(right, rightBuffer));
}

RuleValue OwnedText(CStringA* text, ValueType type = Literal::String) noexcept {
    RuleValue value = RuleValue::OfText(text->view(), type);
    value.owned = text;
    return value;
}

// The left text grows in place when it is a computed one, so that a long sum takes linear time.
RuleValue Concatenate(const RuleValue& left, const RuleValue& right, TextPool& pool) {
    return WithTexts(left, right, [&](std::string_view head, std::string_view tail) {
        if (head.size() + tail.size() > kMaxComputedText) return EmptyValue();
        CStringA* const text = left.owned ? left.owned : pool.Take();
        if (!left.owned) text->str().append(head);
        text->str().append(tail);
        return OwnedText(text);
    });
}

// Kept: the parts are neither carried nor cut, so 0001:FF:03 + 0000:01:00 is 0001:100:03.
RuleValue MoveAddress(const RuleValue& left, const RuleValue& right, bool back, TextPool& pool) {
    const AddressParts a = ParseAddressParts(left.text);
    const AddressParts b = ParseAddressParts(right.text);
    CAddressOv moved = back ? CAddressOv(a.net - b.net, a.unit - b.unit, a.port - b.port)
                            : CAddressOv(a.net + b.net, a.unit + b.unit, a.port + b.port);
    CStringA* const text = pool.Take();
    *text = moved.GetString();
    return OwnedText(text, Literal::Address);
}

// Seconds as a span: whole days, hours, minutes and seconds, each truncated, as fractions of days.
COleDateTimeSpan SpanOf(double seconds) noexcept {
    if (std::isnan(seconds)) return COleDateTimeSpan(0.0);
    const auto whole = static_cast<std::int64_t>(std::clamp(seconds, -kLargestSpan, kLargestSpan));
    const auto days = static_cast<double>(whole / 86400);
    const auto hours = static_cast<double>(whole % 86400 / 3600);
    const auto minutes = static_cast<double>(whole % 3600 / 60);
    return COleDateTimeSpan(days + hours / 24 + minutes / 1440 + static_cast<double>(whole % 60) / 86400);
}

RuleValue MoveDate(const RuleValue& left, const RuleValue& right, bool back) {
    if (left.type != Literal::DateTime || right.type != Literal::TimeSpan) return EmptyValue();
    const COleDateTimeSpan span = SpanOf(right.number);
    COleDateTime moved = back ? left.Date() - span : left.Date() + span;
    moved.SetStatus(COleDateTime::valid);  // Kept: also beyond the calendar, where its parts read as -1
    return RuleValue::OfDate(moved);
}

std::optional<double> ComputeDouble(double left, double right, OperatorType op) noexcept {
    switch (op) {
        case Operator::Plus:
            return left + right;
        case Operator::Minus:
            return left - right;
        case Operator::Multiply:
            return left * right;
        case Operator::Divide:
            if (right == 0.0) return std::nullopt;
            return left / right;
        default:
            return std::nullopt;  // Kept: "^" is never computed
    }
}

// In 64 bits and cut to 32: also the smallest integer divided by -1 wraps.
std::optional<std::int32_t> ComputeInt(std::int64_t left, std::int64_t right, OperatorType op) noexcept {
    std::int64_t value = 0;
    switch (op) {
        case Operator::Plus:
            value = left + right;
            break;
        case Operator::Minus:
            value = left - right;
            break;
        case Operator::Multiply:
            value = left * right;
            break;
        case Operator::Divide:
            if (right == 0) return std::nullopt;
            value = left / right;
            break;
        default:
            return std::nullopt;
    }
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value));
}

RuleValue ComputeBinaryOp(const RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool) {
    const bool isSum = op == Operator::Plus;
    const bool isMove = isSum || op == Operator::Minus;
    switch (CalcAsType(left.type, right.type)) {
        case Literal::Double: {
            const std::optional<double> number = ComputeDouble(left.AsDouble(), right.AsDouble(), op);
            return number ? RuleValue::OfDouble(*number) : EmptyValue();
        }
        case Literal::Int: {
            const std::optional<std::int32_t> number = ComputeInt(left.AsInt(), right.AsInt(), op);
            return number ? RuleValue::OfInt(*number) : EmptyValue();
        }
        case Literal::String:
            return isSum ? Concatenate(left, right, pool) : EmptyValue();
        case Literal::DateTime:
            return isMove ? MoveDate(left, right, !isSum) : EmptyValue();
        case Literal::Address:
            return isMove ? MoveAddress(left, right, !isSum, pool) : EmptyValue();
        default:
            return EmptyValue();
    }
}

// What an operator that asks something answers; kNone stands for the empty String.
enum class Answer { kNo, kYes, kNone };

constexpr Answer ToAnswer(bool truth) noexcept {
    return truth ? Answer::kYes : Answer::kNo;
}

// Kept: operands are taken as integers, so 0.5 and "yes" count as false here.
Answer ComputeBooleanOp(const RuleValue& left, const RuleValue& right, OperatorType op) {
    const bool a = left.AsInt() != 0;
    const bool b = right.AsInt() != 0;
    return ToAnswer(op == Operator::And ? a && b : a || b);
}

bool IsTextLess(const RuleValue& left, const RuleValue& right) {
    return WithTexts(left, right, [](std::string_view a, std::string_view b) { return a < b; });
}

// Whether left < right.
Answer IsLess(const RuleValue& left, const RuleValue& right, ValueType type) {
    switch (type) {
        case Literal::Double:
            return ToAnswer(left.AsDouble() < right.AsDouble());
        case Literal::String:
            return ToAnswer(IsTextLess(left, right));
        case Literal::DateTime:
            return ToAnswer(left.Date() < right.Date());
        case Literal::Address:
            return ToAnswer(ParseAddressParts(left.text).Packed() < ParseAddressParts(right.text).Packed());
        case Literal::Int:
        case Literal::Bool:
            return ToAnswer(left.AsInt() < right.AsInt());
        default:
            return Answer::kNone;
    }
}

Answer ComputeComparisionOp(const RuleValue& left, const RuleValue& right, OperatorType op) {
    const ValueType type = CalcAsType(left.type, right.type);
    return op == Operator::Less ? IsLess(left, right, type) : IsLess(right, left, type);
}

Answer MatchTexts(const RuleValue& left, const RuleValue& right) {
    switch (WithTexts(left, right, MatchWildcard)) {
        case WildcardResult::kMatch:
            return Answer::kYes;
        case WildcardResult::kNoMatch:
            return Answer::kNo;
        default:
            return Answer::kNone;
    }
}

Answer ComputeEquality(const RuleValue& left, const RuleValue& right) {
    switch (CalcAsType(left.type, right.type)) {
        case Literal::Bool:
            return ToAnswer(left.truth == right.truth);
        case Literal::Double:
            return ToAnswer(std::fabs(left.AsDouble() - right.AsDouble()) < kEqualWithin);
        case Literal::Int:
            return ToAnswer(left.AsInt() == right.AsInt());
        case Literal::DateTime:
            return ToAnswer(left.Date() == right.Date());
        case Literal::Address:
            return ToAnswer(left.text == right.text);
        case Literal::String:
            return MatchTexts(left, right);
        default:
            return Answer::kNone;
    }
}

Answer Opposite(Answer answer) noexcept {
    return answer == Answer::kNone ? answer : ToAnswer(answer == Answer::kNo);
}

// "<=" and ">=" join two answers with "|", to which the empty String is false.
Answer ComparesOrEquals(const RuleValue& left, const RuleValue& right, OperatorType op) {
    if (ComputeComparisionOp(left, right, op) == Answer::kYes) return Answer::kYes;
    return ToAnswer(ComputeEquality(left, right) == Answer::kYes);
}

Answer ComputeAnswer(const RuleValue& left, const RuleValue& right, OperatorType op) {
    switch (op) {
        case Operator::And:
        case Operator::Or:
            return ComputeBooleanOp(left, right, op);
        case Operator::Equal:
            return ComputeEquality(left, right);
        case Operator::Less:
        case Operator::Greater:
            return ComputeComparisionOp(left, right, op);
        case Operator::NotEqual:
            return Opposite(ComputeEquality(left, right));
        case Operator::LessEqual:
            return ComparesOrEquals(left, right, Operator::Less);
        case Operator::GreaterEqual:
            return ComparesOrEquals(left, right, Operator::Greater);
        default:
            return Answer::kNone;
    }
}

void Release(const RuleValue& value, TextPool& pool) noexcept {
    if (value.owned) pool.Release(value.owned);
}

void Become(RuleValue& value, Answer answer, TextPool& pool) noexcept {
    Release(value, pool);
    if (answer == Answer::kNone) {
        ::new (&value) RuleValue(EmptyValue());
    } else {
        ::new (&value) RuleValue(RuleValue::OfBool(answer == Answer::kYes));
    }
}

// Integers need no promotion and own nothing.
void ComputeIntegers(RuleValue& left, const RuleValue& right, OperatorType op) noexcept {
    if (const std::optional<std::int32_t> number = ComputeInt(left.integer, right.integer, op)) {
        ::new (&left) RuleValue(RuleValue::OfInt(*number));
    } else {
        ::new (&left) RuleValue(EmptyValue());
    }
}

}  // namespace

void Compute(RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool) {
    if (op < Operator::Plus || op > Operator::Power) {
        Become(left, ComputeAnswer(left, right, op), pool);
    } else if (left.type == Literal::Int && right.type == Literal::Int) {
        return ComputeIntegers(left, right, op);
    } else {
        const RuleValue result = ComputeBinaryOp(left, right, op, pool);
        if (left.owned != result.owned) Release(left, pool);
        left = result;
    }
    Release(right, pool);
}

void Negate(RuleValue& value, TextPool& pool) {
    switch (value.type) {
        case Literal::Bool:
            return Become(value, ToAnswer(!value.truth), pool);
        case Literal::Int:
            return Become(value, ToAnswer(value.integer == 0), pool);
        case Literal::Double:
        case Literal::TimeSpan:
            return Become(value, ToAnswer(value.number == 0.0), pool);
        default:
            return Become(value, Answer::kNone, pool);
    }
}

}  // namespace brindle
