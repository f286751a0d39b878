// Where the registered observer is kept. Internal; reading is one load.
#pragma once

#include <atomic>

#include "brindle/behaviour/behaviour_observer.h"

namespace brindle {

extern std::atomic<IBehaviourObserver*> g_behaviourObserver;
inline IBehaviourObserver* CurrentObserver() noexcept {
    return g_behaviourObserver.load(std::memory_order_acquire);
}

}  // namespace brindle
