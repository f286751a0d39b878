// The command line of brindle-map.
#pragma once

namespace brindle::tool {
class Command;
}

namespace brindle::map {

void DeclareMap(tool::Command& tool);

}  // namespace brindle::map
