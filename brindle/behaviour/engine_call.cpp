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
    std::unordered_set<const void*> addresses;  // of the items and of all triggers and actions inside them
};

// Plain thread-local values: a thread that leaves the engine leaves nothing behind.
constinit thread_local int t_depth = 0;
constinit thread_local Parking* t_parking = nullptr;

template <class Visit>
void ForItemAndParts(CCommandTreeItem* item, const ItemList<CCommandTrigger>* triggers,
                     const ItemList<CCommandAction>* actions, const Visit& visit) {
    visit(item);
    if (!triggers) return;
    for (POSITION position = triggers->GetHeadPosition(); position;) visit(triggers->GetNext(position));
    for (POSITION position = actions->GetHeadPosition(); position;) visit(actions->GetNext(position));
}

// What addresses are entered under: the same base for every way to name an object.
const void* AddressOf(const CCommandTreeItem* item) {
    return item;
}

void MakeInert(CCommandTreeItem* item) {
    if (const auto* trigger = dynamic_cast<const CCommandTrigger*>(item)) ForgetRepeats(trigger);
    if (const auto* action = dynamic_cast<const CCommandAction*>(item)) ForgetRepeats(action);
}

}  // namespace

// Friend of the behaviour: reaches its lists.
struct ParkingAccess {
    template <class Visit>
    static void ForEach(CCommandTreeItem* item, const Visit& visit) {
        const auto* behaviour = dynamic_cast<const CCommandBehaviour*>(item);
        ForItemAndParts(item, behaviour ? &behaviour->m_triggers.m_triggers : nullptr,
                        behaviour ? &behaviour->m_actions.m_actions : nullptr, [&](CCommandTreeItem* part) {
                            if (part) visit(part);
                        });
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
    return t_parking && t_parking->addresses.contains(AddressOf(item));
}

void DestroyItem(CCommandTreeItem* item) {
    if (!item) return;
    if (t_depth == 0) {
        delete item;
        return;
    }
    if (!t_parking) t_parking = new Parking;
    t_parking->items.push_back(item);
    ParkingAccess::ForEach(item, [](CCommandTreeItem* part) {
        MakeInert(part);
        t_parking->addresses.insert(AddressOf(part));
    });
}

std::uint64_t NextSerial() noexcept {
    return g_serial.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace brindle
