// EngineCall: what lasts from the outermost call into the behaviour engine until that call returns. Code the
// engine calls may destroy triggers, actions and behaviours that are running at this moment; those are parked
// and deleted when the outermost call returns. Also here: serial numbers and the generation of event plans.
// Internal; the calls in progress are counted for each thread.
#pragma once

#include <atomic>
#include <cstdint>

class CCommandTreeItem;

namespace brindle {

class EngineCall {
  public:
    EngineCall() noexcept;
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;
    ~EngineCall();  // the outermost one deletes what was parked
};

// Deletes the item at once when no engine call is in progress on this thread, else when the outermost one
// returns. Repeats of it are inert from now on in both cases. Null is ignored. Takes no memory.
void DestroyItem(CCommandTreeItem* item);

// Whether the item, or the behaviour it is a part of, was destroyed by DestroyItem and only waits for the outermost
// call to return. False for null; an item that is deleted must not be asked about.
bool IsParked(const CCommandTreeItem* item) noexcept;

// A number never given before in this process.
std::uint64_t NextSerial() noexcept;

// Event plans are built for one generation of the tree; every change of structure or of an enabled flag
// begins a new one.
extern std::atomic<std::uint64_t> g_planGeneration;
inline std::uint64_t PlanGeneration() noexcept {
    return g_planGeneration.load(std::memory_order_relaxed);
}
inline void OutdatePlans() noexcept {
    g_planGeneration.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace brindle
