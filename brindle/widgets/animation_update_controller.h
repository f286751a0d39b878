// CAnimationUpdateController: tells the host when something that moves is next to be updated, and updates it. It has no
// timer of its own:
//
//   unsigned int wait = 0;
//   if (controller.NeedsUpdate(wait)) ... a timer of the host's calls controller.DoUpdate() in `wait` milliseconds
//
// Times are the system time in milliseconds, so that a clock that is set moves what is due. Targets are not owned; one
// that is destroyed leaves. Thread: the user interface's.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"

class CAnimationUpdateTarget;
namespace brindle {
struct AnimationEntries;
}

class BRINDLE_API CAnimationUpdateController {
  public:
    // Lives as long as the process.
    static CAnimationUpdateController& GetInstance() noexcept;
    CAnimationUpdateController(const CAnimationUpdateController&) = delete;
    CAnimationUpdateController& operator=(const CAnimationUpdateController&) = delete;

    // The target is due now, also when it was registered before. Null is ignored.
    void Register(CAnimationUpdateTarget* target);
    // Does nothing for a target that is not registered. What the next NeedsUpdate answers stays as it was.
    void Unregister(CAnimationUpdateTarget* target) noexcept;
    bool IsRegistered(CAnimationUpdateTarget* target) const noexcept;
    // Updates what is due, in the order of registration. A target registered meanwhile waits for the next call.
    void DoUpdate();
    // False: nothing is due any more, until something is registered. Else `wait` is how many milliseconds from now
    // DoUpdate is to be called, 0 for at once; waits beyond 32 bits are cut.
    bool NeedsUpdate(unsigned int& wait) const;

  private:
    static constexpr std::uint64_t kNever = ~std::uint64_t{0};
    constexpr CAnimationUpdateController() noexcept = default;
    ~CAnimationUpdateController() = default;  // never
    void DropEntriesAtRest() noexcept;

    brindle::AnimationEntries* m_entries = nullptr;  // null: there are none
    std::uint64_t m_earliest = kNever;               // of all due times; kNever: nothing is due
};
