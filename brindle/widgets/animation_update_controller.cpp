// The animation controller. Tests: animation_update_controller_test.cpp.
#include "brindle/widgets/animation_update_controller.h"

#include <algorithm>
#include <utility>

#include "brindle/platform/clock.h"
#include "brindle/widgets/animation_update_target.h"
#include "brindle/widgets/walked_list.h"

namespace brindle {

struct AnimationEntry {
    std::uint64_t due;
    CAnimationUpdateTarget* target;
};
struct AnimationEntries {
    WalkedList<AnimationEntry> list;

    AnimationEntry* Find(const CAnimationUpdateTarget* target) {
        return list.Find([&](const AnimationEntry& entry) { return entry.target == target; });
    }
};

}  // namespace brindle

using brindle::AnimationEntries;
using brindle::AnimationEntry;

CAnimationUpdateTarget::~CAnimationUpdateTarget() {
    CAnimationUpdateController::GetInstance().Unregister(this);
}

CAnimationUpdateController& CAnimationUpdateController::GetInstance() noexcept {
    constinit static CAnimationUpdateController instance;
    return instance;
}

void CAnimationUpdateController::Register(CAnimationUpdateTarget* target) {
    if (!target) return;
    const std::uint64_t now = brindle::SystemMilliseconds();
    if (!m_entries) m_entries = new AnimationEntries;
    if (AnimationEntry* entry = m_entries->Find(target))
        entry->due = now;
    else
        m_entries->list.Add({now, target});
    m_earliest = now;
}

void CAnimationUpdateController::Unregister(CAnimationUpdateTarget* target) noexcept {
    if (!m_entries) return;
    m_entries->list.Remove([&](const AnimationEntry& entry) { return entry.target == target; });
    DropEntriesAtRest();
}

bool CAnimationUpdateController::IsRegistered(CAnimationUpdateTarget* target) const noexcept {
    return m_entries && m_entries->Find(target);
}

void CAnimationUpdateController::DoUpdate() {
    m_earliest = kNever;
    if (!m_entries) return;
    const std::uint64_t now = brindle::SystemMilliseconds();
    m_entries->list.Walk([&](AnimationEntry& entry, const bool& removed) {
        if (entry.due <= now) {
            entry.due = kNever;
            entry.target->DoUpdate(static_cast<unsigned int>(now), entry.due);
        }
        if (!removed) m_earliest = std::min(m_earliest, entry.due);
    });
    DropEntriesAtRest();
}

bool CAnimationUpdateController::NeedsUpdate(unsigned int& wait) const {
    const std::uint64_t now = brindle::SystemMilliseconds();
    wait = now < m_earliest ? static_cast<unsigned int>(m_earliest - now) : 0;
    return m_earliest != kNever;
}

void CAnimationUpdateController::DropEntriesAtRest() noexcept {
    if (m_entries && m_entries->list.IsAtRest()) delete std::exchange(m_entries, nullptr);
}
