// The shared state of a run. Tests: run_test.cpp.
#include "host/run_state.h"

#include "host/configured_item.h"
#include "host/host_files.h"

namespace brindle::host {

SiteObject* RunState::ObjectOf(const CCommandBehaviourList* list) const {
    const auto found = objects.find(list);
    return found == objects.end() ? nullptr : found->second;
}

RunRecord RunState::Begin(const char* kind) const {
    RunRecord record;
    record["t"] = pace.Elapsed();
    record["kind"] = kind;
    return record;
}

std::uint64_t RunState::ElapsedAt(std::uint64_t due) const {
    const std::uint64_t now = SystemMilliseconds();
    return due > now ? pace.Elapsed() + (due - now) : pace.Elapsed();
}

std::string ItemLabel(const CCommandTreeItem* item) {
    const auto* configured = dynamic_cast<const ConfiguredItem*>(item);
    if (!configured) return "?";
    const std::string summary = configured->Summary();
    return TextToUtf8(summary.empty() ? configured->TypeName() : summary);
}

std::string ItemType(const CCommandTreeItem* item) {
    const auto* configured = dynamic_cast<const ConfiguredItem*>(item);
    return configured ? configured->TypeName() : "?";
}

}  // namespace brindle::host
