// System calls that go wrong: makes the n-th call that the library makes for a file on this thread fail, end the
// process, or do half its work. A program that uses it compiles failing_system_calls.cpp, which stands in for the C
// library's functions (open, write, rename and so on) where the program's own code calls them; it needs no privilege
// and works under the sanitizers.
#pragma once

#include <cstdint>

namespace brindle::testing {

enum class SystemFault {
    kError,       // the n-th call fails with the error given; what it was to do is not done
    kShortWrite,  // the n-th and all later writes take half of what they are given
    kFullDisk,    // so does the n-th write, and all later ones fail with ENOSPC
    kExit,        // the process ends in front of the n-th call
    kExitInWrite  // the process ends after half of the n-th write
};
constexpr int kFaultExit = 77;  // the exit code of a process that ends so

// The fault is in force as long as the object lives. One at a time on a thread.
class FailingSystemCalls {
  public:
    // `nth` counts from 1: all calls, or only writes where the fault is about them.
    FailingSystemCalls(std::uint64_t nth, SystemFault fault, int error = 0) noexcept;
    FailingSystemCalls(const FailingSystemCalls&) = delete;
    FailingSystemCalls& operator=(const FailingSystemCalls&) = delete;
    ~FailingSystemCalls();

    // Whether the n-th call was made, and its name.
    static bool Happened() noexcept;
    static const char* Call() noexcept;
};

}  // namespace brindle::testing
