// Whether a program evaluates does not depend on its values, so that is found out first; then each name can be looked
// up just when it is needed, and its text lives no longer than the value. Entry points: RunProgram, LookUpNames.
// Tests: calculator_test.cpp, solver_test.cpp.
#include "brindle/expressions/rule_run.h"

#include <new>

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

// The stack holds pointers: a constant stays in the program, and what is computed is made in one of two places that
// each depth has, the one its operand does not stand in. A value is so never copied, which would cost more than most
// operators do.
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
                    m_run.data ? PushAnswer(step.value) : Push(step.value);
                    break;
                case RuleStep::kFunction:
                    PushMade([&] { return CallFunction(step.value.text); });
                    if (m_run.observer) ReportFunction(step.value.text);
                    break;
                case RuleStep::kOperator:
                    step.op == Operator::Not ? ApplyNot() : Apply(step.op);
                    break;
            }
        }
        m_stack[m_depth - 1]->StoreTo(result);
    }

    // Only asks; the answer is not used.
    void Ask(std::string_view reference) { LookUp(reference); }

  private:
    bool IsFull() const noexcept { return m_depth > kStackCapacity; }
    void Push(const RuleValue& value) noexcept {
        if (!IsFull()) m_stack[m_depth++] = &value;
    }
    template <class Make>
    void PushMade(Make make) {
        if (IsFull()) return;
        m_stack[m_depth] = ::new (&m_made[m_depth][0]) RuleValue(make());
        ++m_depth;
    }
    RuleValue* FreePlace(std::size_t depth) noexcept {
        return &m_made[depth][m_stack[depth] == &m_made[depth][0] ? 1 : 0];
    }
    void Release(const RuleValue& value) noexcept {
        if (value.owned) m_pool.Release(value.owned);
    }
    void Apply(OperatorType op);
    void ApplyNot();
    void PushAnswer(const RuleValue& name);
    RuleValue AnswerValue();
    // True, and m_answer set, when the source knows the name.
    bool LookUp(std::string_view reference);
    void ReportFunction(std::string_view call);

    const RuleRun& m_run;
    std::size_t m_nextName = 0;
    CStringA m_name;
    CStringA m_answer;
    TextPool m_pool;
    std::size_t m_depth = 0;
    const RuleValue* m_stack[kStackCapacity + 1];
    union {
        RuleValue m_made[kStackCapacity + 1][2];  // not initialised until used
    };
};

void Evaluation::Apply(OperatorType op) {
    const std::size_t depth = m_depth - 2;
    const RuleValue& left = *m_stack[depth];
    const RuleValue& right = *m_stack[depth + 1];
    RuleValue* const place = FreePlace(depth);
    if (!m_run.observer) {
        ::new (place) RuleValue(Compute(left, right, op, m_pool));
    } else {
        const Literal first = ToLiteral(left);  // a sum may take the left text over
        ::new (place) RuleValue(Compute(left, right, op, m_pool));
        m_run.observer->OnOperator(Operator(op), &first, ToLiteral(right), ToLiteral(*place));
    }
    Release(right);
    if (left.owned != place->owned) Release(left);
    m_stack[depth] = place;
    m_depth = depth + 1;
}

void Evaluation::ApplyNot() {
    const RuleValue& operand = *m_stack[m_depth - 1];
    RuleValue* const place = ::new (FreePlace(m_depth - 1)) RuleValue(Negate(operand));
    if (m_run.observer)
        m_run.observer->OnOperator(Operator(Operator::Not), nullptr, ToLiteral(operand), ToLiteral(*place));
    Release(operand);
    m_stack[m_depth - 1] = place;
}

void Evaluation::PushAnswer(const RuleValue& name) {
    const bool known = LookUp(name.text);
    if (known && m_run.upper) m_answer.MakeUpper();
    if (m_run.observer) {
        const RuleValue value = known ? Classify(m_answer.view()) : RuleValue::OfText(name.text);
        m_run.observer->OnValue(CStringA(name.text), known ? &m_answer : nullptr, ToLiteral(value));
    }
    if (known) {
        PushMade([this] { return AnswerValue(); });
    } else {
        PushMade([&name] { return RuleValue::OfText(name.text); });
    }
}

// A text moves from the answer, which the next name will use, to the pool.
RuleValue Evaluation::AnswerValue() {
    RuleValue value = Classify(m_answer.view());
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
    if (reference.find(',') == std::string_view::npos) {
        m_name.str().assign(reference);
        return m_run.data->Lookup(m_name, nullptr, m_answer);
    }
    const NameReference name(reference);
    return m_run.data->Lookup(name.name, name.Address(), m_answer);
}

void Evaluation::ReportFunction(std::string_view call) {
    m_run.observer->OnFunction(CCalculator::Function(std::string(call)), ToLiteral(*m_stack[m_depth - 1]));
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
    if (!run.isComplete && FindMissingOperand(program) < program.Size()) {
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
