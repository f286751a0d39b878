// CheckText: what is wrong with an action's text: references that no scope answers, "%" and "#" fields that
// nothing fills in.
#pragma once

#include <brindle/framework/string_a.h>

#include <string>
#include <vector>

class VariableManager;

namespace brindle::host {

class DeviceTable;

struct TextSurroundings {
    const VariableManager* scope = nullptr;  // the innermost one; null: none
    std::string scopes;                      // the names of all scopes searched, for messages
    const DeviceTable* devices = nullptr;    // null: "#" fields are not looked up
};

// One message for each problem; empty when there is none.
std::vector<std::string> CheckText(const CStringA& text, const TextSurroundings& surroundings);

}  // namespace brindle::host
