// ItemList and ItemWalk: the ordered lists of the behaviour tree, and walks over them that stay right
// whatever the code they call does to the list meanwhile.
//
// A walk visits the items that were there when it began and are still there at their turn; items added
// meanwhile are not visited, removed ones are not touched, and a list that is destroyed ends the walk. Each
// membership has a serial number, so that a new object at an old address is not taken for the old one.
// Internal; thread: the engine's. Tests: item_list_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <unordered_set>
#include <utility>
#include <vector>

#include "brindle/behaviour/engine_call.h"
#include "brindle/framework/list.h"

namespace brindle {

template <class T>
class ItemWalk;

template <class T>
class ItemList {
  public:
    // One membership: the item, borrowed, and its serial number, which never comes again.
    struct Item {
        T* object;
        std::uint64_t serial;
    };

    // planned: whether a change of this list outdates event plans.
    explicit ItemList(bool planned) : m_planned(planned) {}
    ItemList(const ItemList&) = delete;
    ItemList& operator=(const ItemList&) = delete;
    ~ItemList() { EndWalks(); }

    int GetCount() const noexcept { return static_cast<int>(m_items.GetCount()); }
    POSITION GetHeadPosition() const noexcept { return m_items.GetHeadPosition(); }
    T* GetNext(POSITION& position) const { return m_items.GetNext(position).object; }
    const Item& GetNextItem(POSITION& position) const { return m_items.GetNext(position); }

    // The first place of the item; null when it is not in the list.
    POSITION Find(const T* object) const {
        for (POSITION position = GetHeadPosition(); position;) {
            const POSITION at = position;
            if (GetNext(position) == object) return at;
        }
        return nullptr;
    }

    // Both change nothing when memory runs out; the object then stays the caller's.
    void AddHead(T* object) { Added(m_items.GetAt(m_items.AddHead({object, NextSerial()})).serial); }
    void AddTail(T* object) { Added(m_items.GetAt(m_items.AddTail({object, NextSerial()})).serial); }

    // Takes the item out and returns it (null when it was a null item); the caller owns it.
    T* RemoveAt(POSITION position) {
        const Item item = m_items.GetAt(position);
        m_items.RemoveAt(position);
        if (m_present) m_present->erase(item.serial);
        Changed();
        return item.object;
    }

    // Moves the item ahead of `before`, to the end when that is null or not in the list. The item is taken
    // out before `before` is looked up, so moving an item before itself moves it to the end.
    void Move(T* object, const T* before) {
        const POSITION from = Find(object);
        if (!from) return;
        const Item item = m_items.GetAt(from);
        m_items.RemoveAt(from);
        const POSITION target = before ? Find(before) : nullptr;
        if (target)
            m_items.InsertBefore(target, item);
        else
            m_items.AddTail(item);
        Changed();
    }

    // Ends the walks in progress as if the list were gone.
    void EndWalks() const noexcept {
        for (ItemWalk<T>* walk = m_walks; walk; walk = walk->m_outer) walk->m_list = nullptr;
        m_walks = nullptr;
    }

    // Whether the membership of that serial still lasts.
    bool Holds(std::uint64_t serial) const {
        if (!m_present && GetCount() <= kScanLimit) {
            for (POSITION position = GetHeadPosition(); position;)
                if (m_items.GetNext(position).serial == serial) return true;
            return false;
        }
        if (!m_present) {
            auto present = std::make_unique<std::unordered_set<std::uint64_t>>();
            for (POSITION position = GetHeadPosition(); position;)
                present->insert(m_items.GetNext(position).serial);
            m_present = std::move(present);
        }
        return m_present->contains(serial);
    }

    std::uint64_t Version() const noexcept { return m_version; }

  private:
    friend class ItemWalk<T>;
    static constexpr int kScanLimit = 32;

    void Added(std::uint64_t serial) noexcept {
        try {
            if (m_present) m_present->insert(serial);
        } catch (const std::bad_alloc&) {
            m_present.reset();  // built anew when it is asked for
        }
        Changed();
    }
    void Changed() noexcept {
        ++m_version;
        if (m_planned) OutdatePlans();
    }

    CList<Item> m_items{10};
    mutable ItemWalk<T>* m_walks = nullptr;  // walks in progress, innermost first
    mutable std::unique_ptr<std::unordered_set<std::uint64_t>> m_present;  // built for large lists when asked
    std::uint64_t m_version = 0;
    bool m_planned;
};

template <class T>
class ItemWalk {
  public:
    using Item = typename ItemList<T>::Item;

    // Begins a walk over what the list holds now.
    explicit ItemWalk(const ItemList<T>& list)
        : m_list(&list), m_outer(list.m_walks), m_version(list.Version()) {
        m_count = static_cast<std::size_t>(list.GetCount());
        if (m_count > m_few.size()) m_many.resize(m_count);
        m_items = m_many.empty() ? m_few.data() : m_many.data();
        std::size_t index = 0;
        for (POSITION position = list.GetHeadPosition(); position;)
            m_items[index++] = list.GetNextItem(position);
        list.m_walks = this;
    }
    ItemWalk(const ItemWalk&) = delete;
    ItemWalk& operator=(const ItemWalk&) = delete;
    ~ItemWalk() {
        if (m_list) m_list->m_walks = m_outer;
    }

    // The next item, or null at the end. Null items are passed over.
    T* Next() {
        while (m_list && m_next < m_count) {
            const Item& item = m_items[m_next++];
            if (item.object && (m_list->Version() == m_version || m_list->Holds(item.serial)))
                return item.object;
        }
        return nullptr;
    }
    // Whether the item Next returned last is still in the list.
    bool HoldsCurrent() const {
        return m_list && (m_list->Version() == m_version || m_list->Holds(m_items[m_next - 1].serial));
    }
    // Whether the list, and with it the object that holds it, was destroyed meanwhile.
    bool ListGone() const noexcept { return !m_list; }

  private:
    friend class ItemList<T>;

    const ItemList<T>* m_list;
    ItemWalk* m_outer;
    std::uint64_t m_version;
    std::size_t m_next = 0;
    std::size_t m_count;
    Item* m_items;
    std::array<Item, 8> m_few;
    std::vector<Item> m_many;
};

}  // namespace brindle
