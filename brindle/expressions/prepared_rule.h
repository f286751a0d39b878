// PreparedRule: a rule converted once and evaluated many times, with exactly the results of CSolver::Solve.
//
// It also tells what CSolver keeps to itself: where and why a rule is wrong, what names it holds, and step by
// step how a result came about. Thread: const operations may run on several threads at once; each calls its
// source and observer on its own thread.
#pragma once

#include <cstddef>
#include <memory>

#include "brindle/expressions/calculator.h"
#include "brindle/expressions/solver.h"
#include "brindle/framework/export.h"
#include "brindle/framework/result.h"
#include "brindle/framework/string_a.h"

namespace brindle {

// Told how an evaluation goes on. All arguments are valid during the call only.
class BRINDLE_API RuleObserver {
  public:
    virtual ~RuleObserver();
    // A name met its value. `reference` is the name as the rule writes it; `text` is the source's answer, null
    // when it had none and the name stands for itself.
    virtual void OnValue(const CStringA& reference, const CStringA* text,
                         const CCalculator::Literal& value) = 0;
    // An operator was applied; `left` is null for "!".
    virtual void OnOperator(const CCalculator::Operator& applied, const CCalculator::Literal* left,
                            const CCalculator::Literal& right, const CCalculator::Literal& result) = 0;
    // A function was called.
    virtual void OnFunction(const CCalculator::Function& function, const CCalculator::Literal& result) = 0;
};

class BRINDLE_API PreparedRule {
  public:
    PreparedRule();  // the empty rule, which does not convert
    // With `upper` as CSolver::Solve.
    explicit PreparedRule(const CStringA& rule, bool upper = false);
    PreparedRule(PreparedRule&& other) noexcept;
    PreparedRule& operator=(PreparedRule&& other) noexcept;
    ~PreparedRule();

    // Whether the rule converts; otherwise why not, with the column (in bytes, from 1) of the fault.
    const Result& Conversion() const noexcept;
    // Whether it also evaluates, which does not depend on the values: every operator has its operands.
    const Result& Structure() const noexcept;

    // As CSolver::Solve. False, and `result` unchanged, when Structure() is not ok; the source is then asked
    // all the same if the rule converts.
    bool Solve(const CSolverData& data, CCalculator::Literal& result, RuleObserver* observer = nullptr) const;

    // The tokens in reverse Polish order, with single blanks between them; what was converted before the
    // fault when the rule does not convert.
    CStringA ReversePolish() const;

    // The names, in order of the reverse Polish text, one for each occurrence; none when the rule does not
    // convert. The name of `0001:02:03,LEVEL` is LEVEL, its address is null for a name without one.
    std::size_t NameCount() const noexcept;
    const CStringA& Name(std::size_t index) const noexcept;
    const CAddressOv* NameAddress(std::size_t index) const noexcept;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;  // never null but in what was moved from
};

}  // namespace brindle
