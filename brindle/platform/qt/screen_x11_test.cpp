// The dropper on a real X server: what others drew is read, the mouse is captured beyond the dialog's edge. The pointer
// and the keys are moved by a program of their own, as a user's would be.
#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <functional>

#include "brindle/platform/qt/colour_dialog.h"
#include "brindle/platform/qt/dropper_button.h"
#include "brindle/platform/qt/screen_pixels_qt.h"
#include "brindle/platform/service.h"
#include "testing/xvfb_process.h"

namespace brindle {
namespace {

constexpr int kDeadline = 60'000;  // milliseconds

bool WaitUntil(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < kDeadline)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

// The user's hand.
void Do(const QStringList& arguments) {
    ASSERT_EQ(QProcess::execute("xdotool", arguments), 0) << arguments.join(' ').toStdString();
}
void MoveTo(QPoint place) {
    const QPoint pixel = place * qApp->devicePixelRatio();
    Do({"mousemove", QString::number(pixel.x()), QString::number(pixel.y())});
}

class ScreenX11 : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_server = new testing::XvfbProcess("2600x1700x24");
        ASSERT_FALSE(s_server->Display().empty()) << "Xvfb does not start";
        qputenv("DISPLAY", QByteArray::fromStdString(s_server->Display()));
        qputenv("QT_QPA_PLATFORM", "xcb");
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(::testing::TempDir()));
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        static int count = 1;
        s_application = new QApplication(count, arguments);
    }
    static void TearDownTestSuite() {
        delete s_application;
        delete s_server;
    }
    ScreenX11() {
        m_patch.setPalette(QPalette(QColor(0x12, 0x34, 0x56)));
        m_patch.setGeometry(1000, 600, 100, 100);
        m_patch.show();
    }
    void ShowDialog() {
        m_dialog.setModal(true);
        m_dialog.move(0, 0);
        m_dialog.show();
        ASSERT_TRUE(
            WaitUntil([&] { return Read(kOnPatch) == kPatch && m_dialog.windowHandle()->isExposed(); }));
    }
    void ClickDropper() {
        const CDropperButton* const button = m_dialog.DropperButton();
        MoveTo(button->mapToGlobal(button->rect().center()));
        Do({"click", "1"});
        ASSERT_TRUE(WaitUntil([&] { return m_dialog.IsDropping(); }));
    }
    bool WaitForColour(std::uint32_t colour) {
        return WaitUntil([&] { return ReferenceOf(m_dialog.currentColor()) == colour; });
    }
    static std::uint32_t Read(QPoint place) {
        std::uint32_t colour = 0xFF000000;
        QtScreenPixels().Read({place.x(), place.y()}, colour);
        return colour;
    }

    static constexpr QPoint kOnPatch{1050, 650}, kOnRoot{1200, 100};
    static constexpr std::uint32_t kPatch = 0x563412, kRoot = 0xFFFFFF, kBefore = 0x808080;
    static inline testing::XvfbProcess* s_server = nullptr;
    static inline QApplication* s_application = nullptr;
    ScopedService<ScreenPixels> m_installed{&SetScreenPixels, QtScreenPixels()};
    QWidget m_patch{nullptr, Qt::FramelessWindowHint};
    SelectColourDialog m_dialog{nullptr, kBefore};
};

TEST_F(ScreenX11, PixelsAreTheScreensOwn) {
    EXPECT_EQ(QGuiApplication::platformName(), "xcb");
    EXPECT_TRUE(WaitUntil([] { return Read(kOnPatch) == kPatch; }));
    EXPECT_EQ(Read(kOnRoot), kRoot) << "drawn by the server, not by this program";
    EXPECT_EQ(Read({5000, 100}), 0xFF000000u) << "off the screen";
}

TEST_F(ScreenX11, TheMouseIsCapturedUntilItIsReleased) {
    ShowDialog();
    ClickDropper();
    MoveTo(kOnPatch);
    EXPECT_TRUE(WaitForColour(kPatch)) << "beyond the dialog's edge";
    MoveTo(kOnRoot);
    EXPECT_TRUE(WaitForColour(kRoot)) << "where this program has no window";
    MoveTo(kOnPatch);
    Do({"click", "1"});
    EXPECT_TRUE(WaitUntil([&] { return !m_dialog.IsDropping(); }));
    EXPECT_EQ(ReferenceOf(m_dialog.currentColor()), kPatch);
    MoveTo(kOnRoot);
    ASSERT_TRUE(WaitUntil([] { return QCursor::pos() == kOnRoot; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(ReferenceOf(m_dialog.currentColor()), kPatch) << "released";
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

TEST_F(ScreenX11, KeysSteerAndEndTheDropper) {
    ShowDialog();
    ClickDropper();
    MoveTo(kOnPatch);
    ASSERT_TRUE(WaitForColour(kPatch));
    Do({"key", "Escape"});
    EXPECT_TRUE(WaitUntil([&] { return !m_dialog.IsDropping(); }));
    EXPECT_EQ(ReferenceOf(m_dialog.currentColor()), kBefore);
    ClickDropper();
    MoveTo({1099, 650});  // the patch's last column
    ASSERT_TRUE(WaitForColour(kPatch));
    Do({"key", "Right"});
    EXPECT_TRUE(WaitForColour(kRoot));
    Do({"key", "Return"});
    EXPECT_TRUE(WaitUntil([&] { return !m_dialog.IsDropping(); }));
    EXPECT_EQ(ReferenceOf(m_dialog.currentColor()), kRoot);
    EXPECT_TRUE(m_dialog.isVisible());
}

}  // namespace
}  // namespace brindle
