// The slot of the directory-watch service.
#include "brindle/platform/directory_watch.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<DirectoryWatches> g_directoryWatches;
}

DirectoryWatches& CurrentDirectoryWatches() noexcept {
    return g_directoryWatches.GetOr(BackendDirectoryWatches());
}
DirectoryWatches* SetDirectoryWatches(DirectoryWatches* service) noexcept {
    return g_directoryWatches.Set(service);
}

}  // namespace brindle
