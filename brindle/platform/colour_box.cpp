// The colour dialog's slot, and what stands there without a desktop. Tests: colour_box_test.cpp.
#include "brindle/platform/colour_box.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {

class NoColourBox final : public ColourBox {
  public:
    bool ChooseColour(HWND, std::uint32_t&, CustomColours&) override { return false; }
};

constinit NoColourBox g_noColourBox;
constinit ServiceSlot<ColourBox> g_colourBox;

}  // namespace

ColourBox& CurrentColourBox() noexcept {
    return g_colourBox.GetOr(g_noColourBox);
}

ColourBox* SetColourBox(ColourBox* box) noexcept {
    return g_colourBox.Set(box);
}

}  // namespace brindle
