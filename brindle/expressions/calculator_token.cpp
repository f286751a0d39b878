// Operators, function calls, and the list that owns tokens. Tests: calculator_token_test.cpp.
#include "brindle/expressions/calculator.h"
#include "brindle/expressions/rule_compute.h"
#include "brindle/expressions/rule_program.h"

CCalculator::Token::~Token() = default;
CCalculator::Operator::~Operator() = default;
CCalculator::Function::~Function() = default;

CCalculator::Token::TType CCalculator::Operator::GetTType() const {
    return OperatorToken;
}

std::string CCalculator::Operator::AsString() const {
    return std::string(brindle::OperatorText(m_type));
}

int CCalculator::Operator::GetPriority() const noexcept {
    return brindle::Priority(m_type);
}

CCalculator::Token::TType CCalculator::Function::GetTType() const {
    return FunctionToken;
}

std::string CCalculator::Function::AsString() const {
    return m_call;
}

CCalculator::Literal CCalculator::Function::ToLiteral() const {
    Literal literal;
    brindle::CallFunction(m_call).StoreTo(literal);
    return literal;
}

void CCalculator::Expression::Add(Token* token) {
    if (!token) return;
    std::unique_ptr<Token> owned(token);
    m_tokens.push_back(std::move(owned));
}

std::string CCalculator::Expression::AsString() const {
    std::string text;
    for (const auto& token : m_tokens) {
        if (token != m_tokens.front()) text += ' ';
        text += token->AsString();
    }
    return text;
}
