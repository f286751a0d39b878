// WalkedList: a list that may change in every way while it is walked. A walk visits what was in the list when it began
// and is still in it; what is added meanwhile is not visited. Items keep their place in memory until they are removed,
// and after that until the outermost walk ends. Internal; one thread. Tests: walked_list_test.cpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

namespace brindle {

template <class Item>
class WalkedList {
  public:
    // Nothing is in it, and nobody walks it.
    bool IsAtRest() const noexcept { return m_nodes.empty() && m_walks == 0; }
    bool IsEmpty() const noexcept { return m_items == 0; }

    void Add(Item item) {
        m_nodes.push_back({std::move(item), false});
        ++m_items;
    }
    // The first item that `is` answers true for; null: none.
    template <class Is>
    Item* Find(const Is& is) {
        for (Node& node : m_nodes)
            if (!node.removed && is(node.item)) return &node.item;
        return nullptr;
    }
    // Removes that item; false when there is none.
    template <class Is>
    bool Remove(const Is& is) {
        const auto found = std::find_if(m_nodes.begin(), m_nodes.end(),
                                        [&](const Node& node) { return !node.removed && is(node.item); });
        if (found == m_nodes.end()) return false;
        found->removed = true;
        --m_items;
        DropRemoved();
        return true;
    }
    // Calls `visit(item, removed)` with each item; `removed` becomes true when the visit removes it from the list.
    template <class Visit>
    void Walk(const Visit& visit) {
        if (m_nodes.empty()) return;
        const Walking walking(*this);
        const auto last = std::prev(m_nodes.end());  // stays: nothing is dropped meanwhile
        for (auto node = m_nodes.begin();; ++node) {
            if (!node->removed) visit(node->item, std::as_const(node->removed));
            if (node == last) break;
        }
    }

  private:
    struct Node {
        Item item;
        bool removed;
    };
    // Ends with the block, also when a visit throws.
    class Walking {
      public:
        explicit Walking(WalkedList& list) noexcept : m_list(list) { ++m_list.m_walks; }
        Walking(const Walking&) = delete;
        Walking& operator=(const Walking&) = delete;
        ~Walking() {
            --m_list.m_walks;
            m_list.DropRemoved();
        }

      private:
        WalkedList& m_list;
    };
    void DropRemoved() noexcept {
        if (m_walks == 0) m_nodes.remove_if([](const Node& node) { return node.removed; });
    }

    std::list<Node> m_nodes;
    std::size_t m_items = 0;  // that are not removed
    int m_walks = 0;
};

}  // namespace brindle
