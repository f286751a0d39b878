// Whether a program evaluates does not depend on its values, so that is found out first; then each name can be looked
// up just when it is needed, and its text lives no longer than the value. Entry points: RunProgram, LookUpNames.
// Tests: calculator_test.cpp, solver_test.cpp.
#include "brindle/expressions/rule_run.h"

#include <new>
#include <utility>

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

// Operators work in the place of their left operand, and a constant that an operator takes at once stays in the
// program: copying a value that was just written would cost more than most operators do.
class Evaluation {
  public:
    explicit Evaluation(const RuleRun& run) noexcept
        : m_run(run), m_nextName(run.names ? run.names->data() : nullptr) {}

    void Run(const RuleProgram& program, Literal& result) {
        const RuleStep* const end = program.end();
        for (const RuleStep* step = program.begin(); step != end; ++step) {
            switch (step->kind) {
                case RuleStep::kConstant:
                    if (!IsFull() && step + 1 != end && IsBinary(step[1])) {
                        Apply(step[1].op, m_values[m_depth - 1], step->value);
                        ++step;
                    } else {
                        Push(step->value);
                    }
                    break;
                case RuleStep::kName:
                    m_run.data ? PushAnswer(step->value) : Push(step->value);
                    break;
                case RuleStep::kFunction:
                    PushCall(step->value.text);
                    break;
                case RuleStep::kOperator:
                    if (step->op == Operator::Not) {
                        ApplyNot(m_values[m_depth - 1]);
                    } else {
                        --m_depth;
                        Apply(step->op, m_values[m_depth - 1], m_values[m_depth]);
                    }
                    break;
            }
        }
        m_values[m_depth - 1].StoreTo(result);
    }

    // Only asks; the answer is not used.
    void Ask(std::string_view reference) { LookUp(reference); }

  private:
    static bool IsBinary(const RuleStep& step) noexcept {
        return step.kind == RuleStep::kOperator && step.op != Operator::Not;
    }
    bool IsFull() const noexcept { return m_depth > kStackCapacity; }
    void Push(const RuleValue& value) noexcept {
        if (!IsFull()) m_values[m_depth++] = value;
    }
    // `make` gives the value, which is made where it stays.
    template <class Make>
    void PushMade(Make make) {
        if (IsFull()) return;
        ::new (&m_values[m_depth]) RuleValue(make());
        ++m_depth;
    }
    void Apply(OperatorType op, RuleValue& left, const RuleValue& right) {
        m_run.observer ? ApplyObserved(op, left, right) : Compute(left, right, op, m_pool);
    }
    void ApplyObserved(OperatorType op, RuleValue& left, const RuleValue& right);
    void ApplyNot(RuleValue& operand);
    void PushAnswer(const RuleValue& name);
    void PushCall(std::string_view call);
    RuleValue AnswerValue();
    // True, and m_answer set, when the source knows the name.
    bool LookUp(std::string_view reference);
    bool LookUpText(std::string_view reference);
    void ReportValue(std::string_view reference, bool known);

    const RuleRun& m_run;
    const NameReferences::value_type* m_nextName;  // null: taken apart each time
    TextPool m_pool;
    CStringA* m_name = nullptr;    // of the pool, once needed
    CStringA* m_answer = nullptr;  // a string of the pool: a text that is answered stays where it was written
    std::size_t m_depth = 0;
    union {
        RuleValue m_values[kStackCapacity + 1];  // not initialised until used
    };
};

void Evaluation::ApplyObserved(OperatorType op, RuleValue& left, const RuleValue& right) {
    const Literal first = ToLiteral(left);  // the result takes its place
    const Literal second = ToLiteral(right);
    Compute(left, right, op, m_pool);
    m_run.observer->OnOperator(Operator(op), &first, second, ToLiteral(left));
}

void Evaluation::ApplyNot(RuleValue& operand) {
    if (!m_run.observer) return Negate(operand, m_pool);
    const Literal before = ToLiteral(operand);
    Negate(operand, m_pool);
    m_run.observer->OnOperator(Operator(Operator::Not), nullptr, before, ToLiteral(operand));
}

void Evaluation::PushAnswer(const RuleValue& name) {
    const bool known = LookUp(name.text);
    if (known && m_run.upper) m_answer->MakeUpper();
    if (m_run.observer) ReportValue(name.text, known);
    if (known) {
        PushMade([this] { return AnswerValue(); });
    } else {
        PushMade([&name] { return RuleValue::OfText(name.text); });
    }
}

RuleValue Evaluation::AnswerValue() {
    RuleValue value = Classify(m_answer->view());
    if (!value.text.empty()) value.owned = std::exchange(m_answer, nullptr);
    return value;
}

void Evaluation::PushCall(std::string_view call) {
    const RuleValue value = CallFunction(call);
    if (m_run.observer)
        m_run.observer->OnFunction(CCalculator::Function(std::string(call)), ToLiteral(value));
    PushMade([&value] { return value; });
}

bool Evaluation::LookUp(std::string_view reference) {
    if (!m_answer) m_answer = m_pool.Take();
    m_answer->Empty();
    if (!m_nextName) return LookUpText(reference);
    const NameReference& name = **m_nextName++;
    return m_run.data->Lookup(name.name, name.Address(), *m_answer);
}

bool Evaluation::LookUpText(std::string_view reference) {
    if (reference.find(',') == std::string_view::npos) {
        if (!m_name) m_name = m_pool.Take();
        m_name->str().assign(reference);
        return m_run.data->Lookup(*m_name, nullptr, *m_answer);
    }
    const NameReference name(reference);
    return m_run.data->Lookup(name.name, name.Address(), *m_answer);
}

void Evaluation::ReportValue(std::string_view reference, bool known) {
    const RuleValue value = known ? Classify(m_answer->view()) : RuleValue::OfText(reference);
    m_run.observer->OnValue(CStringA(reference), known ? m_answer : nullptr, ToLiteral(value));
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
