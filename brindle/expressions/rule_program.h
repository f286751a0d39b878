// RuleProgram: a rule in reverse Polish order, as a flat list of steps. A short one lives in its own storage and
// takes nothing from the heap. Tests: rule_convert_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "brindle/expressions/rule_value.h"

namespace brindle {

struct RuleStep {
    enum Kind : std::uint8_t { kConstant, kName, kFunction, kOperator };
    Kind kind;
    OperatorType op;         // of kOperator
    std::uint32_t position;  // offset in the rule's text
    RuleValue value;         // kConstant, kName: the operand; kFunction: the call as text
};

// The priority of an operator: a waiting operator of equal or higher priority goes out before a new one.
int Priority(OperatorType op) noexcept;
bool IsLeftAssociative(OperatorType op) noexcept;
std::string_view OperatorText(OperatorType op) noexcept;

// The capacity of the operator stack and of the value stack. Kept: the test for room lets one more in, and what
// finds no room is dropped without a word.
inline constexpr std::size_t kStackCapacity = 100;

class RuleProgram {
  public:
    RuleProgram() noexcept : m_steps(m_own) {}
    RuleProgram(const RuleProgram&) = delete;
    RuleProgram& operator=(const RuleProgram&) = delete;
    ~RuleProgram() = default;

    std::size_t Size() const noexcept { return m_size; }
    const RuleStep& operator[](std::size_t index) const noexcept { return m_steps[index]; }
    const RuleStep* begin() const noexcept { return m_steps; }
    const RuleStep* end() const noexcept { return m_steps + m_size; }

    void AddOperator(OperatorType op, std::size_t position) { Append(RuleStep::kOperator, position).op = op; }
    // `make` gives the value. It is made where it stays: a copy of fields just written would stall.
    template <class Make>
    void AddOperand(std::size_t position, Make make) {
        RuleStep& step = Append(RuleStep::kConstant, position);
        ::new (&step.value) RuleValue(make());
        if (step.value.replaceable && step.value.type == CCalculator::Literal::String)
            step.kind = RuleStep::kName;
    }
    void AddFunction(std::string_view call, std::size_t position) {
        Append(RuleStep::kFunction, position).value = RuleValue::OfText(call);
    }
    // A text that lives as long as the program does.
    std::string_view Keep(std::string text) {
        return *m_texts.emplace_back(std::make_unique<std::string>(std::move(text)));
    }

    // The steps' texts with single blanks between them.
    std::string AsString() const;

  private:
    static constexpr std::size_t kOwnSteps = 64;

    RuleStep& Append(RuleStep::Kind kind, std::size_t position) {
        if (m_size == m_capacity) Grow();
        RuleStep& step = m_steps[m_size++];
        step.kind = kind;
        step.op = CCalculator::Operator::None;
        step.position = static_cast<std::uint32_t>(position);
        return step;
    }
    void Grow();

    RuleStep* m_steps;
    std::size_t m_size = 0;
    std::size_t m_capacity = kOwnSteps;
    std::unique_ptr<RuleStep[]> m_grown;
    std::vector<std::unique_ptr<std::string>> m_texts;
    union {
        RuleStep m_own[kOwnSteps];  // not initialised until used
    };
};

// Walks the steps as the evaluation will, counting values only: the first operator that lacks an operand, or
// Size() when there is none.
std::size_t FindMissingOperand(const RuleProgram& program) noexcept;

}  // namespace brindle
