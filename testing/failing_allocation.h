// Memory that runs out: makes one call of operator new on this thread fail, or all from one on, and runs a piece of
// work again and again until every allocation in it has failed once. Memory of other libraries (malloc) is left alone.
//
// A program that uses it compiles failing_allocation.cpp, which replaces the global operators new and delete.
#pragma once

#include <cstdint>
#include <functional>

namespace brindle::testing {

enum class Shortage {
    kOnce,    // the n-th allocation fails, later ones succeed
    kLasting  // it and all later ones fail
};

// The shortage lasts as long as the object. One at a time on a thread.
class FailingAllocation {
  public:
    FailingAllocation(std::uint64_t nth, Shortage shortage) noexcept;  // counted from 1
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    // Whether the n-th allocation was asked for.
    static bool Happened() noexcept;
};

// One try: objects made before anything fails, the work, and what must hold after it.
struct Attempt {
    std::function<void()> work;
    // `done`: the work returned; else it threw std::bad_alloc. Memory is back.
    std::function<void(bool done)> check;
};

// Prepares and works for n = 1, 2, 3 ... with the n-th allocation failing, both ways, until the work asks for fewer
// than n. Anything but std::bad_alloc that the work throws fails the test, and so does work that asks for fewer than
// `least` allocations: then the sweep would prove nothing.
void FailEveryAllocation(const char* label, std::uint64_t least, const std::function<Attempt()>& prepare);

}  // namespace brindle::testing
