// CheckRuleNames, ProblemOfName: names of a rule that no device answers.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/expressions/prepared_rule.h>

#include <string>
#include <vector>

namespace brindle::host {

class DeviceTable;

// Why nobody answers the name of that index; empty when somebody does. `own` is the address of the object whose rule it
// is.
std::string ProblemOfName(const PreparedRule& rule, std::size_t index, const CAddressOv& own,
                          const DeviceTable& devices);
// One message for each name nobody answers.
std::vector<std::string> CheckRuleNames(const PreparedRule& rule, const CAddressOv& own,
                                        const DeviceTable& devices);

}  // namespace brindle::host
