// Literals: the public form of a value. Everything beyond keeping the fields is RuleValue's. Tests:
// calculator_token_test.cpp.
#include "brindle/expressions/rule_classify.h"
#include "brindle/expressions/rule_value.h"

using brindle::RuleValue;

CCalculator::Literal::Literal(const std::string& text) : m_string(text) {}
CCalculator::Literal::Literal(const char* text) : m_string(text ? text : "") {}
CCalculator::Literal::Literal(std::int32_t value) noexcept : m_int(value), m_type(Int) {}
CCalculator::Literal::Literal(double value) noexcept : Literal(value, Double) {}
CCalculator::Literal::Literal(double value, Type type) noexcept : m_double(value), m_type(type) {}
CCalculator::Literal::Literal(const COleDateTime& date) noexcept : m_date(date), m_type(DateTime) {}
CCalculator::Literal::Literal(bool value) noexcept : m_bool(value), m_type(Bool) {}
CCalculator::Literal::~Literal() = default;

std::unique_ptr<CCalculator::Literal> CCalculator::Literal::Create(const std::string& text) {
    if (brindle::Trim(text).empty()) return nullptr;
    auto literal = std::make_unique<Literal>();
    brindle::ClassifyOperand(text).StoreTo(*literal);
    return literal;
}

CCalculator::Token::TType CCalculator::Literal::GetTType() const {
    return LiteralToken;
}

std::string CCalculator::Literal::AsString() const {
    return RuleValue::Of(*this).AsString();
}

void CCalculator::Literal::FromString(const std::string& text) {
    const std::string copy(text);  // which may be this literal's own text
    RuleValue value = brindle::Classify(copy);
    value.replaceable = m_replaceable;
    value.StoreTo(*this);
}

bool CCalculator::Literal::AsBool() const {
    if (m_type == Bool) return m_bool;  // as the result of nearly every rule is
    return RuleValue::Of(*this).AsBool();
}

std::int32_t CCalculator::Literal::AsInt() const {
    return RuleValue::Of(*this).AsInt();
}

double CCalculator::Literal::AsDouble() const {
    return RuleValue::Of(*this).AsDouble();
}
