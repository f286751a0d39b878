// The calculator's two stages and its classifiers, on the program form of an expression. Entry points:
// ToReversePolish, Run. Tests: calculator_test.cpp.
#include "brindle/expressions/calculator.h"

#include "brindle/expressions/rule_classify.h"
#include "brindle/expressions/rule_convert.h"
#include "brindle/expressions/rule_run.h"

namespace {

using brindle::RuleProgram;
using brindle::RuleStep;
using brindle::RuleValue;

CCalculator::Token* MakeToken(const RuleStep& step) {
    switch (step.kind) {
        case RuleStep::kOperator:
            return new CCalculator::Operator(step.op);
        case RuleStep::kFunction:
            return new CCalculator::Function(std::string(step.value.text));
        default:
            break;
    }
    auto literal = std::make_unique<CCalculator::Literal>();
    step.value.StoreTo(*literal);
    return literal.release();
}

// Values are kept as they are, names too. False for an operator that no expression has.
bool AddToken(const CCalculator::Token& token, RuleProgram& program) {
    switch (token.GetTType()) {
        case CCalculator::Token::OperatorToken: {
            const auto type = static_cast<const CCalculator::Operator&>(token).GetType();
            program.AddOperator(type, 0);
            return type > CCalculator::Operator::None && type < CCalculator::Operator::LeftParen;
        }
        case CCalculator::Token::FunctionToken:
            program.AddFunction(program.Keep(token.AsString()), 0);
            return true;
        default:
            program.AddOperand(
                0, [&token] { return RuleValue::Of(static_cast<const CCalculator::Literal&>(token)); });
            return true;
    }
}

}  // namespace

bool CCalculator::ToReversePolish(const std::string& text, Expression& out) const {
    RuleProgram program;
    const bool converted = brindle::ConvertRule(text, program).ok();
    for (const RuleStep& step : program) out.Add(MakeToken(step));
    return converted;
}

bool CCalculator::Run(const Expression& rpn, Literal& result) const {
    RuleProgram program;
    for (int i = 0; i < rpn.Size(); ++i)
        if (!AddToken(*rpn[i], program)) return false;
    Literal value;
    if (!brindle::RunProgram(program, {}, value)) return false;
    result = std::move(value);  // which may be one of the expression's own literals
    return true;
}

bool CCalculator::IsDigits(const std::string& text) noexcept {
    return brindle::IsDigits(text);
}

bool CCalculator::IsNumeric(const std::string& text) noexcept {
    return brindle::IsNumeric(text);
}

bool CCalculator::IsOVAddress(const std::string& text) noexcept {
    return brindle::IsOVAddress(text);
}

bool CCalculator::IsDateTime(const std::string& text, COleDateTime& date) noexcept {
    return brindle::IsDateTime(text, date);
}
