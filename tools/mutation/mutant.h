// Which mutant this process is. In a build of the mutation check every mutated place asks it; `scripts/mutate` sets
// BRINDLE_MUTANT to the mutant's number and runs the tests. Without it, or with 0, the code is as it was written.
#pragma once

#include <cstdlib>
#include <type_traits>

namespace brindle::mutation {

// Read once per process.
inline int Chosen() noexcept {
    static const int chosen = [] {
        const char* text = std::getenv("BRINDLE_MUTANT");
        return text ? std::atoi(text) : 0;
    }();
    return chosen;
}

// What the compiler evaluates is never mutated.
constexpr bool Is(int number) noexcept {
    return !std::is_constant_evaluated() && Chosen() == number;
}

}  // namespace brindle::mutation
