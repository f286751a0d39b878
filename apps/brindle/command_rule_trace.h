// RuleTrace: shows on the standard error how a rule comes to its result.
#pragma once

#include <brindle/expressions/prepared_rule.h>

#include "apps/brindle/command_rule_values.h"

namespace brindle::tool {

class RuleTrace final : public RuleObserver {
  public:
    explicit RuleTrace(const RuleValues& values) : m_values(values) {}

    // The tokens with their kinds, and the reverse Polish text; also of a rule that does not convert.
    static void ShowTokens(const CStringA& rule, bool upper);

    void OnValue(const CStringA& reference, const CStringA* text, const CCalculator::Literal& value) override;
    void OnOperator(const CCalculator::Operator& applied, const CCalculator::Literal* left,
                    const CCalculator::Literal& right, const CCalculator::Literal& result) override;
    void OnFunction(const CCalculator::Function& function, const CCalculator::Literal& result) override;

  private:
    const RuleValues& m_values;
};

}  // namespace brindle::tool
