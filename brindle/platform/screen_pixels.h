// ScreenPixels: the colours that stand on the screen, whichever program drew them. Coordinates are the desktop's, over
// all of its screens. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <string>

#include "brindle/framework/export.h"
#include "brindle/framework/point.h"

namespace brindle {

class ScreenPixels {
  public:
    // Why no pixel can be read here, as a sentence for the user; empty: they can.
    virtual std::string WhyUnavailable() = 0;
    // The pixel as 0x00BBGGRR. False, `colour` unchanged: it is on no screen, or pixels cannot be read.
    virtual bool Read(CPoint at, std::uint32_t& colour) = 0;

  protected:
    ~ScreenPixels() = default;  // never destroyed through this interface
};

// The service in place; without a desktop one that reads nothing.
BRINDLE_API ScreenPixels& CurrentScreenPixels() noexcept;
// Installs a service (not owned; it must outlive its use; null: none again). Returns the one installed before, or
// null.
BRINDLE_API ScreenPixels* SetScreenPixels(ScreenPixels* pixels) noexcept;

}  // namespace brindle
