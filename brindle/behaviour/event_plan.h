// EventPlan: the triggers an event of a list is shown to, in order, as one flat array. It is built from the
// enabled behaviours when the tree has changed and used until it changes again. Internal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class CCommandBehaviour;
class CCommandTrigger;

namespace brindle {

// Asks the processor to fetch the object before it is needed; null is harmless.
inline void Prefetch(const void* object) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(object);
#else
    static_cast<void>(object);
#endif
}

struct EventPlan {
    struct Member {
        CCommandBehaviour* behaviour;
        std::uint64_t serial;
    };
    struct Origin {
        std::size_t member;  // whose trigger it is
        std::uint64_t serial;
    };

    // The triggers are followed by this many null pointers, so that a walk may look ahead without a check.
    static constexpr std::size_t kLookAhead = 8;

    std::uint64_t generation = 0;
    std::vector<CCommandTrigger*> triggers;  // of the enabled behaviours, then the null pointers
    std::vector<Origin> origins;  // beside the triggers: looked at only when there is something to do
    std::vector<Member> members;  // all behaviours, disabled ones too: one may be enabled during a pass
};

}  // namespace brindle
