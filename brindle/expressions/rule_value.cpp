// Values: their conversions and the promotion table. Entry points: RuleValue's members, CalcAsType,
// ParseAddressParts. Tests: rule_value_test.cpp.
#include "brindle/expressions/rule_value.h"

#include <cmath>
#include <limits>

#include "brindle/address/address_ov.h"
#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;

constexpr std::size_t kKeptCapacity = 65536;  // a released string of more gives its memory back

// Toward zero; what does not fit, and what is no number, gives the smallest integer.
std::int32_t Truncated(double value) noexcept {
    constexpr double kLimit = 2147483648.0;
    if (!(value > -kLimit - 1 && value < kLimit)) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

// "%.Nd": at least N digits, a sign before them.
void AppendPadded(std::string& text, int value, std::size_t digits) {
    if (value < 0) text += '-';
    const std::string number = PrintInt(value < 0 ? -static_cast<std::int64_t>(value) : value);
    if (number.size() < digits) text.append(digits - number.size(), '0');
    text += number;
}

std::string DateText(const COleDateTime& date) {
    LocalTime parts;
    parts.year = parts.month = parts.day = parts.hour = parts.minute = parts.second = -1;
    date.GetAsLocalTime(parts);
    std::string text;
    AppendPadded(text, parts.year, 4);
    AppendPadded(text += '-', parts.month, 2);
    AppendPadded(text += '-', parts.day, 2);
    AppendPadded(text += 'T', parts.hour, 2);
    AppendPadded(text += ':', parts.minute, 2);
    AppendPadded(text += ':', parts.second, 2);
    return text;
}

std::uint32_t ReadPart(const CStringA& hexadecimal) noexcept {
    std::string_view text = hexadecimal.view();
    std::uint32_t value = 0;
    ScanHex(text, value);
    return value;
}

}  // namespace

CStringA* TextPool::TakeMore() {
    if (m_free.empty()) {
        m_free.reserve(m_more.size() + 1);
        m_more.push_back(std::make_unique<CStringA>());
        return m_more.back().get();
    }
    CStringA* const text = m_free.back();
    m_free.pop_back();
    return text;
}

void TextPool::Release(CStringA* text) noexcept {
    if (text->str().capacity() > kKeptCapacity) CStringA().Swap(*text);
    text->Empty();
    for (unsigned i = 0; i < kOwn; ++i) {
        if (text != &m_own[i]) continue;
        m_freeOwn |= 1u << i;
        return;
    }
    m_free.push_back(text);
}

RuleValue RuleValue::Of(const Literal& literal) noexcept {
    RuleValue value = OfText({}, literal.m_type);
    switch (literal.m_type) {
        case Literal::Bool:
            value.truth = literal.m_bool;
            break;
        case Literal::Int:
            value.integer = literal.m_int;
            break;
        case Literal::Double:
        case Literal::TimeSpan:
            value.number = literal.m_double;
            break;
        case Literal::DateTime:
            value.number = literal.m_date.m_dt;
            value.status = literal.m_date.m_status;
            break;
        case Literal::String:
        case Literal::Address:
            value.text = literal.m_string;
            break;
    }
    value.replaceable = literal.m_replaceable;
    return value;
}

void RuleValue::StoreTo(Literal& literal) const {
    if (text.empty()) {
        literal.m_string.clear();
    } else {
        literal.m_string.assign(text);
    }
    literal.m_bool = type == Literal::Bool && truth;
    literal.m_int = type == Literal::Int ? integer : 0;
    literal.m_double = type == Literal::Double || type == Literal::TimeSpan ? number : 0;
    literal.m_date = type == Literal::DateTime ? Date() : COleDateTime();
    literal.m_type = type;
    literal.m_replaceable = replaceable;
}

COleDateTime RuleValue::Date() const noexcept {
    COleDateTime date;
    if (type != Literal::DateTime) return date;
    date.m_dt = number;
    date.m_status = status;
    return date;
}

bool RuleValue::AsBool() const {
    switch (type) {
        case Literal::Bool:
            return truth;
        case Literal::String:
            return !(text == "0" || text == "0.0" || EqualNoCase(text, "false"));
        default:
            return AsInt() != 0;  // Kept: a Double of 0.5 is false
    }
}

std::int32_t RuleValue::ConvertToInt() const {
    switch (type) {
        case Literal::String:
            return Truncated(ReadDouble(text));
        case Literal::Address:
            return static_cast<std::int32_t>(ParseAddressParts(text).Packed());
        default:
            return Truncated(number);
    }
}

double RuleValue::AsDouble() const {
    switch (type) {
        case Literal::Bool:
            return truth ? 1.0 : 0.0;
        case Literal::Int:
            return integer;
        case Literal::String:
            return ReadDouble(text);
        case Literal::Address:
            return AsInt();
        default:
            return number;
    }
}

std::string RuleValue::AsString() const {
    switch (type) {
        case Literal::Bool:
            return truth ? "TRUE" : "FALSE";
        case Literal::Int:
            return PrintInt(integer);
        case Literal::Double:
        case Literal::TimeSpan:
            return PrintDouble(number);
        case Literal::DateTime:
            return DateText(Date());
        default:
            return std::string(text);
    }
}

// The record has the parts cut to their ranges; only when that loses something are the texts read.
AddressParts ParseAddressParts(std::string_view text) {
    const std::string terminated(text);
    CAddressOv address(0u, 0u, 0u);
    if (!address.SetAddress(terminated.c_str())) return {};
    FullAddress_t record;
    address.GetFullAddressStruct(record);
    if (CAddressOv(record) == address) return {record.net, record.unit, record.port};
    return {ReadPart(address.GetNetString()), ReadPart(address.GetUnitString()),
            ReadPart(address.GetPortString())};
}

}  // namespace brindle
