// Calls in progress, objects parked until they return, serial numbers. Entry points: EngineCall, DestroyItem.
// Tests: engine_call_test.cpp, and the re-entrancy tests of the lists.
#include "brindle/behaviour/engine_call.h"

#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour.h"
#include "brindle/behaviour/repeat_index.h"
#include "brindle/behaviour/trigger.h"

namespace brindle {

constinit std::atomic<std::uint64_t> g_planGeneration{1};

namespace {

constinit std::atomic<std::uint64_t> g_serial{0};

struct Parking {
    std::vector<CCommandTreeItem*> items;
    std::unordered_set<const CCommandTreeItem*>
        addresses;  // of the items and of all triggers and actions inside them
};

// Plain thread-local values: a thread that leaves the engine leaves nothing behind.
constinit thread_local int t_depth = 0;
constinit thread_local Parking* t_parking = nullptr;

}  // namespace

// Friend of the behaviour: reaches its lists.
struct ParkingAccess {
    // Makes the item and all its parts inert. No walk in progress goes on with the parts of a destroyed behaviour.
    static void Retire(CCommandTreeItem* item) {
        t_parking->addresses.insert(item);
        if (const auto* trigger = dynamic_cast<const CCommandTrigger*>(item)) ForgetRepeats(trigger);
        if (const auto* action = dynamic_cast<const CCommandAction*>(item)) ForgetRepeats(action);
        if (const auto* behaviour = dynamic_cast<const CCommandBehaviour*>(item)) {
            RetireParts(behaviour->m_triggers.m_triggers);
            RetireParts(behaviour->m_actions.m_actions);
        }
    }

  private:
    template <class T>
    static void RetireParts(const ItemList<T>& parts) {
        parts.EndWalks();
        for (POSITION position = parts.GetHeadPosition(); position;)
            if (T* part = parts.GetNext(position)) Retire(part);
    }
};

EngineCall::EngineCall() noexcept {
    ++t_depth;
}

EngineCall::~EngineCall() {
    if (--t_depth > 0 || !t_parking) return;
    const std::unique_ptr<Parking> parking(std::exchange(t_parking, nullptr));
    for (CCommandTreeItem* item : parking->items) delete item;
}

bool IsParked(const CCommandTreeItem* item) noexcept {
    return t_parking && t_parking->addresses.contains(item);
}

void DestroyItem(CCommandTreeItem* item) {
    if (!item) return;
    if (t_depth == 0) {
        delete item;
        return;
    }
    if (!t_parking) t_parking = new Parking;
    t_parking->items.push_back(item);
    ParkingAccess::Retire(item);
}

std::uint64_t NextSerial() noexcept {
    return g_serial.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace brindle
