// The slots of the files service and of the warning sink.
#include "brindle/platform/files.h"

#include <atomic>

#include "brindle/platform/backend.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<Files> g_files;
constinit std::atomic<WarningSink> g_warningSink{nullptr};
}  // namespace

Files& CurrentFiles() noexcept {
    return g_files.GetOr(BackendFiles());
}
Files* SetFiles(Files* service) noexcept {
    return g_files.Set(service);
}

WarningSink SetWarningSink(WarningSink sink) noexcept {
    return g_warningSink.exchange(sink);
}

void Warn(const char* text) {
    if (const WarningSink sink = g_warningSink.load()) sink(text);
}

}  // namespace brindle
