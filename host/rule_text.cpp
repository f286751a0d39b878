// Rules as attributes. Tests: rule_trigger_test.cpp.
#include "host/rule_text.h"

#include <brindle/address/address_ov.h>

#include "host/address_pattern.h"

namespace brindle::host {

RuleText::RuleText() : m_rule(std::make_shared<const PreparedRule>()) {}

std::string RuleText::Parse(std::string_view text) {
    m_text = text;
    m_rule = std::make_shared<const PreparedRule>(CStringA(m_text));
    return {};
}

std::string RuleText::Fault() const {
    const Result& structure = m_rule->Structure();
    if (structure.ok()) return {};
    return structure.text + " at column " + std::to_string(structure.column);
}

std::optional<std::uint32_t> DeviceOfName(const PreparedRule& rule, std::size_t index,
                                          const CAddressOv& own) {
    const CAddressOv* written = rule.NameAddress(index);
    const CAddressOv& device = written ? *written : own;
    if (device.IsDeferred()) return {};
    return device.GetDWord();
}

bool Holds(const CCalculator::Literal& result) {
    const bool meansNothing = result.GetType() == CCalculator::Literal::String && result.AsString().empty();
    return !meansNothing && result.AsBool();
}

const char* LiteralTypeName(CCalculator::Literal::Type type) {
    switch (type) {
        case CCalculator::Literal::Bool:
            return "Bool";
        case CCalculator::Literal::Double:
            return "Double";
        case CCalculator::Literal::Int:
            return "Int";
        case CCalculator::Literal::DateTime:
            return "DateTime";
        case CCalculator::Literal::Address:
            return "Address";
        case CCalculator::Literal::TimeSpan:
            return "TimeSpan";
        default:
            return "String";
    }
}

std::string NameText(const PreparedRule& rule, std::size_t index) {
    const CAddressOv* address = rule.NameAddress(index);
    return (address ? AddressText(*address) + "," : std::string()) + rule.Name(index).str();
}

}  // namespace brindle::host
