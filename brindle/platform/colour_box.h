// ColourBox: the desktop's dialog in which a user chooses a colour and keeps sixteen of their own. Colours are
// 0x00BBGGRR. Thread: the user interface's.
#pragma once

#include <array>
#include <cstdint>

#include "brindle/framework/export.h"
#include "brindle/framework/window_handle.h"

namespace brindle {

// The colours a user keeps, in the order they are shown in.
using CustomColours = std::array<std::uint32_t, 16>;

class ColourBox {
  public:
    // Shows the dialog with that colour and those custom ones until the user has answered; `owner` takes no input
    // meanwhile. True: confirmed; `colour` is the one chosen, `custom` is as the user left it. False, both unchanged:
    // not confirmed, or there is no desktop.
    virtual bool ChooseColour(HWND owner, std::uint32_t& colour, CustomColours& custom) = 0;

  protected:
    ~ColourBox() = default;  // never destroyed through this interface
};

// The service in place; without a desktop one that chooses nothing.
BRINDLE_API ColourBox& CurrentColourBox() noexcept;
// Installs a service (not owned; it must outlive its use; null: none again). Returns the one installed before, or
// null.
BRINDLE_API ColourBox* SetColourBox(ColourBox* box) noexcept;

}  // namespace brindle
