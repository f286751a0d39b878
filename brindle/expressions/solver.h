// CSolver: rules over live values.
//
// A rule names values by bare words, each optionally behind the address of a device:
// `0001:02:03,LEVEL > 10 & STATUS = "OK%"`. Solve asks a value source for every such name and evaluates the
// rule with what it answers. A name the source does not know stays as it is, a text. To evaluate one rule
// again and again, prepare it once (prepared_rule.h). Thread: a solver has no state; the source is called
// on the calling thread. What the source throws passes through.
#pragma once

#include <cstdint>
#include <vector>

#include "brindle/expressions/calculator.h"
#include "brindle/framework/array.h"
#include "brindle/framework/export.h"
#include "brindle/framework/list.h"
#include "brindle/framework/string_a.h"

class CAddressOv;

// Where a rule's values come from; implemented by the host.
class BRINDLE_API CSolverData {
  public:
    // --- virtual operations, in slot order ---
    virtual ~CSolverData();
    // True, and `value` set to the value's text, when the value is known. `address` is null for a name without
    // one. The text is classified: "12" becomes an Int, "1.5" a Double, "0001:02:03" an Address.
    virtual bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const = 0;

  protected:
    CSolverData() = default;
    CSolverData(const CSolverData&) = default;
    CSolverData& operator=(const CSolverData&) = default;
};

class BRINDLE_API CSolver {
  public:
    // One supplied value.
    struct Value {
        std::uint32_t address = 0;  // packed: net, unit, port
        CStringA header;
        CStringA value;
        bool useAddress = false;  // answers only names with an equal address, or with none
    };

    CSolver() = default;
    CSolver(const CSolver&) = default;
    CSolver& operator=(const CSolver&) = default;
    virtual ~CSolver();

    // True, and `result` set, on success; false, and `result` unchanged, when the rule cannot be converted or
    // an operator lacks an operand. With `upper` the whole rule, quoted texts included, and all values are
    // read in upper case; the names of the values must then be in upper case already.
    bool Solve(const CStringA& rule, const CSolverData& data, bool upper, CCalculator::Literal& result) const;
    // Likewise; the first value whose header and address fit answers.
    bool Solve(const CStringA& rule, const std::vector<Value>& values, bool upper,
               CCalculator::Literal& result) const;
    // Likewise; the result as a number.
    bool Solve(const CStringA& rule, const std::vector<Value>& values, bool upper, float& result) const;
    // Values in pairs. Returns -1.0 on failure, also when the arrays differ in length, which cannot be told from
    // a rule whose result is -1.
    float Solve(const CStringA& rule, const CStringArray& headers, const CStringArray& values,
                bool upper) const;

    // Append what the rule refers to and the list does not hold yet, in order of first occurrence; headers in
    // upper case. A rule that cannot be converted refers to nothing.
    void GetAddressesInRule(const CStringA& rule, CList<CAddressOv>& addresses) const;
    void GetHeadersInRule(const CStringA& rule, CList<CStringA>& headers) const;

    // True when the rule converts and evaluates with its names standing for themselves. `rpn` is set to its
    // reverse Polish text ("LEVEL 10 >") unless the conversion fails.
    bool Validate(const CStringA& rule, CStringA& rpn) const;
};
