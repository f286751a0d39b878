// The slot of the screen's pixels, and what stands there without a desktop. Tests: colour_box_test.cpp.
#include "brindle/platform/screen_pixels.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {

class NoScreenPixels final : public ScreenPixels {
  public:
    std::string WhyUnavailable() override { return "There is no screen."; }
    bool Read(CPoint, std::uint32_t&) override { return false; }
};

constinit NoScreenPixels g_noScreenPixels;
constinit ServiceSlot<ScreenPixels> g_screenPixels;

}  // namespace

ScreenPixels& CurrentScreenPixels() noexcept {
    return g_screenPixels.GetOr(g_noScreenPixels);
}

ScreenPixels* SetScreenPixels(ScreenPixels* pixels) noexcept {
    return g_screenPixels.Set(pixels);
}

}  // namespace brindle
