// Sessions with a list of buttons in a scroll panel, as a host on Qt has it: pressed, scrolled by the arrows, dragged
// by the thumb, drawn larger; and blinking, with a moving picture. Each step is checked by pixels, and all of them go
// to a sheet in the test's folder.
#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <fstream>
#include <string>
#include <vector>

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/images.h"
#include "brindle/platform/qt/images_qt.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "brindle/platform/qt/ui_timer_qt.h"
#include "brindle/platform/service.h"
#include "brindle/platform/timer_queue.h"
#include "brindle/widgets/animation_update_controller.h"
#include "brindle/widgets/animation_update_target.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/flash_timer.h"
#include "brindle/widgets/rectangle.h"
#include "brindle/widgets/scroll_panel.h"
#include "brindle/widgets/widget_list.h"
#include "testing/animation_timer.h"
#include "testing/picture_bytes.h"

namespace brindle {
namespace {

constexpr int kWidth = 240, kHeight = 220, kItems = 8;
constexpr QRgb kTrack = 0xFF646464, kLight = 0xFFC8C8C8, kBlack = 0xFF000000, kGround = 0xFF505050;

// A panel of 200 by 180 at (20, 30) under a heading; the eight buttons in it are 334 high.
class Host {
  public:
    Host() : m_list(new OV::List), m_panel(m_list) {
        testing::NeedQtApplication();
        m_heading.SetBounds({20, 4, 220, 26});
        m_heading.SetText("Transmitters");
        m_heading.SetColor(0xE0C8A0);
        for (int i = 0; i < kItems; ++i) {
            auto* const button = new OV::Button(CStringA(("Unit " + std::to_string(i + 1)).c_str()));
            button->SetColor(i % 3 == 0 ? 0x4040C0 : 0x60A040);
            button->SetFontColor(0xFFFFFF);
            m_list->insertItem(button, false);
        }
        m_panel.SetBounds({20, 30, 220, 210});
        m_list->SetBounds({20, 30, 220, 30});
        m_list->recalcPos(1);
    }

    void Down(CPoint point) { EXPECT_TRUE(m_panel.OnMouseDown(point)); }
    void Over(CPoint point) { m_panel.OnMouseOver(point); }
    void Up(CPoint point) { EXPECT_TRUE(m_panel.OnMouseUp(point)); }

    QImage Shot(const char* label, double scale = 1) {
        QImage image(kWidth, kHeight, QImage::Format_RGB32);
        image.fill(Qt::darkBlue);
        {
            QPainter painter(&image);
            PainterContext context(painter);
            m_heading.Draw(&context.DC(), scale);
            m_panel.Draw(&context.DC(), scale);
        }
        m_shots.push_back(image);
        m_labels.emplace_back(label);
        return image;
    }

    OV::Button& Item(int i) { return *static_cast<OV::Button*>(m_list->getItem(i)); }
    OV::Widget* ItemAt(CPoint point) { return m_list->getItemAt(point); }

    void WriteSheet(const QString& name) const {
        constexpr int kColumns = 4, kLabel = 16;
        const int count = static_cast<int>(m_shots.size()), rows = (count + kColumns - 1) / kColumns;
        QImage sheet(kColumns * (kWidth + 4), rows * (kHeight + kLabel), QImage::Format_RGB32);
        sheet.fill(Qt::white);
        QPainter painter(&sheet);
        for (int i = 0; i < count; ++i) {
            const QPoint at(i % kColumns * (kWidth + 4), i / kColumns * (kHeight + kLabel));
            painter.drawText(at + QPoint(2, kLabel - 4), m_labels[static_cast<std::size_t>(i)]);
            painter.drawImage(at + QPoint(0, kLabel), m_shots[static_cast<std::size_t>(i)]);
        }
        painter.end();
        ASSERT_TRUE(sheet.save(QString::fromStdString(::testing::TempDir()) + name));
    }

  private:
    OV::Rectangle m_heading;
    OV::List* m_list;
    OV::ScrollPanel m_panel;
    std::vector<QImage> m_shots;
    std::vector<QString> m_labels;
};

bool Same(const QImage& a, const QImage& b, const QRect& part) {
    return a.copy(part) == b.copy(part);
}

const QRect kBar(200, 30, 20, 180), kContents(20, 30, 180, 180), kOutside(0, 0, kWidth, 30);

TEST(Session, ButtonsInAScrollPanel) {
    Host host;
    const QImage start = host.Shot("start");
    const std::vector<std::pair<QPoint, QRgb>> pixels = {
        {{205, 120}, kTrack}, {{205, 31}, kLight},  {{200, 120}, kBlack},     {{219, 120}, kTrack},
        {{210, 209}, kBlack}, {{210, 30}, kBlack},  {{19, 120}, 0xFF000080},  {{220, 120}, 0xFF000080},
        {{100, 70}, kGround}, {{100, 71}, kGround}, {{100, 210}, 0xFF000080},
    };
    for (const auto& [at, colour] : pixels) {
        SCOPED_TRACE(std::to_string(at.x()) + " " + std::to_string(at.y()));
        EXPECT_NEAR(qRed(start.pixel(at)), qRed(colour), 16);
        EXPECT_NEAR(qBlue(start.pixel(at)), qBlue(colour), 16);
    }

    host.Down({60, 90});
    const QImage pressed = host.Shot("the second is pressed");
    EXPECT_FALSE(Same(start, pressed, {20, 72, 180, 40}));
    EXPECT_TRUE(Same(start, pressed, {20, 30, 180, 42})) << "no other is";
    EXPECT_TRUE(Same(start, pressed, {20, 112, 180, 98}));
    host.Up({60, 180});
    EXPECT_TRUE(host.Shot("released, wherever") == start);

    host.Down({210, 200});
    const QImage arrow = host.Shot("the arrow is held");
    EXPECT_EQ(arrow.pixel(202, 205), kLight) << "flat";
    EXPECT_TRUE(Same(start, arrow, kOutside)) << "the panel clips";
    host.Up({210, 200});
    const QImage scrolled = host.Shot("scrolled by half a panel");
    EXPECT_FALSE(Same(start, scrolled, kContents));
    EXPECT_TRUE(Same(arrow, scrolled, kContents));
    EXPECT_EQ(host.ItemAt({60, 50}), &host.Item(2)) << "where it is seen";

    host.Down({210, 110});  // the thumb
    const QImage held = host.Shot("the thumb is held");
    EXPECT_FALSE(Same(scrolled, held, kBar));
    host.Over({210, 80});
    const QImage dragged = host.Shot("dragged upwards");
    EXPECT_FALSE(Same(held, dragged, kContents));
    EXPECT_FALSE(Same(start, dragged, kContents)) << "not yet at the top";
    host.Over({500, -500});
    host.Up({500, -500});
    EXPECT_TRUE(host.Shot("dragged to the top") == start);

    const QImage large = host.Shot("half as large again", 1.5);
    EXPECT_FALSE(Same(start, large, kContents));
    EXPECT_EQ(large.pixel(194, 120), kTrack) << "a bar of 30";
    EXPECT_TRUE(Same(start, host.Shot("as before"), {0, 0, kWidth, kHeight}));
    host.WriteSheet("session.png");
}

// What a host does about alarms and moving pictures.
class Blinking final : public CFlashCallBack {
  public:
    explicit Blinking(OV::Button& button) : m_button(button) {}
    void OnFlash(int state) override { m_button.SetSelected(state != 0); }

  private:
    OV::Button& m_button;
};

class Moving final : public CAnimationUpdateTarget {
  public:
    explicit Moving(OV::Button& button) : m_button(button) {}
    void DoUpdate(unsigned int now, std::uint64_t& nextDue) override {
        unsigned int delay = 0;
        m_button.UpdateAnimation(OV::Button::ImageNormal, now, delay);
        nextDue = SystemMilliseconds() + delay;
    }

  private:
    OV::Button& m_button;
};

// Qt's loop on a clock that stands still.
class Time {
  public:
    Time() { testing::NeedQtApplication(); }
    void Pass(std::uint64_t milliseconds) {
        m_clock.AdvanceMilliseconds(milliseconds);
        RearmQtTimers();
        const QDeadlineTimer deadline(60'000);
        do {
            QCoreApplication::processEvents();
        } while (IsDue() && !deadline.hasExpired());
        EXPECT_FALSE(IsDue());
    }

  private:
    bool IsDue() {
        const TimerQueue* timers = ThreadTimers();
        const auto next = timers ? timers->NextDue() : std::nullopt;
        return next && *next <= m_clock.MonotonicMilliseconds();
    }
    FakeClock m_clock;
    ScopedService<Clock> m_installedClock{&SetClock, m_clock};
    ScopedService<UiTimer> m_installedTimer{&SetUiTimer, QtUiTimer()};
    ScopedService<Images> m_installedImages{&SetImages, QtImages()};
};

TEST(Session, AlarmsBlinkAndPicturesMove) {
    Time time;
    Host host;
    const std::string picture = ::testing::TempDir() + "moving.gif";
    std::ofstream(picture, std::ios::binary) << testing::GifBytes(36, 36, {{1, 10}, {3, 20}});  // red, white
    ASSERT_TRUE(host.Item(2).SetImage(picture.c_str(), OV::Button::ImageNormal));
    const QRect alarm(20, 30, 180, 40), moving(20, 114, 180, 40), others(20, 72, 180, 42);
    const QImage start = host.Shot("start: quiet, red");

    Blinking blinking(host.Item(0));
    ASSERT_EQ(StartFlashTimer(&blinking), 1);
    Moving target(host.Item(2));
    CAnimationUpdateController::GetInstance().Register(&target);
    testing::AnimationTimer timer;
    timer.Arm();

    struct Row {
        const char* label;
        std::uint64_t pass;
        bool lit, white;
    };
    const std::vector<Row> rows = {
        {"1 ms: the second frame", 1, false, true},
        {"200 ms", 199, false, true},
        {"201 ms: the first again", 1, false, false},
        {"301 ms: the second", 100, false, true},
        {"500 ms: lit", 199, true, true},
        {"501 ms: the first", 1, true, false},
        {"999 ms: still lit", 498, true, true},
        {"1000 ms: quiet", 1, false, true},
    };
    QImage lit, white;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        time.Pass(row.pass);
        const QImage shot = host.Shot(row.label);
        EXPECT_EQ(Same(shot, start, alarm), !row.lit);
        EXPECT_EQ(Same(shot, start, moving), !row.white);
        EXPECT_TRUE(Same(shot, start, others)) << "nothing else changes";
        EXPECT_TRUE(Same(shot, start, kBar));
        if (row.lit && lit.isNull()) lit = shot;
        if (row.white && white.isNull()) white = shot;
        EXPECT_TRUE(!row.lit || Same(shot, lit, alarm)) << "every time the same";
        EXPECT_TRUE(!row.white || Same(shot, white, moving));
    }
    EXPECT_EQ(EndFlashTimer(&blinking), 1);
    time.Pass(500);
    EXPECT_TRUE(Same(host.Shot("blinks no more"), start, alarm));
    host.WriteSheet("blinking.png");
}

}  // namespace
}  // namespace brindle
