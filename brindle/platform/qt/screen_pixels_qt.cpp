// The pixels of the screen, through Qt's own screens.
//
// Can: X11, every program's windows; the offscreen platform, this program's. Cannot: Wayland, which shows no program
// what others draw. Coordinates are Qt's, so that they are the pointer's at any scale. Tests: colour_dialog_test.cpp,
// and screen_x11_test.cpp on a real server.
#include "brindle/platform/qt/screen_pixels_qt.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>

#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

class PixelsOnQt final : public ScreenPixels {
  public:
    std::string WhyUnavailable() override {
        if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return "There is no screen.";
        if (QGuiApplication::platformName().startsWith("wayland"))
            return "Colours cannot be picked from the screen: a Wayland desktop shows no program what others "
                   "draw.";
        return {};
    }
    bool Read(CPoint at, std::uint32_t& colour) override {
        if (!WhyUnavailable().empty()) return false;
        QScreen* const screen = QGuiApplication::screenAt({at.x, at.y});
        if (!screen) return false;
        const QPoint inside = QPoint(at.x, at.y) - screen->geometry().topLeft();
        const QImage pixel = screen->grabWindow(0, inside.x(), inside.y(), 1, 1).toImage();
        if (pixel.isNull()) return false;
        colour = ReferenceOf(pixel.pixelColor(0, 0));
        return true;
    }
};

constinit PixelsOnQt g_pixelsOnQt;

}  // namespace

ScreenPixels& QtScreenPixels() noexcept {
    return g_pixelsOnQt;
}

}  // namespace brindle
