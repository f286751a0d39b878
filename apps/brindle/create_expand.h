// brindle create expand, and the expansion that other subcommands need too.
#pragma once

#include <brindle/syscreate/sys_create.h>

#include <string>
#include <vector>

#include "apps/brindle/create_files.h"

namespace brindle::tool {

class Command;

void DeclareExpand(Command& create);

// Expands the template in a file and returns the list; the results are the result info of `create`. Throws Failure
// with the place in the template when there is no expansion. Shows progress when it takes long.
CStringA ExpandOrFail(SysCreate& create, const std::string& file, const std::vector<FieldValue>& pairs);

}  // namespace brindle::tool
