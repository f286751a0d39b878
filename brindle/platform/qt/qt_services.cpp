// The services on Qt in one call, and the screen. Tests: painter_surface_test.cpp, without_application_test.cpp.
#include "brindle/platform/qt/qt_services.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <algorithm>
#include <cmath>

#include "brindle/platform/qt/colour_box_qt.h"
#include "brindle/platform/qt/desktop_qt.h"
#include "brindle/platform/qt/dialogs_qt.h"
#include "brindle/platform/qt/images_qt.h"
#include "brindle/platform/qt/screen_pixels_qt.h"
#include "brindle/platform/qt/ui_timer_qt.h"
#include "brindle/platform/screen.h"

namespace brindle {
namespace {

constexpr double kUsual = 96;

// Asks at each call: screens come and go.
class QtScreen final : public Screen {
  public:
    int DotsPerInchX() override {
        const QScreen* screen = Primary();
        return Whole(screen ? screen->logicalDotsPerInchX() : kUsual);
    }
    int DotsPerInchY() override {
        const QScreen* screen = Primary();
        return Whole(screen ? screen->logicalDotsPerInchY() : kUsual);
    }

  private:
    static const QScreen* Primary() {
        return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::primaryScreen()
                                                                            : nullptr;
    }
    static int Whole(double dots) { return std::max(1, static_cast<int>(std::lround(dots))); }
};

constinit QtScreen g_screen;

}  // namespace

void InstallQtServices() {
    SetScreen(&g_screen);
    SetImages(&QtImages());
    SetUiTimer(&QtUiTimer());
    RearmQtTimers();
    SetDesktop(&QtDesktop());
    SetDialogs(&QtDialogs());
    SetColourBox(&QtColourBox());
    SetScreenPixels(&QtScreenPixels());
}

}  // namespace brindle
