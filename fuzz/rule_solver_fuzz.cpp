// A rule and the value of every name in it, cut at the first zero byte: solved directly and prepared, in both letter
// cases, with the same result; names are collected in upper case.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/prepared_rule.h"

namespace {

class OneValue final : public CSolverData {
  public:
    explicit OneValue(const std::string& value) : m_value(value) {}
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        if (header.GetLength() % 3 == 0 && !address) return false;
        value = m_value;
        return true;
    }

  private:
    const std::string& m_value;
};

void Compare(const CStringA& rule, const CSolverData& data, bool upper) {
    CCalculator::Literal direct;
    CCalculator::Literal prepared;
    const bool solved = CSolver().Solve(rule, data, upper, direct);
    if (brindle::PreparedRule(rule, upper).Solve(data, prepared) != solved) std::abort();
    if (direct.GetType() != prepared.GetType()) std::abort();
    // A rule that asks for the time may see it change in between.
    if (rule.Find("DATE") < 0 && !upper && direct.AsString() != prepared.AsString()) std::abort();
    if (solved && direct.IsReplaceable()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = input.find('\0');
    const CStringA rule(input.substr(0, cut));
    const std::string value = cut == std::string::npos ? "12" : input.substr(cut + 1);
    const OneValue source(value);
    Compare(rule, source, false);
    Compare(rule, source, true);
    CList<CStringA> headers;
    CList<CAddressOv> addresses;
    CSolver().GetHeadersInRule(rule, headers);
    CSolver().GetAddressesInRule(rule, addresses);
    if (static_cast<std::size_t>(headers.GetCount()) > size + 1 ||
        addresses.GetCount() > headers.GetCount() * 65536)
        std::abort();
    return 0;
}
