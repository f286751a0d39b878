// The pending repeats of a behaviour list. See repeat_queue.h.
#include "brindle/behaviour/repeat_queue.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "brindle/address/event.h"
#include "brindle/behaviour/action.h"
#include "brindle/behaviour/observer_slot.h"
#include "brindle/behaviour/repeat_index.h"
#include "brindle/behaviour/trigger.h"
#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"

namespace brindle {
namespace {

constinit std::atomic<std::uint64_t> g_earliestOfAll{kNeverDue};
constinit std::atomic<std::uint64_t> g_additions{0};
constinit std::atomic<std::uint64_t> g_passes{0};

void Lower(std::atomic<std::uint64_t>& earliest, std::uint64_t due) noexcept {
    std::uint64_t known = earliest.load();
    while (due < known && !earliest.compare_exchange_weak(known, due)) {
    }
}

// In this order, which EarliestOfAllUpdate::Finish relies on.
void NoteAdded(std::uint64_t due) noexcept {
    g_additions.fetch_add(1);
    Lower(g_earliestOfAll, due);
}

// The first slot from `slot` on that is due, or `end`; the due times passed over go into `earliest`. This scan is
// most of a timer pass, so it takes four at a time.
std::size_t NextDueSlot(const std::vector<std::uint64_t>& column, std::size_t slot, std::size_t end,
                        std::uint64_t now, std::uint64_t& earliest) noexcept {
    const std::uint64_t* due = column.data();
    std::uint64_t least = earliest;
    for (; slot + 4 <= end; slot += 4) {
        const std::uint64_t four =
            std::min(std::min(due[slot], due[slot + 1]), std::min(due[slot + 2], due[slot + 3]));
        if (four <= now) break;
        least = std::min(least, four);
    }
    for (; slot < end && due[slot] > now; ++slot) least = std::min(least, due[slot]);
    earliest = least;
    return slot;
}

}  // namespace

std::uint64_t EarliestOfAll() noexcept {
    return g_earliestOfAll.load();
}

// Counts as an addition itself: a pass around this one must not trust what it saw before.
EarliestOfAllUpdate::EarliestOfAllUpdate() noexcept : m_additions(g_additions.fetch_add(1) + 1) {
    g_earliestOfAll.store(0);
}

void EarliestOfAllUpdate::Finish() noexcept {
    g_earliestOfAll.store(m_earliest);
    // An entry added meanwhile may be missing from the figure: then the next timer call looks at every list.
    if (g_additions.load() != m_additions) g_earliestOfAll.store(0);
}

int SaturatedPeriod(std::int64_t milliseconds) noexcept {
    constexpr std::int64_t low = std::numeric_limits<int>::min();
    constexpr std::int64_t high = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(milliseconds, low, high));
}

std::uint64_t DueAfter(std::uint64_t now, std::int64_t milliseconds) noexcept {
    if (milliseconds < 0) {
        const std::uint64_t back = std::uint64_t{0} - static_cast<std::uint64_t>(milliseconds);
        return back < now ? now - back : 0;
    }
    // One below kNeverDue: an entry however late stays an entry.
    const std::uint64_t room = kNeverDue - 1 - std::min(now, kNeverDue - 1);
    return now + std::min(room, static_cast<std::uint64_t>(milliseconds));
}

TimerPass::TimerPass(std::uint64_t systemMilliseconds) noexcept
    : now(systemMilliseconds), number(g_passes.fetch_add(1) + 1) {}

// Entries keep their places while one of these lives.
class RepeatQueue::Pass {
  public:
    explicit Pass(RepeatQueue& queue) noexcept : m_queue(queue) { ++m_queue.m_passes; }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    ~Pass() {
        if (--m_queue.m_passes == 0) m_queue.Compact();
    }

  private:
    RepeatQueue& m_queue;
};

// One run of an entry: its event stays until the run is over, also when the action cancels its own repeat.
class RepeatQueue::Run {
  public:
    Run(RepeatQueue& queue, RepeatNode& node) noexcept : m_queue(queue), m_node(node) { ++m_node.uses; }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() {
        if (--m_node.uses == 0 && m_node.removed) m_queue.Free(m_node);
    }

  private:
    RepeatQueue& m_queue;
    RepeatNode& m_node;
};

RepeatQueue::~RepeatQueue() {
    Reset(nullptr);
}

void RepeatQueue::Close() {
    const std::lock_guard guard(m_lock);
    m_closed = true;
}

bool RepeatQueue::IsClosed() const {
    const std::lock_guard guard(m_lock);
    return m_closed;
}

void RepeatQueue::Add(const CCommandBehaviourList* list, const RepeatEntry& entry, bool scheduled,
                      std::int64_t longPeriod) {
    const std::lock_guard guard(m_lock);
    auto node = std::make_unique<RepeatNode>();
    node->entry = entry;
    node->queue = this;
    node->scheduled = scheduled;
    node->longPeriod = longPeriod;
    node->lastPass = g_passes.load();
    node->slot = m_nodes.size();
    m_due.push_back(entry.due);
    try {
        m_nodes.push_back(node.get());
        EnterRepeat(*node);
    } catch (...) {
        m_nodes.resize(node->slot);
        m_due.resize(node->slot);
        throw;
    }
    if (entry.event) entry.event->AddRef();
    RepeatNode& added = *node.release();
    Lower(m_earliest, entry.due);
    NoteAdded(entry.due);
    if (IBehaviourObserver* observer = CurrentObserver())
        observer->OnRepeatAdded(list, added.entry, scheduled);
}

void RepeatQueue::Cancel(const CCommandBehaviourList* list, const CCommandTrigger* trigger) {
    const std::lock_guard guard(m_lock);
    const Pass pass(*this);
    for (RepeatNode* node : RepeatsOf(trigger, this)) {
        if (node->removed || node->inert.load(std::memory_order_acquire)) continue;
        const Run run(*this, *node);
        const bool goesOn = trigger->Retest(node->entry.event);
        if (node->removed || node->inert.load(std::memory_order_acquire)) continue;
        IBehaviourObserver* observer = CurrentObserver();
        if (goesOn) {
            if (observer) observer->OnRepeatKept(list, node->entry);
            continue;
        }
        if (observer) observer->OnRepeatCancelled(list, node->entry);
        Remove(*node);
    }
}

void RepeatQueue::Reset(const CCommandBehaviourList* list) {
    const std::lock_guard guard(m_lock);
    const Pass pass(*this);
    const std::size_t end = m_nodes.size();
    for (std::size_t slot = 0; slot < end; ++slot) {
        RepeatNode* node = m_nodes[slot];
        if (!node) continue;
        IBehaviourObserver* observer = list ? CurrentObserver() : nullptr;
        if (observer && !node->inert.load(std::memory_order_acquire))
            observer->OnRepeatCancelled(list, node->entry);
        Remove(*node);
    }
}

void RepeatQueue::RunDue(const CCommandBehaviourList* list, const TimerPass& timer) {
    const std::lock_guard guard(m_lock);
    const Pass pass(*this);
    const std::uint64_t scan = ++m_scans;
    const std::size_t end = m_due.size();
    m_earliest.store(
        0, std::memory_order_release);  // if an exception passes through, the next timer call looks again
    std::uint64_t earliest = kNeverDue;
    for (std::size_t slot = NextDueSlot(m_due, 0, end, timer.now, earliest); slot < end;
         slot = NextDueSlot(m_due, slot + 1, end, timer.now, earliest)) {
        RunEntry(list, slot, timer);
        earliest = std::min(earliest, m_due[slot]);
    }
    // Entries added meanwhile, and those that a nested pass set back behind this one's place.
    if (m_scans != scan || m_due.size() != end)
        for (const std::uint64_t due : m_due) earliest = std::min(earliest, due);
    m_earliest.store(earliest, std::memory_order_release);
    Lower(g_earliestOfAll, earliest);
}

void RepeatQueue::RunEntry(const CCommandBehaviourList* list, std::size_t slot, const TimerPass& timer) {
    RepeatNode* node = m_nodes[slot];
    if (!node || node->inert.load(std::memory_order_acquire)) {
        m_due[slot] = kNeverDue;
        return;
    }
    if (node->lastPass >= timer.number) return;
    node->lastPass = timer.number;
    const Run run(*this, *node);
    try {
        std::int64_t period = node->entry.period;
        if (period == std::numeric_limits<int>::max()) period = std::max(period, node->longPeriod);
        if (node->scheduled) {
            period = std::int64_t{node->entry.trigger->GetNextTime()} * 1000;
            node->entry.period = SaturatedPeriod(period);
            if (node->removed || node->inert.load(std::memory_order_acquire)) return;
        }
        node->entry.due = DueAfter(timer.now, period);
        m_due[slot] = node->entry.due;
        const VariableHookScope scope(node->entry.variables);
        if (IBehaviourObserver* observer = CurrentObserver()) observer->OnRepeatRun(list, node->entry);
        const_cast<CCommandAction*>(node->entry.action)->Fire(node->entry.event);
    } catch (const char*) {
        // Kept: a plain text string thrown by one entry is swallowed and the pass goes on with the next.
    }
}

int RepeatQueue::Count() const {
    const std::lock_guard guard(m_lock);
    return static_cast<int>(m_nodes.size() - m_gaps);
}

std::uint64_t RepeatQueue::NextDue() const {
    const std::lock_guard guard(m_lock);
    std::uint64_t next = kNeverDue;
    for (std::size_t slot = 0; slot < m_due.size(); ++slot)
        if (m_due[slot] < next && !m_nodes[slot]->inert.load(std::memory_order_acquire)) next = m_due[slot];
    return next;
}

// The entry leaves the queue now; its event is released now too, unless it is running.
void RepeatQueue::Remove(RepeatNode& node) {
    LeaveRepeat(node);
    m_nodes[node.slot] = nullptr;
    m_due[node.slot] = kNeverDue;
    ++m_gaps;
    node.removed = true;
    if (node.uses == 0) Free(node);
}

void RepeatQueue::Free(RepeatNode& node) {
    node.byTrigger.next = std::exchange(m_removed, &node);
    if (const CCommandEvent* event = node.entry.event) event->Release();
}

void RepeatQueue::Compact() {
    for (RepeatNode* node = std::exchange(m_removed, nullptr); node;)
        delete std::exchange(node, node->byTrigger.next);
    if (m_gaps * 2 <= m_nodes.size()) return;
    std::size_t kept = 0;
    for (std::size_t slot = 0; slot < m_nodes.size(); ++slot) {
        if (!m_nodes[slot]) continue;
        m_nodes[kept] = m_nodes[slot];
        m_due[kept] = m_due[slot];
        m_nodes[kept]->slot = kept;
        ++kept;
    }
    m_nodes.resize(kept);
    m_due.resize(kept);
    m_gaps = 0;
}

}  // namespace brindle
