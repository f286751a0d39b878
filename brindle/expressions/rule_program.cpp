// The list of steps and what is known of a step's operator. Entry points: RuleProgram's members,
// FindMissingOperand. Tests: rule_convert_test.cpp.
#include "brindle/expressions/rule_program.h"

#include <algorithm>
#include <array>

namespace brindle {
namespace {

struct OperatorRow {
    std::string_view text;
    int priority;
};

// In the order of Operator::Type. Kept: the priorities are coarse, + and - stand beside ! and all comparisons.
constexpr std::array<OperatorRow, 16> kOperators = {{
    {"", 0},    // None
    {"&", 0},   // And
    {"|", 0},   // Or
    {"!", 1},   // Not
    {"+", 1},   // Plus
    {"-", 1},   // Minus
    {"*", 2},   // Multiply
    {"/", 2},   // Divide
    {"^", 2},   // Power
    {"=", 1},   // Equal
    {"<", 1},   // Less
    {">", 1},   // Greater
    {"!=", 1},  // NotEqual
    {"<=", 1},  // LessEqual
    {">=", 1},  // GreaterEqual
    {"", 0},    // LeftParen
}};

const OperatorRow& Row(OperatorType op) noexcept {
    const auto index = static_cast<std::size_t>(op);
    return kOperators[index < kOperators.size() ? index : 0];
}

}  // namespace

int Priority(OperatorType op) noexcept {
    return Row(op).priority;
}

bool IsLeftAssociative(OperatorType op) noexcept {
    return op != CCalculator::Operator::Power;
}

std::string_view OperatorText(OperatorType op) noexcept {
    return Row(op).text;
}

void RuleProgram::Grow() {
    std::unique_ptr<RuleStep[]> grown(new RuleStep[m_capacity * 2]);
    std::copy(begin(), end(), grown.get());
    m_grown = std::move(grown);
    m_steps = m_grown.get();
    m_capacity *= 2;
}

std::string RuleProgram::AsString() const {
    std::string text;
    for (const RuleStep& step : *this) {
        if (&step != m_steps) text += ' ';
        if (step.kind == RuleStep::kOperator) {
            text += OperatorText(step.op);
        } else {
            text += step.value.AsString();
        }
    }
    return text;
}

std::size_t FindMissingOperand(const RuleProgram& program) noexcept {
    std::size_t values = 0;
    for (std::size_t i = 0; i < program.Size(); ++i) {
        const RuleStep& step = program[i];
        if (step.kind != RuleStep::kOperator) {
            if (values <= kStackCapacity) ++values;
            continue;
        }
        const std::size_t wanted = step.op == CCalculator::Operator::Not ? 1 : 2;
        if (values < wanted) return i;
        values -= wanted - 1;
    }
    return program.Size();
}

}  // namespace brindle
