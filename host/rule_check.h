// CheckRuleNames: names of a rule that no device answers.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/expressions/prepared_rule.h>

#include <string>
#include <vector>

namespace brindle::host {

class DeviceTable;

// One message for each name nobody answers; `own` is the address of the object whose rule it is.
std::vector<std::string> CheckRuleNames(const PreparedRule& rule, const CAddressOv& own,
                                        const DeviceTable& devices);

}  // namespace brindle::host
