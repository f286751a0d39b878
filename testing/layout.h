// The compiler's own layout, for tests of what is part of the binary interface: the slot of a virtual operation.
#pragma once

#include <cstddef>
#include <cstring>

namespace brindle::testing {

// The slot of a virtual operation in its class's table, counted from 0; a virtual destructor takes two. A pointer
// to a virtual member holds the offset of its slot (plus 1 on most processors).
template <class Member>
std::size_t SlotOf(Member member) {
    static_assert(sizeof(member) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t parts[2];
    std::memcpy(parts, &member, sizeof(parts));
    return static_cast<std::size_t>(parts[0]) / sizeof(void*);
}

}  // namespace brindle::testing
