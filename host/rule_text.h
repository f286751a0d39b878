// RuleText: a rule as an attribute: its text and, for evaluation, its prepared form. Copies share the prepared
// rule.
#pragma once

#include <brindle/expressions/calculator.h>
#include <brindle/expressions/prepared_rule.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brindle::host {

class RuleText {
  public:
    RuleText();

    // Every text is kept, also one that is no rule, so that nothing is lost by loading and saving: returns an
    // empty text. Fault() says what is wrong with it.
    std::string Parse(std::string_view text);
    const std::string& Text() const noexcept { return m_text; }
    const PreparedRule& Rule() const noexcept { return *m_rule; }
    // Why the rule cannot be evaluated and where in it ("... at column 4"), whatever the values are; empty when
    // it can.
    std::string Fault() const;

  private:
    std::string m_text;
    std::shared_ptr<const PreparedRule> m_rule;
};

// The packed address of the device a name of a rule belongs to: that before the name, else `own`. Nothing when that is
// not a full address.
std::optional<std::uint32_t> DeviceOfName(const PreparedRule& rule, std::size_t index, const CAddressOv& own);
// Whether a result makes a condition hold: it is true, and not the empty text that an operation without a meaning
// gives.
bool Holds(const CCalculator::Literal& result);
// The enumerator's name: "Bool", "TimeSpan" ...
const char* LiteralTypeName(CCalculator::Literal::Type type);
// A name as messages show it, with its address where the rule writes one.
std::string NameText(const PreparedRule& rule, std::size_t index);

}  // namespace brindle::host
