// RuleValue: a Literal in the form the evaluator works on. Trivial, so that a stack of them costs nothing until
// it is used; texts are views of the rule or of strings that a TextPool owns.
//
// Conversions between types and the promotion table of the binary operators. Tests: rule_value_test.cpp.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/expressions/calculator.h"
#include "brindle/framework/string_a.h"

namespace brindle {

using ValueType = CCalculator::Literal::Type;
using OperatorType = CCalculator::Operator::Type;

// The longest text an evaluation makes; a longer one becomes the empty String.
inline constexpr std::size_t kMaxComputedText = std::size_t{1} << 26;

// Strings that values of one evaluation own, used again once released. A string keeps its place. The first few are part
// of the pool: most evaluations need no more.
class TextPool {
  public:
    // An empty string.
    CStringA* Take() {
        if (m_freeOwn == 0) return TakeMore();
        const int index = std::countr_zero(m_freeOwn);
        m_freeOwn &= m_freeOwn - 1;
        return &m_own[static_cast<std::size_t>(index)];
    }
    void Release(CStringA* text) noexcept;

  private:
    static constexpr unsigned kOwn = 3;

    CStringA* TakeMore();

    std::array<CStringA, kOwn> m_own;
    unsigned m_freeOwn = (1u << kOwn) - 1;  // one bit each
    std::vector<std::unique_ptr<CStringA>> m_more;
    std::vector<CStringA*> m_free;  // of m_more; has room for all of them
};

struct RuleValue {
    ValueType type;
    bool replaceable;
    COleDateTime::DateTimeStatus status;  // of a DateTime
    union {
        bool truth;
        std::int32_t integer;
        double number;  // Double; TimeSpan in seconds; DateTime in days
    };
    std::string_view text;  // String and Address
    CStringA* owned;        // holds `text`, or null

    static RuleValue OfText(std::string_view text, ValueType type = CCalculator::Literal::String) noexcept {
        RuleValue value;
        value.type = type;
        value.replaceable = false;
        value.status = COleDateTime::valid;
        value.number = 0;
        value.text = text;
        value.owned = nullptr;
        return value;
    }
    static RuleValue OfBool(bool truth) noexcept {
        RuleValue value = OfText({}, CCalculator::Literal::Bool);
        value.truth = truth;
        return value;
    }
    static RuleValue OfInt(std::int32_t integer) noexcept {
        RuleValue value = OfText({}, CCalculator::Literal::Int);
        value.integer = integer;
        return value;
    }
    static RuleValue OfDouble(double number, ValueType type = CCalculator::Literal::Double) noexcept {
        RuleValue value = OfText({}, type);
        value.number = number;
        return value;
    }
    static RuleValue OfDate(const COleDateTime& date) noexcept {
        RuleValue value = OfText({}, CCalculator::Literal::DateTime);
        value.number = date.m_dt;
        value.status = date.m_status;
        return value;
    }
    // Views the literal's text: valid as long as the literal is and does not change.
    static RuleValue Of(const CCalculator::Literal& literal) noexcept;

    void StoreTo(CCalculator::Literal& literal) const;

    COleDateTime Date() const noexcept;
    bool AsBool() const;
    std::int32_t AsInt() const {
        if (type == CCalculator::Literal::Int) return integer;
        return type == CCalculator::Literal::Bool ? (truth ? 1 : 0) : ConvertToInt();
    }
    double AsDouble() const;
    std::string AsString() const;

  private:
    std::int32_t ConvertToInt() const;  // of what is neither an Int nor a Bool
};

// The empty String: the result of every operation without a meaning.
inline RuleValue EmptyValue() noexcept {
    return RuleValue::OfText({});
}

// The parts of an address text, uncut; 0 for what is no address.
struct AddressParts {
    std::uint32_t net = 0;
    std::uint32_t unit = 0;
    std::uint32_t port = 0;
    std::uint32_t Packed() const noexcept { return net * 65536u + unit * 256u + port; }
};
AddressParts ParseAddressParts(std::string_view text);

// The table behind CalcAsType. Kept: it is not symmetric; rows are the left type, columns the right one, both in the
// order of Type.
inline constexpr std::array<std::array<ValueType, 7>, 7> kPromotion = [] {
    constexpr auto B = CCalculator::Literal::Bool;
    constexpr auto D = CCalculator::Literal::Double;
    constexpr auto S = CCalculator::Literal::String;
    constexpr auto I = CCalculator::Literal::Int;
    constexpr auto T = CCalculator::Literal::DateTime;
    constexpr auto A = CCalculator::Literal::Address;
    return std::array<std::array<ValueType, 7>, 7>{{
        //Bool Double String Int DateTime Address TimeSpan
        {{B, D, S, I, S, I, I}},  // Bool
        {{D, D, S, D, S, D, D}},  // Double
        {{S, S, S, S, S, S, S}},  // String
        {{I, D, S, I, S, I, I}},  // Int
        {{S, S, S, S, T, S, T}},  // DateTime
        {{S, D, S, I, S, A, D}},  // Address
        {{S, D, S, S, S, S, D}},  // TimeSpan
    }};
}();

// The type in which a binary operation is carried out.
inline ValueType CalcAsType(ValueType left, ValueType right) noexcept {
    const auto row = static_cast<std::size_t>(left);
    const auto column = static_cast<std::size_t>(right);
    const bool isKnown = row < kPromotion.size() && column < kPromotion.size();
    return isKnown ? kPromotion[row][column] : CCalculator::Literal::String;
}

}  // namespace brindle
