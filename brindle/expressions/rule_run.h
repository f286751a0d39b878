// Evaluation: a program's steps on a stack of values. Names get their values on the way, in the order of the steps.
// Tests: calculator_test.cpp, solver_test.cpp.
#pragma once

#include <memory>
#include <vector>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/prepared_rule.h"
#include "brindle/expressions/rule_program.h"
#include "brindle/expressions/solver.h"

namespace brindle {

// A name of a rule taken apart: "0001:02:03,LEVEL" is LEVEL at an address.
struct NameReference {
    explicit NameReference(std::string_view text);
    NameReference(const NameReference&) = delete;  // copying an address would cut its parts
    NameReference& operator=(const NameReference&) = delete;
    const CAddressOv* Address() const noexcept { return hasAddress ? &address : nullptr; }

    CStringA name;
    CAddressOv address;
    bool hasAddress = false;
};

using NameReferences = std::vector<std::unique_ptr<const NameReference>>;

// How a program is evaluated.
struct RuleRun {
    const CSolverData* data = nullptr;      // null: names stand for themselves
    bool upper = false;                     // values are read in upper case
    const NameReferences* names = nullptr;  // of the kName steps, in order; null: taken apart each time
    RuleObserver* observer = nullptr;
    bool isComplete = false;  // no operator lacks an operand, which is known already
};

// False, and `result` unchanged, when the program is empty or an operator lacks an operand; the source is then asked
// for every name all the same.
bool RunProgram(const RuleProgram& program, const RuleRun& run, CCalculator::Literal& result);

// Asks the source for every name of the program and does nothing else.
void LookUpNames(const RuleProgram& program, const CSolverData& data);

}  // namespace brindle
