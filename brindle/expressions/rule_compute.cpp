// The operators. Entry points: Compute and Negate. Tests: rule_compute_test.cpp.
#include "brindle/expressions/rule_compute.h"

#include <algorithm>
#include <cmath>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/wildcard.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;

constexpr double kEqualWithin = 0.00001;
constexpr double kLargestSpan = 9e15;  // seconds; whole numbers up to there are exact

// A value's text; of a number or date it is printed into `buffer`.
std::string_view TextOf(const RuleValue& value, std::string& buffer) {
    if (value.type == Literal::String || value.type == Literal::Address) return value.text;
    buffer = value.AsString();
    return buffer;
}

RuleValue OwnedText(std::string* text, ValueType type = Literal::String) noexcept {
    RuleValue value = RuleValue::OfText(*text, type);
    value.owned = text;
    return value;
}

// The left text grows in place when it is a computed one, so that a long sum takes linear time.
RuleValue Concatenate(const RuleValue& left, const RuleValue& right, TextPool& pool) {
    std::string leftBuffer;
    std::string rightBuffer;
    const std::string_view head = TextOf(left, leftBuffer);
    const std::string_view tail = TextOf(right, rightBuffer);
    if (head.size() + tail.size() > kMaxComputedText) return EmptyValue();
    if (left.owned) {
        left.owned->append(tail);
        return OwnedText(left.owned);
    }
    std::string* const text = pool.Take();
    text->append(head).append(tail);
    return OwnedText(text);
}

// Kept: the parts are neither carried nor cut, so 0001:FF:03 + 0000:01:00 is 0001:100:03.
RuleValue MoveAddress(const RuleValue& left, const RuleValue& right, bool back, TextPool& pool) {
    const AddressParts a = ParseAddressParts(left.text);
    const AddressParts b = ParseAddressParts(right.text);
    CAddressOv moved = back ? CAddressOv(a.net - b.net, a.unit - b.unit, a.port - b.port)
                            : CAddressOv(a.net + b.net, a.unit + b.unit, a.port + b.port);
    std::string* const text = pool.Take();
    *text = moved.GetString().str();
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

RuleValue ComputeDouble(double left, double right, OperatorType op) noexcept {
    switch (op) {
        case Operator::Plus:
            return RuleValue::OfDouble(left + right);
        case Operator::Minus:
            return RuleValue::OfDouble(left - right);
        case Operator::Multiply:
            return RuleValue::OfDouble(left * right);
        case Operator::Divide:
            return right == 0.0 ? EmptyValue() : RuleValue::OfDouble(left / right);
        default:
            return EmptyValue();  // Kept: "^" is never computed
    }
}

// In 64 bits and cut to 32: also the smallest integer divided by -1 wraps.
RuleValue ComputeInt(std::int64_t left, std::int64_t right, OperatorType op) noexcept {
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
            if (right == 0) return EmptyValue();
            value = left / right;
            break;
        default:
            return EmptyValue();
    }
    return RuleValue::OfInt(static_cast<std::int32_t>(static_cast<std::uint64_t>(value)));
}

RuleValue ComputeBinaryOp(const RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool) {
    const bool isSum = op == Operator::Plus;
    const bool isMove = isSum || op == Operator::Minus;
    switch (CalcAsType(left.type, right.type)) {
        case Literal::Double:
            return ComputeDouble(left.AsDouble(), right.AsDouble(), op);
        case Literal::Int:
            return ComputeInt(left.AsInt(), right.AsInt(), op);
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

// Kept: operands are taken as integers, so 0.5 and "yes" count as false here.
RuleValue ComputeBooleanOp(const RuleValue& left, const RuleValue& right, OperatorType op) {
    const bool a = left.AsInt() != 0;
    const bool b = right.AsInt() != 0;
    return RuleValue::OfBool(op == Operator::And ? a && b : a || b);
}

RuleValue CompareTexts(const RuleValue& left, const RuleValue& right) {
    std::string leftBuffer;
    std::string rightBuffer;
    return RuleValue::OfBool(TextOf(left, leftBuffer) < TextOf(right, rightBuffer));
}

// Whether left < right.
RuleValue IsLess(const RuleValue& left, const RuleValue& right, ValueType type) {
    switch (type) {
        case Literal::Double:
            return RuleValue::OfBool(left.AsDouble() < right.AsDouble());
        case Literal::String:
            return CompareTexts(left, right);
        case Literal::DateTime:
            return RuleValue::OfBool(left.Date() < right.Date());
        case Literal::Address:
            return RuleValue::OfBool(ParseAddressParts(left.text).Packed() <
                                     ParseAddressParts(right.text).Packed());
        case Literal::Int:
        case Literal::Bool:
            return RuleValue::OfBool(left.AsInt() < right.AsInt());
        default:
            return EmptyValue();
    }
}

RuleValue ComputeComparisionOp(const RuleValue& left, const RuleValue& right, OperatorType op) {
    const ValueType type = CalcAsType(left.type, right.type);
    return op == Operator::Less ? IsLess(left, right, type) : IsLess(right, left, type);
}

RuleValue MatchTexts(const RuleValue& left, const RuleValue& right) {
    std::string leftBuffer;
    std::string rightBuffer;
    switch (MatchWildcard(TextOf(left, leftBuffer), TextOf(right, rightBuffer))) {
        case WildcardResult::kMatch:
            return RuleValue::OfBool(true);
        case WildcardResult::kNoMatch:
            return RuleValue::OfBool(false);
        default:
            return EmptyValue();
    }
}

RuleValue ComputeEquality(const RuleValue& left, const RuleValue& right) {
    switch (CalcAsType(left.type, right.type)) {
        case Literal::Bool:
            return RuleValue::OfBool(left.truth == right.truth);
        case Literal::Double:
            return RuleValue::OfBool(std::fabs(left.AsDouble() - right.AsDouble()) < kEqualWithin);
        case Literal::Int:
            return RuleValue::OfBool(left.AsInt() == right.AsInt());
        case Literal::DateTime:
            return RuleValue::OfBool(left.Date() == right.Date());
        case Literal::Address:
            return RuleValue::OfBool(left.text == right.text);
        case Literal::String:
            return MatchTexts(left, right);
        default:
            return EmptyValue();
    }
}

}  // namespace

RuleValue Compute(const RuleValue& left, const RuleValue& right, OperatorType op, TextPool& pool) {
    switch (op) {
        case Operator::And:
        case Operator::Or:
            return ComputeBooleanOp(left, right, op);
        case Operator::Plus:
        case Operator::Minus:
        case Operator::Multiply:
        case Operator::Divide:
        case Operator::Power:
            return ComputeBinaryOp(left, right, op, pool);
        case Operator::Equal:
            return ComputeEquality(left, right);
        case Operator::Less:
        case Operator::Greater:
            return ComputeComparisionOp(left, right, op);
        case Operator::NotEqual:
            return Negate(ComputeEquality(left, right));
        case Operator::LessEqual:
            return ComputeBooleanOp(ComputeComparisionOp(left, right, Operator::Less),
                                    ComputeEquality(left, right), Operator::Or);
        case Operator::GreaterEqual:
            return ComputeBooleanOp(ComputeComparisionOp(left, right, Operator::Greater),
                                    ComputeEquality(left, right), Operator::Or);
        default:
            return EmptyValue();
    }
}

RuleValue Negate(const RuleValue& value) {
    switch (value.type) {
        case Literal::Bool:
            return RuleValue::OfBool(!value.truth);
        case Literal::Int:
            return RuleValue::OfBool(value.integer == 0);
        case Literal::Double:
        case Literal::TimeSpan:
            return RuleValue::OfBool(value.number == 0.0);
        default:
            return EmptyValue();
    }
}

}  // namespace brindle
