// RuleValues: the values of a rule, given on the command line. Each look-up is remembered for the trace.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/expressions/solver.h>

#include <deque>
#include <string>

namespace brindle::tool {

class RuleValues final : public CSolverData {
  public:
    // "[ADDRESS,]NAME=VALUE"; throws Failure for what it cannot read. The text before the first "," is an address
    // only if it parses.
    void Add(const std::string& text);

    // A value given with an address answers only names with an equal one, and goes before one without; of two
    // alike the later one answers.
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override;
    // What answered last, as it was given; empty when nothing did.
    const std::string& LastSource() const noexcept { return m_lastSource; }

  private:
    struct Given {
        CAddressOv address;
        bool hasAddress = false;
        std::string name;
        std::string value;
        std::string source;
    };
    const Given* Find(const CStringA& header, const CAddressOv* address) const;

    std::deque<Given> m_values;
    mutable std::string m_lastSource;
};

}  // namespace brindle::tool
