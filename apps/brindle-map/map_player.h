// A window on a site that runs: from the first one until the window is closed, whichever sites are opened in it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "apps/brindle-map/loaded_map.h"

namespace brindle::map {

struct PlayOptions {
    double scale = 1;
    std::optional<std::uint64_t> limit;  // milliseconds; the window closes then
};

// Shows the map, whose events are open and whose view is made, and runs the site until the window is closed or the time
// is over. There is an application object. Thread: the user interface's.
void PlayInWindow(std::unique_ptr<LoadedMap> map, const PlayOptions& options);

}  // namespace brindle::map
