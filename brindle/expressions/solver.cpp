// Rules over values. Every form converts the rule into a program of its own and runs it. Entry points: CSolver's
// members. Tests: solver_test.cpp.
#include "brindle/expressions/solver.h"

#include <cmath>
#include <limits>

#include "brindle/expressions/rule_convert.h"
#include "brindle/expressions/rule_run.h"
#include "brindle/expressions/solver_sources.h"

namespace {

constexpr float kNoValue = -1.0F;  // Kept: cannot be told from a result of -1

// The nearest float; infinite beyond the range of float.
float Narrowed(double value) noexcept {
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (std::fabs(value) > kLargest && !std::isnan(value))
        return std::copysign(std::numeric_limits<float>::infinity(), value < 0 ? -1.0F : 1.0F);
    return static_cast<float>(value);
}

bool SolveText(std::string_view rule, const CSolverData& data, bool upper, CCalculator::Literal& result) {
    brindle::RuleProgram program;
    if (!brindle::ConvertRule(rule, program).ok()) return false;
    brindle::RuleRun run;
    run.data = &data;
    run.upper = upper;
    return brindle::RunProgram(program, run, result);
}

// As a solution in upper case does, but for the evaluation, which asks nothing.
void Collect(const CStringA& rule, const CSolverData& collector) {
    CStringA text = rule;
    text.MakeUpper();
    brindle::RuleProgram program;
    if (brindle::ConvertRule(text.view(), program).ok()) brindle::LookUpNames(program, collector);
}

}  // namespace

CSolverData::~CSolverData() = default;
CSolver::~CSolver() = default;

bool CSolver::Solve(const CStringA& rule, const CSolverData& data, bool upper,
                    CCalculator::Literal& result) const {
    if (!upper) return SolveText(rule.view(), data, upper, result);
    CStringA text = rule;
    text.MakeUpper();
    return SolveText(text.view(), data, upper, result);
}

bool CSolver::Solve(const CStringA& rule, const std::vector<Value>& values, bool upper,
                    CCalculator::Literal& result) const {
    return Solve(rule, brindle::ListedValues(values), upper, result);
}

bool CSolver::Solve(const CStringA& rule, const std::vector<Value>& values, bool upper, float& result) const {
    CCalculator::Literal literal;
    if (!Solve(rule, values, upper, literal)) return false;
    result = Narrowed(literal.AsDouble());
    return true;
}

float CSolver::Solve(const CStringA& rule, const CStringArray& headers, const CStringArray& values,
                     bool upper) const {
    if (headers.GetSize() != values.GetSize()) return kNoValue;
    std::vector<Value> pairs(static_cast<std::size_t>(headers.GetSize()));
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i].header = headers[static_cast<std::ptrdiff_t>(i)];
        pairs[i].value = values[static_cast<std::ptrdiff_t>(i)];
    }
    float result = kNoValue;
    return Solve(rule, pairs, upper, result) ? result : kNoValue;
}

void CSolver::GetAddressesInRule(const CStringA& rule, CList<CAddressOv>& addresses) const {
    Collect(rule, brindle::AddressCollector(addresses));
}

void CSolver::GetHeadersInRule(const CStringA& rule, CList<CStringA>& headers) const {
    Collect(rule, brindle::HeaderCollector(headers));
}

bool CSolver::Validate(const CStringA& rule, CStringA& rpn) const {
    brindle::RuleProgram program;
    if (!brindle::ConvertRule(rule.view(), program).ok()) return false;
    rpn = program.AsString();
    CCalculator::Literal result;
    return brindle::RunProgram(program, {}, result);
}
