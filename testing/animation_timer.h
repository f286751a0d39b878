// AnimationTimer: updates what moves as a host does, by a timer of its own for whatever is due next.
#pragma once

#include <cstdint>

#include "brindle/util/timer.h"
#include "brindle/widgets/animation_update_controller.h"

namespace brindle::testing {

class AnimationTimer final : public CTimer {
  public:
    void Arm() {
        unsigned int wait = 0;
        KillTimer(1);
        if (CAnimationUpdateController::GetInstance().NeedsUpdate(wait)) CreateTimer(1, wait);
    }

  protected:
    void OnTimer(std::uint64_t) override {
        CAnimationUpdateController::GetInstance().DoUpdate();
        Arm();
    }
};

}  // namespace brindle::testing
