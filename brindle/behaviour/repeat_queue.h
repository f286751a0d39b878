// RepeatQueue: the pending repeats of one behaviour list, oldest first, and the re-entrant lock that guards
// them.
//
// The due times stand in a column of their own, so that a timer pass scans plain numbers and touches an entry
// only when it is due. The earliest due time is read without the lock. While a pass is in progress entries
// keep their places: a removed one leaves a gap, an added one comes behind the end the pass knows. Internal;
// every operation takes the lock. Tests: repeat_queue_test.cpp, behaviour_list_repeat_test.cpp.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <vector>

#include "brindle/behaviour/repeat_node.h"

class CCommandBehaviourList;

namespace brindle {

constexpr std::uint64_t kNeverDue = std::numeric_limits<std::uint64_t>::max();

// One call of the timer, over all lists or over one: its moment, and a number that grows from call to call. An
// entry remembers the newest pass that ran it or that had begun when it was added: a pass leaves alone what a
// pass nested in it has run, and what was added after it began.
struct TimerPass {
    explicit TimerPass(std::uint64_t systemMilliseconds) noexcept;

    std::uint64_t now;
    std::uint64_t number;
};

class RepeatQueue {
  public:
    RepeatQueue() = default;
    RepeatQueue(const RepeatQueue&) = delete;
    RepeatQueue& operator=(const RepeatQueue&) = delete;
    ~RepeatQueue();

    // The list is gone: nobody may queue anything any more.
    void Close();
    bool IsClosed() const;
    // Appends the entry and adds a reference to its event. `scheduled`: of a time based trigger. `longPeriod` is the
    // period in full where the entry's own cannot say it, being at its top.
    void Add(const CCommandBehaviourList* list, const RepeatEntry& entry, bool scheduled,
             std::int64_t longPeriod = 0);
    // Asks Retest for every live entry of the trigger and removes those that are over.
    void Cancel(const CCommandBehaviourList* list, const CCommandTrigger* trigger);
    void Reset(const CCommandBehaviourList* list);
    // Runs every live entry that is due at the pass's moment, each once.
    void RunDue(const CCommandBehaviourList* list, const TimerPass& timer);

    int Count() const;
    // The earliest due time, or something before it. Without the lock.
    std::uint64_t Earliest() const noexcept { return m_earliest.load(std::memory_order_acquire); }
    // The exact earliest due time of the live entries.
    std::uint64_t NextDue() const;

  private:
    class Pass;
    class Run;

    void RunEntry(const CCommandBehaviourList* list, std::size_t slot, const TimerPass& timer);
    void Remove(RepeatNode& node);
    void Free(RepeatNode& node);
    void Compact();

    mutable std::recursive_mutex m_lock;
    std::vector<std::uint64_t> m_due;  // kNeverDue for gaps and inert entries
    std::vector<RepeatNode*> m_nodes;  // null for gaps
    // Out of the queue, freed when no pass can still look at them. Linked by `byTrigger`, which the index no longer
    // needs: removing takes no memory.
    RepeatNode* m_removed = nullptr;
    bool m_closed = false;
    std::size_t m_gaps = 0;
    int m_passes = 0;           // passes and cancellations in progress
    std::uint64_t m_scans = 0;  // of RunDue: tells one that another came in between
    std::atomic<std::uint64_t> m_earliest{kNeverDue};
};

// The earliest due time of all queues, or something before it: what makes a timer call with nothing due free.
std::uint64_t EarliestOfAll() noexcept;

// Finds it anew during a pass over all lists. Until Finish (and for good, when an exception keeps it from
// being called) every timer call looks at every list.
class EarliestOfAllUpdate {
  public:
    EarliestOfAllUpdate() noexcept;
    EarliestOfAllUpdate(const EarliestOfAllUpdate&) = delete;
    EarliestOfAllUpdate& operator=(const EarliestOfAllUpdate&) = delete;
    void Include(std::uint64_t earliest) noexcept {
        m_earliest = earliest < m_earliest ? earliest : m_earliest;
    }
    void Finish() noexcept;

  private:
    std::uint64_t m_additions;
    std::uint64_t m_earliest = kNeverDue;
};

// A period in whole milliseconds as an entry holds it.
int SaturatedPeriod(std::int64_t milliseconds) noexcept;

// now + milliseconds, without wrapping below zero or above the top.
std::uint64_t DueAfter(std::uint64_t now, std::int64_t milliseconds) noexcept;

}  // namespace brindle
