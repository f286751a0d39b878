// The screen's slot, and what stands there without a desktop. Tests: ov_font_test.cpp in widgets/.
#include "brindle/platform/screen.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {

class NoScreen final : public Screen {
  public:
    int DotsPerInchX() override { return 96; }
    int DotsPerInchY() override { return 96; }
};

constinit NoScreen g_noScreen;
constinit ServiceSlot<Screen> g_screen;

}  // namespace

Screen& CurrentScreen() noexcept {
    return g_screen.GetOr(g_noScreen);
}

Screen* SetScreen(Screen* screen) noexcept {
    return g_screen.Set(screen);
}

}  // namespace brindle
