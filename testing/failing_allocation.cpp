// See failing_allocation.h.
#include "testing/failing_allocation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

namespace brindle::testing {
namespace {

constinit thread_local std::uint64_t t_left = 0;  // allocations until the one that fails; 0: none will
constinit thread_local bool t_lasting = false;
constinit thread_local bool t_happened = false;

bool Fails() noexcept {
    if (t_left == 0) return t_lasting && t_happened;
    if (--t_left > 0) return false;
    t_happened = true;
    return true;
}

void* Allocate(std::size_t size, std::size_t alignment) {
    if (Fails()) return nullptr;
    if (size == 0) size = 1;
    if (alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__) return std::malloc(size);
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment = 1) {
    if (void* memory = Allocate(size, alignment)) return memory;
    throw std::bad_alloc();
}

// True when the sweep is over: the work asked for fewer than n allocations.
bool Try(std::uint64_t n, Shortage shortage, const Attempt& attempt) {
    bool done = false;
    bool happened = false;
    {
        const FailingAllocation failing(n, shortage);
        try {
            attempt.work();
            done = true;
        } catch (const std::bad_alloc&) {
        }
        happened = FailingAllocation::Happened();
    }
    EXPECT_TRUE(done || happened) << "std::bad_alloc without a shortage";
    attempt.check(done);
    return !happened;
}

}  // namespace

FailingAllocation::FailingAllocation(std::uint64_t nth, Shortage shortage) noexcept {
    t_happened = false;
    t_lasting = shortage == Shortage::kLasting;
    t_left = nth;
}
FailingAllocation::~FailingAllocation() {
    t_left = 0;
    t_lasting = false;
}
bool FailingAllocation::Happened() noexcept {
    return t_happened;
}

void FailEveryAllocation(const char* label, std::uint64_t least, const std::function<Attempt()>& prepare) {
    constexpr std::uint64_t kMost = 20'000;
    for (const Shortage shortage : {Shortage::kOnce, Shortage::kLasting}) {
        std::uint64_t n = 1;
        for (bool over = false; !over; ++n) {
            SCOPED_TRACE(std::string(label) + ", allocation " + std::to_string(n) +
                         (shortage == Shortage::kOnce ? " fails" : " and all later ones fail"));
            ASSERT_LT(n, kMost);
            over = Try(n, shortage, prepare());
            if (::testing::Test::HasFailure()) return;
        }
        EXPECT_GE(n - 2, least) << label << ": the work asks for " << n - 2 << " allocations only";
    }
}

}  // namespace brindle::testing

using brindle::testing::Allocate;
using brindle::testing::AllocateOrThrow;

void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size, 1);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
