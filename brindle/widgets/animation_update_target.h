// CAnimationUpdateTarget: what the animation controller updates: a button with a moving picture, say. Thread: the user
// interface's.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"

class BRINDLE_API CAnimationUpdateTarget {
  public:
    CAnimationUpdateTarget() = default;
    CAnimationUpdateTarget(const CAnimationUpdateTarget&) noexcept {}  // registrations are not copied
    CAnimationUpdateTarget& operator=(const CAnimationUpdateTarget&) noexcept { return *this; }
    virtual ~CAnimationUpdateTarget();  // leaves the controller

    // Time for an update. `now` is the system time in milliseconds, cut to 32 bits. `nextDue` is to be set to the time
    // of the next update, in milliseconds and 64 bits as brindle::SystemMilliseconds() tells it; as it is given (all
    // bits set) no further update is wanted. It is there until this returns, also when the target unregisters.
    //
    // Targets may be registered and unregistered in here, this one too, and destroyed once they are unregistered.
    virtual void DoUpdate(unsigned int now, std::uint64_t& nextDue) = 0;
};
