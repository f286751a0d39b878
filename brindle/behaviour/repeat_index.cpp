// Two hash maps from object to a chain of its repeats. See repeat_index.h.
#include "brindle/behaviour/repeat_index.h"

#include <mutex>
#include <unordered_map>

#include "brindle/framework/never_destroyed.h"

namespace brindle {
namespace {

struct Chain {
    RepeatNode* first = nullptr;
    RepeatNode* last = nullptr;
};

using ChainMap = std::unordered_map<const void*, Chain>;
using LinkMember = RepeatNode::Link RepeatNode::*;

struct Index {
    std::mutex lock;
    ChainMap triggers;
    ChainMap actions;
};

constinit std::atomic<std::size_t> g_size{0};  // live repeats in the index

// Never destroyed: objects may still end while the process exits. Noexcept, as the destructors of triggers are.
Index& TheIndex() noexcept {
    static NeverDestroyed<Index> index;
    return *index;
}

void Append(ChainMap& map, const void* key, RepeatNode& node, LinkMember link) {
    Chain& chain = map[key];
    (node.*link).previous = chain.last;
    (chain.last ? (chain.last->*link).next : chain.first) = &node;
    chain.last = &node;
}

void Unlink(ChainMap& map, const void* key, RepeatNode& node, LinkMember link) {
    const auto found = map.find(key);
    if (found == map.end()) return;
    Chain& chain = found->second;
    RepeatNode::Link& own = node.*link;
    (own.previous ? (own.previous->*link).next : chain.first) = own.next;
    (own.next ? (own.next->*link).previous : chain.last) = own.previous;
    own = {};
    if (!chain.first) map.erase(found);
}

// Both callers hold the lock.
void TakeOut(Index& index, RepeatNode& node) {
    Unlink(index.triggers, node.entry.trigger, node, &RepeatNode::byTrigger);
    Unlink(index.actions, node.entry.action, node, &RepeatNode::byAction);
    g_size.fetch_sub(1, std::memory_order_relaxed);
}

void Forget(ChainMap Index::*which, const void* object) noexcept {
    if (g_size.load(std::memory_order_relaxed) == 0) return;
    Index& index = TheIndex();
    const std::lock_guard guard(index.lock);
    ChainMap& map = index.*which;
    for (auto found = map.find(object); found != map.end(); found = map.find(object)) {
        RepeatNode& node = *found->second.first;
        node.inert.store(true, std::memory_order_release);
        TakeOut(index, node);
    }
}

}  // namespace

void EnterRepeat(RepeatNode& node) {
    Index& index = TheIndex();
    const std::lock_guard guard(index.lock);
    Append(index.triggers, node.entry.trigger, node, &RepeatNode::byTrigger);
    try {
        Append(index.actions, node.entry.action, node, &RepeatNode::byAction);
    } catch (...) {
        Unlink(index.triggers, node.entry.trigger, node, &RepeatNode::byTrigger);
        throw;
    }
    g_size.fetch_add(1, std::memory_order_relaxed);
}

void LeaveRepeat(RepeatNode& node) {
    Index& index = TheIndex();
    const std::lock_guard guard(index.lock);
    if (!node.inert.load(std::memory_order_relaxed)) TakeOut(index, node);
}

void ForgetRepeats(const CCommandTrigger* trigger) noexcept {
    Forget(&Index::triggers, trigger);
}
void ForgetRepeats(const CCommandAction* action) noexcept {
    Forget(&Index::actions, action);
}

std::vector<RepeatNode*> RepeatsOf(const CCommandTrigger* trigger, const RepeatQueue* queue) {
    std::vector<RepeatNode*> nodes;
    Index& index = TheIndex();
    const std::lock_guard guard(index.lock);
    const auto found = index.triggers.find(trigger);
    if (found == index.triggers.end()) return nodes;
    for (RepeatNode* node = found->second.first; node; node = node->byTrigger.next)
        if (node->queue == queue) nodes.push_back(node);
    return nodes;
}

}  // namespace brindle
