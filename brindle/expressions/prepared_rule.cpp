// Prepared rules: the program and its names, kept. Entry points: PreparedRule's members. Tests:
// prepared_rule_test.cpp.
#include "brindle/expressions/prepared_rule.h"

#include "brindle/expressions/rule_convert.h"
#include "brindle/expressions/rule_run.h"

namespace brindle {

struct PreparedRule::Impl {
    Impl(const CStringA& rule, bool upperCase);
    Result ToResult(const char* why, std::size_t position) const;

    CStringA text;  // the program views it
    bool upper;
    RuleProgram program;
    NameReferences names;
    Result conversion;
    Result structure;
};

PreparedRule::Impl::Impl(const CStringA& rule, bool upperCase) : text(rule), upper(upperCase) {
    if (upper) text.MakeUpper();
    const RuleFault fault = ConvertRule(text.view(), program);
    if (!fault.ok()) {
        conversion = structure = ToResult(fault.why, fault.position);
        return;
    }
    for (const RuleStep& step : program)
        if (step.kind == RuleStep::kName) names.push_back(std::make_unique<NameReference>(step.value.text));
    const std::size_t missing = FindMissingOperand(program);
    if (missing < program.Size()) structure = ToResult("an operand is missing", program[missing].position);
}

Result PreparedRule::Impl::ToResult(const char* why, std::size_t position) const {
    return Result::Error(ErrorCode::kNotWellFormed, why, 1, static_cast<std::uint32_t>(position + 1));
}

RuleObserver::~RuleObserver() = default;

PreparedRule::PreparedRule() : PreparedRule(CStringA()) {}
PreparedRule::PreparedRule(const CStringA& rule, bool upper) : m_impl(std::make_unique<Impl>(rule, upper)) {}
PreparedRule::PreparedRule(PreparedRule&& other) noexcept = default;
PreparedRule& PreparedRule::operator=(PreparedRule&& other) noexcept = default;
PreparedRule::~PreparedRule() = default;

const Result& PreparedRule::Conversion() const noexcept {
    return m_impl->conversion;
}

const Result& PreparedRule::Structure() const noexcept {
    return m_impl->structure;
}

bool PreparedRule::Solve(const CSolverData& data, CCalculator::Literal& result,
                         RuleObserver* observer) const {
    if (!m_impl->conversion.ok()) return false;
    RuleRun run;
    run.data = &data;
    run.upper = m_impl->upper;
    run.names = &m_impl->names;
    run.observer = observer;
    run.isComplete = m_impl->structure.ok();
    return RunProgram(m_impl->program, run, result);
}

CStringA PreparedRule::ReversePolish() const {
    return m_impl->program.AsString();
}

std::size_t PreparedRule::NameCount() const noexcept {
    return m_impl->names.size();
}

const CStringA& PreparedRule::Name(std::size_t index) const noexcept {
    return m_impl->names[index]->name;
}

const CAddressOv* PreparedRule::NameAddress(std::size_t index) const noexcept {
    return m_impl->names[index]->Address();
}

}  // namespace brindle
