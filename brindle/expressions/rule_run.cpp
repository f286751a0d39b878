// Whether a program evaluates does not depend on its values, so that is found out first; then each name can be looked
// up just when it is needed, and its text lives no longer than the value. Entry points: RunProgram, LookUpNames.
// Tests: rule_run_test.cpp, solver_test.cpp.
#include "brindle/expressions/rule_run.h"

#include <algorithm>

#include "brindle/expressions/rule_classify.h"
#include "brindle/expressions/rule_compute.h"
#include "brindle/framework/letter_case.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;

Literal ToLiteral(const RuleValue& value) {
    Literal literal;
    value.StoreTo(literal);
    return literal;
}

class Evaluation {
  public:
    explicit Evaluation(const RuleRun& run) noexcept : m_run(run) {}

    void Run(const RuleProgram& program, Literal& result) {
        for (const RuleStep& step : program) {
            switch (step.kind) {
                case RuleStep::kConstant:
                    Push(step.value);
                    break;
                case RuleStep::kName:
                    Push(m_run.data ? ValueOf(step.value) : step.value);
                    break;
                case RuleStep::kFunction:
                    Push(Call(step.value.text));
                    break;
                case RuleStep::kOperator:
                    Apply(step.op);
                    break;
            }
        }
        m_top[-1].StoreTo(result);
    }

    // Only asks; the answer is not used.
    void Ask(std::string_view reference) { LookUp(reference); }

  private:
    void Push(const RuleValue& value) noexcept {
        if (m_top - m_stack <= static_cast<std::ptrdiff_t>(kStackCapacity)) {
            *m_top++ = value;
        } else if (value.owned) {
            m_pool.Release(value.owned);
        }
    }
    void Apply(OperatorType op);
    RuleValue ValueOf(const RuleValue& name);
    RuleValue Call(std::string_view call);
    // True, and m_answer set, when the source knows the name.
    bool LookUp(std::string_view reference);
    RuleValue OwnAnswer(RuleValue value);

    const RuleRun& m_run;
    std::size_t m_nextName = 0;
    CStringA m_answer;
    TextPool m_pool;
    RuleValue* m_top = m_stack;
    union {
        RuleValue m_stack[kStackCapacity + 1];  // not initialised until used
    };
};

void Evaluation::Apply(OperatorType op) {
    const RuleValue right = *--m_top;
    if (op == Operator::Not) {
        *m_top++ = Negate(right);
        if (m_run.observer) {
            const Literal operand = ToLiteral(right);
            m_run.observer->OnOperator(Operator(op), nullptr, operand, ToLiteral(m_top[-1]));
        }
        if (right.owned) m_pool.Release(right.owned);
        return;
    }
    const RuleValue left = *--m_top;
    if (!m_run.observer) {
        *m_top = Compute(left, right, op, m_pool);
    } else {
        const Literal first = ToLiteral(left);  // a sum may take the left text over
        *m_top = Compute(left, right, op, m_pool);
        m_run.observer->OnOperator(Operator(op), &first, ToLiteral(right), ToLiteral(*m_top));
    }
    if (right.owned) m_pool.Release(right.owned);
    if (left.owned && left.owned != m_top->owned) m_pool.Release(left.owned);
    ++m_top;
}

RuleValue Evaluation::ValueOf(const RuleValue& name) {
    RuleValue value = name;
    const bool known = LookUp(name.text);
    if (known) {
        if (m_run.upper) m_answer.MakeUpper();
        value = Classify(m_answer.view());
    }
    value.replaceable = false;
    if (m_run.observer)
        m_run.observer->OnValue(CStringA(name.text), known ? &m_answer : nullptr, ToLiteral(value));
    return known ? OwnAnswer(value) : value;
}

// The value's text moves from the answer, which the next name will use, to the pool.
RuleValue Evaluation::OwnAnswer(RuleValue value) {
    if (value.text.empty()) return value;
    value.owned = m_pool.Take();
    value.owned->swap(m_answer.str());
    value.text = *value.owned;
    return value;
}

bool Evaluation::LookUp(std::string_view reference) {
    m_answer.Empty();
    if (m_run.names) {
        const NameReference& name = (*m_run.names)[m_nextName++];
        return m_run.data->Lookup(name.name, name.Address(), m_answer);
    }
    const NameReference name(reference);
    return m_run.data->Lookup(name.name, name.Address(), m_answer);
}

RuleValue Evaluation::Call(std::string_view call) {
    const RuleValue value = CallFunction(call);
    if (m_run.observer)
        m_run.observer->OnFunction(CCalculator::Function(std::string(call)), ToLiteral(value));
    return value;
}

void AskForNames(const RuleProgram& program, const RuleRun& run) {
    Evaluation evaluation(run);
    for (const RuleStep& step : program)
        if (step.kind == RuleStep::kName) evaluation.Ask(step.value.text);
}

}  // namespace

NameReference::NameReference(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma != std::string_view::npos) {
        const std::string terminated(text);
        hasAddress = address.SetAddress(terminated.c_str()) != 0;
    }
    name = CStringA(hasAddress ? text.substr(comma + 1) : text);
}

bool RunProgram(const RuleProgram& program, const RuleRun& run, Literal& result) {
    if (program.Size() == 0) return false;
    if (FindMissingOperand(program) < program.Size()) {
        if (run.data) AskForNames(program, run);
        return false;
    }
    Evaluation(run).Run(program, result);
    return true;
}

void LookUpNames(const RuleProgram& program, const CSolverData& data) {
    RuleRun run;
    run.data = &data;
    AskForNames(program, run);
}

}  // namespace brindle
