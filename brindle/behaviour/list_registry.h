// The list of all behaviour lists: links inside the lists themselves, so that nothing is allocated,
// constructed before main or destroyed at exit. Walks stay right while lists come and go. Internal; thread:
// the engine's.
#pragma once

#include <cstdint>

#include "brindle/behaviour/behaviour_list.h"

struct CCommandBehaviourList::Registry {
    class Walk;

    void Append(CCommandBehaviourList& list) noexcept {
        list.m_previous = last;
        (last ? last->m_next : first) = &list;
        last = &list;
    }
    inline void TakeOut(CCommandBehaviourList& list) noexcept;

    CCommandBehaviourList* first = nullptr;
    CCommandBehaviourList* last = nullptr;
    Walk* walks = nullptr;  // in progress, innermost first
};

// Visits the lists present when it began that still exist at their turn.
class CCommandBehaviourList::Registry::Walk {
  public:
    explicit Walk(Registry& registry) noexcept
        : m_registry(registry),
          m_next(registry.first),
          m_newest(registry.last ? registry.last->m_serial : 0),
          m_outer(registry.walks) {
        registry.walks = this;
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() { m_registry.walks = m_outer; }

    CCommandBehaviourList* Next() noexcept {
        CCommandBehaviourList* list = m_next;
        if (!list || list->m_serial > m_newest) return nullptr;
        m_next = list->m_next;
        return list;
    }

  private:
    friend struct Registry;

    Registry& m_registry;
    CCommandBehaviourList* m_next;
    std::uint64_t m_newest;
    Walk* m_outer;
};

void CCommandBehaviourList::Registry::TakeOut(CCommandBehaviourList& list) noexcept {
    for (Walk* walk = walks; walk; walk = walk->m_outer)
        if (walk->m_next == &list) walk->m_next = list.m_next;
    (list.m_previous ? list.m_previous->m_next : first) = list.m_next;
    (list.m_next ? list.m_next->m_previous : last) = list.m_previous;
}
