// RepeatNode: a repeat entry as the queue keeps it. Internal.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "brindle/behaviour/repeat_entry.h"

namespace brindle {

class RepeatQueue;

struct alignas(64) RepeatNode {
    struct Link {
        RepeatNode* previous = nullptr;
        RepeatNode* next = nullptr;
    };

    // What a timer pass touches: one cache line.
    RepeatEntry entry;
    std::uint64_t lastPass = 0;  // the newest pass that ran it, or had begun when it was added
    int uses = 0;                // runs in progress
    // The trigger or the action was destroyed: both pointers are stale and the entry never runs again. Set once,
    // possibly by another thread than the one that visits the queue.
    std::atomic<bool> inert{false};
    bool scheduled;  // the trigger is time based: its period is asked anew at every run
    bool removed = false;

    RepeatQueue* queue;
    std::size_t slot = 0;         // its place in the queue's columns
    std::int64_t longPeriod = 0;  // milliseconds; counts where the entry's 32 bits are at their top
    Link byTrigger;               // neighbours in the index, guarded by the index
    Link byAction;
};

static_assert(offsetof(RepeatNode, queue) == 64);

}  // namespace brindle
