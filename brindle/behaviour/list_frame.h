// ListFrame: one call of a behaviour list in progress. When host code destroys the list meanwhile, the frame
// says so, and the outermost frame keeps the repeats (and the lock a timer pass holds) until its call
// returns. Internal; thread: the engine's.
#pragma once

#include <memory>
#include <utility>

#include "brindle/behaviour/behaviour_list.h"

namespace brindle {

class ListFrame {
  public:
    // A null list is allowed: it is gone from the start.
    explicit ListFrame(CCommandBehaviourList* list) noexcept
        : m_list(list), m_outer(list ? std::exchange(list->m_frames, this) : nullptr) {}
    ListFrame(const ListFrame&) = delete;
    ListFrame& operator=(const ListFrame&) = delete;
    ~ListFrame() {
        if (m_list) m_list->m_frames = m_outer;
    }

    // The list, or null once it is destroyed.
    CCommandBehaviourList* List() const noexcept { return m_list; }

    // Called by the list's destructor.
    static void ListDestroyed(ListFrame* innermost, std::shared_ptr<RepeatQueue> repeats) noexcept {
        for (ListFrame* frame = innermost; frame; frame = frame->m_outer) {
            frame->m_list = nullptr;
            if (!frame->m_outer) frame->m_keep = std::move(repeats);
        }
    }

  private:
    CCommandBehaviourList* m_list;
    ListFrame* m_outer;
    std::shared_ptr<RepeatQueue> m_keep;
};

}  // namespace brindle
