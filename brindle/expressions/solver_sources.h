// The solver's own value sources: a list of values, and a collector of what a rule refers to. Tests: solver_test.cpp.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/solver.h"

namespace brindle {

// Answers with the first value that fits. The values must outlive the source.
class ListedValues final : public CSolverData {
  public:
    explicit ListedValues(const std::vector<CSolver::Value>& values) noexcept : m_values(values) {}
    ~ListedValues() override;
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override;

  private:
    const std::vector<CSolver::Value>& m_values;
};

// Appends the addresses or headers asked for to a list, each once; answers everything with nothing. The list must
// outlive the source.
class AddressCollector final : public CSolverData {
  public:
    explicit AddressCollector(CList<CAddressOv>& addresses);
    ~AddressCollector() override;
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override;

  private:
    bool Holds(const CAddressOv& address) const;

    CList<CAddressOv>& m_addresses;
    mutable std::unordered_multimap<std::uint32_t, POSITION> m_index;  // by packed word
};

class HeaderCollector final : public CSolverData {
  public:
    explicit HeaderCollector(CList<CStringA>& headers);
    ~HeaderCollector() override;
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override;

  private:
    CList<CStringA>& m_headers;
    mutable std::unordered_set<CStringA> m_index;
};

}  // namespace brindle
