// Screen: the resolution that sizes in points are reckoned with. A desktop installs its own; without one it is the
// usual 96 dots per inch. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"

namespace brindle {

class Screen {
  public:
    // Both positive.
    virtual int DotsPerInchX() = 0;
    virtual int DotsPerInchY() = 0;

  protected:
    ~Screen() = default;  // never destroyed through this interface
};

// The service in place.
BRINDLE_API Screen& CurrentScreen() noexcept;
// Installs a screen (not owned; it must outlive its use; null: none again). Returns the one installed before, or
// null.
BRINDLE_API Screen* SetScreen(Screen* screen) noexcept;

}  // namespace brindle
