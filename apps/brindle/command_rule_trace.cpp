// The trace of an evaluation. Tests: command_rule_test.cpp.
#include "apps/brindle/command_rule_trace.h"

#include "apps/brindle/cli_output.h"
#include "host/rule_text.h"

namespace brindle::tool {
namespace {

using Literal = CCalculator::Literal;

void Show(const std::string& stage, const std::string& line) {
    PrintError("brindle: " + Paint(Stream::kError, Colour::kCyan, Padded(stage, 6)) + ": " + line);
}

std::string Shown(const Literal& literal) {
    const bool isText = literal.GetType() == Literal::String;
    const std::string text = isText ? "\"" + literal.AsString() + "\"" : literal.AsString();
    return text + " (" + host::LiteralTypeName(literal.GetType()) + ")";
}

std::string Shown(const CCalculator::Token& token) {
    switch (token.GetTType()) {
        case CCalculator::Token::OperatorToken:
            return token.AsString() + " (operator)";
        case CCalculator::Token::FunctionToken:
            return token.AsString() + " (function)";
        default:
            break;
    }
    const auto& literal = static_cast<const Literal&>(token);
    return literal.IsReplaceable() ? literal.AsString() + " (name)" : Shown(literal);
}

}  // namespace

void RuleTrace::ShowTokens(const CStringA& rule, bool upper) {
    CStringA text = rule;
    if (upper) text.MakeUpper();
    CCalculator::Expression expression;
    CCalculator().ToReversePolish(text.str(), expression);
    for (int i = 0; i < expression.Size(); ++i) Show("token", Shown(*expression[i]));
    Show("rpn", expression.AsString());
}

void RuleTrace::OnValue(const CStringA& reference, const CStringA* text, const Literal& value) {
    const std::string source =
        text ? "from --value " + m_values.LastSource() : "no value given: the name itself";
    Show("value", reference.str() + " = " + Shown(value) + ", " + source);
}

void RuleTrace::OnOperator(const CCalculator::Operator& applied, const Literal* left, const Literal& right,
                           const Literal& result) {
    const std::string first = left ? Shown(*left) + " " : std::string();
    Show("step", first + applied.AsString() + " " + Shown(right) + " -> " + Shown(result));
}

void RuleTrace::OnFunction(const CCalculator::Function& function, const Literal& result) {
    Show("step", function.AsString() + " -> " + Shown(result));
}

}  // namespace brindle::tool
