// RegisterHostTypes: makes every trigger and action type of this host known to the engine.
#pragma once

namespace brindle::host {

// Call it once at start-up, before the first list is loaded; later calls do nothing.
void RegisterHostTypes();

}  // namespace brindle::host
