// EventPlan: the triggers an event of a list is shown to, in order, as one flat array. It is built from the
// enabled behaviours when the tree has changed and used until it changes again. Internal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class CCommandBehaviour;
class CCommandTrigger;

namespace brindle {

struct EventPlan {
    struct Member {
        CCommandBehaviour* behaviour;
        std::uint64_t serial;
    };
    struct Origin {
        std::size_t member;  // whose trigger it is
        std::uint64_t serial;
    };

    std::uint64_t generation = 0;
    std::vector<CCommandTrigger*> triggers;  // of the enabled behaviours
    std::vector<Origin> origins;  // beside the triggers: looked at only when there is something to do
    std::vector<Member> members;  // all behaviours, disabled ones too: one may be enabled during a pass
};

}  // namespace brindle
