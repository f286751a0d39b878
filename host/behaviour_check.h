// CheckBehaviours: reads one behaviour list file and finds everything the library would pass over in silence.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/settings/host_type.h>

#include <optional>
#include <string>

#include "host/problem.h"
#include "host/start_check.h"
#include "host/text_check.h"

class VariableManager;

namespace brindle::host {

struct BehaviourSurroundings {
    TextSurroundings texts;
    std::optional<eHostType> host;                  // of the object the list belongs to
    CAddressOv address;                             // likewise
    const CommandSurroundings* commands = nullptr;  // null: macros and programs are not looked for
    bool starts = true;                             // commands are really started
};

// Appends the problems, each at the element it stands in. RegisterHostTypes comes first.
void CheckBehaviours(const std::string& path, const BehaviourSurroundings& surroundings, Problems& problems);
// The same for a variables file; its variables are added to the scope.
void CheckVariables(const std::string& path, VariableManager& scope, Problems& problems);
// Adds the variables that actions of the file set, so that references to them count as answered.
void AddVariablesSet(const std::string& path, VariableManager& scope);

}  // namespace brindle::host
