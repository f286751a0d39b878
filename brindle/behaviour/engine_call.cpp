// Calls in progress, objects parked until they return, serial numbers. Entry points: EngineCall, DestroyItem.
// Tests: engine_call_test.cpp, and the re-entrancy tests of the lists.
#include "brindle/behaviour/engine_call.h"

#include <utility>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour.h"
#include "brindle/behaviour/repeat_index.h"
#include "brindle/behaviour/trigger.h"

namespace brindle {

constinit std::atomic<std::uint64_t> g_planGeneration{1};

namespace {

constinit std::atomic<std::uint64_t> g_serial{0};

// Plain thread-local values: a thread that leaves the engine leaves nothing behind.
constinit thread_local int t_depth = 0;
constinit thread_local CCommandTreeItem* t_firstParked = nullptr;
constinit thread_local CCommandTreeItem* t_lastParked = nullptr;

}  // namespace

// Friend of the items and their lists. Nothing here takes memory: destructors park, too.
struct ParkingAccess {
    static bool IsParked(const CCommandTreeItem* item) noexcept { return item->m_isParked; }

    static void Park(CCommandTreeItem* item) {
        (t_lastParked ? t_lastParked->m_nextParked : t_firstParked) = item;
        t_lastParked = item;
        Retire(item);
    }

    // Deletes what was parked until now, in that order; what its destructors park belongs to the calls they make.
    static void DeleteParked() {
        CCommandTreeItem* item = std::exchange(t_firstParked, nullptr);
        t_lastParked = nullptr;
        while (item) delete std::exchange(item, item->m_nextParked);
    }

  private:
    // Makes the item and all its parts inert. No walk in progress goes on with the parts of a destroyed behaviour.
    static void Retire(CCommandTreeItem* item) {
        item->m_isParked = true;
        if (const auto* trigger = dynamic_cast<const CCommandTrigger*>(item)) ForgetRepeats(trigger);
        if (const auto* action = dynamic_cast<const CCommandAction*>(item)) ForgetRepeats(action);
        if (const auto* behaviour = dynamic_cast<const CCommandBehaviour*>(item)) {
            RetireParts(behaviour->m_triggers.m_triggers);
            RetireParts(behaviour->m_actions.m_actions);
        }
    }

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
    if (--t_depth == 0 && t_firstParked) ParkingAccess::DeleteParked();
}

bool IsParked(const CCommandTreeItem* item) noexcept {
    return item && ParkingAccess::IsParked(item);
}

void DestroyItem(CCommandTreeItem* item) {
    if (!item) return;
    if (t_depth == 0)
        delete item;
    else
        ParkingAccess::Park(item);
}

std::uint64_t NextSerial() noexcept {
    return g_serial.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace brindle
