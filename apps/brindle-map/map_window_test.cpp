// A map in a window, on the platform without a screen: painting what changed, the mouse, the keyboard, names for those
// who do not see it, resizing.
#include "apps/brindle-map/map_window.h"

#include <QtGui/QAccessible>
#include <QtGui/QPaintEvent>

#include "apps/brindle-map/map_pace.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle-map/map_window_test.h"
#include "host/map_events.h"
#include "host/site_runner.h"

namespace brindle::map {
namespace {

// What a window was asked to paint.
class PaintedArea final : public QObject {
  public:
    explicit PaintedArea(QWidget& window) { window.installEventFilter(this); }
    std::int64_t Take() { return std::exchange(m_area, 0); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            for (const QRect& part : static_cast<QPaintEvent*>(event)->region())
                m_area += std::int64_t{part.width()} * part.height();
        return false;
    }

  private:
    std::int64_t m_area = 0;
};

const char* const kTwoButtons =
    "<button object='a' text='One' x='10' y='10' width='100' height='50'/>"
    "<button object='a' text='Two' key='2' toggle='TRUE' x='200' y='10' width='100' height='50'/>";

TEST_F(MapWindowTest, PaintsOnlyWhatChanged) {
    std::string elements;
    for (int i = 0; i < 300; ++i)
        elements +=
            "<button x='" + std::to_string(i % 20 * 20) + "' y='" + std::to_string(i / 20 * 20) +
            "' width='18' height='18' text='%i' size='8' event='none' device='1:1:" + (i < 10 ? "1" : "2") +
            "'/>";
    PaintedArea painted(Show(elements));
    painted.Take();
    State("0001:01:01", 2);
    Settle();
    const std::int64_t area = painted.Take();
    EXPECT_GT(area, 10 * 18 * 18);
    EXPECT_LE(area, 10 * 22 * 22) << "of 120,000";
    Settle();
    EXPECT_EQ(painted.Take(), 0);
}

TEST_F(MapWindowTest, FitsTheMapIntoTheWindowAndFindsItAgain) {
    MapWindow& window = Show(kTwoButtons);
    EXPECT_EQ(window.size(), QSize(400, 300));
    Click({20, 20});
    EXPECT_EQ(m_presses.size(), 1u);
    window.resize(1000, 600);  // the map is 800 wide, with 100 free on either side
    Settle();
    EXPECT_EQ(m_view->Scale(), 2);
    EXPECT_EQ(window.InWindow({0, 0, 10, 10}), QRect(100, 0, 10, 10));
    Click({50, 50});
    EXPECT_EQ(m_presses.size(), 1u);
    Click({130, 50});
    EXPECT_EQ(m_presses.size(), 2u);
    const QImage image = window.grab().toImage();
    EXPECT_EQ(image.pixelColor(5, 5), QColor(Qt::black));
}

TEST_F(MapWindowTest, TheOtherButtonsOfTheMouseDoNothing) {
    Show(kTwoButtons);
    Mouse(QEvent::MouseButtonPress, {20, 20}, Qt::RightButton);
    Mouse(QEvent::MouseButtonRelease, {20, 20}, Qt::RightButton);
    EXPECT_TRUE(m_presses.empty());
    Mouse(QEvent::MouseMove, {20, 20}, Qt::NoButton);
    EXPECT_EQ(m_window->cursor().shape(), Qt::PointingHandCursor);
    Mouse(QEvent::MouseMove, {150, 200}, Qt::NoButton);
    EXPECT_EQ(m_window->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MapWindowTest, TheKeyboardPresses) {
    Show(kTwoButtons);
    Key(Qt::Key_Space, " ");
    EXPECT_TRUE(m_presses.empty()) << "nothing has the focus";
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space, " ");
    Key(Qt::Key_Right);
    Key(Qt::Key_Return);
    ASSERT_EQ(m_presses.size(), 2u);
    EXPECT_EQ(m_presses[0].key, "");
    EXPECT_EQ(m_presses[1].key, "2");
    Key(Qt::Key_Backtab);
    EXPECT_EQ(m_view->Focus(), 0u);
    Key(Qt::Key_Escape);
    EXPECT_EQ(m_view->Focus(), std::nullopt);
}

TEST_F(MapWindowTest, NamesAndPressesForAssistiveSoftware) {
    MapWindow& window = Show(std::string(kTwoButtons) + "<alarms x='0' y='100' width='300' height='150'/>");
    State("0001:01:02", 3);
    Settle();
    QAccessibleInterface* map = QAccessible::queryAccessibleInterface(&window);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->text(QAccessible::Name), "A map");
    ASSERT_EQ(map->childCount(), 3);
    QAccessibleInterface* one = map->child(0);
    ASSERT_NE(one, nullptr);
    EXPECT_TRUE(one->isValid());
    EXPECT_EQ(one->text(QAccessible::Name), "One");
    EXPECT_EQ(one->role(), QAccessible::Button);
    EXPECT_EQ(one->rect(), QRect(window.mapToGlobal(QPoint(10, 10)), QSize(100, 50)));
    EXPECT_EQ(one->parent(), map);
    EXPECT_EQ(map->indexOfChild(one), 0);
    EXPECT_EQ(map->childAt(one->rect().center().x(), one->rect().center().y()), one);
    EXPECT_EQ(map->child(1)->role(), QAccessible::CheckBox);
    EXPECT_TRUE(map->child(1)->state().checkable);
    EXPECT_EQ(map->child(2)->role(), QAccessible::ListItem);
    EXPECT_EQ(map->child(2)->text(QAccessible::Name), "Fan: ");
    EXPECT_EQ(map->child(3), nullptr);
    EXPECT_EQ(map->child(-1), nullptr);
    ASSERT_NE(one->actionInterface(), nullptr);
    one->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(one->state().focused);
    EXPECT_EQ(map->focusChild(), one);
    one->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(m_presses.size(), 1u);
    EXPECT_EQ(m_presses[0].object, "a");
}

TEST_F(MapWindowTest, APressRunsThroughTheBehavioursOfTheSite) {
    MapWindow& window = Show(std::string(kTwoButtons) + "<alarms x='0' y='100' width='300' height='150'/>");
    host::NoEvents recording;
    MapPace pace;
    host::MapEvents events(recording, pace);
    MapSink sink(*m_view, [](const host::Problem& problem) { ADD_FAILURE() << problem.text; });
    bool pressed = false;
    pace.SetBetween([&] {
        window.Refresh();
        if (!std::exchange(pressed, true)) {
            Click({20, 20});
            for (const EventLine& press : m_presses) events.Add(press);
        }
        return events.NextDue().value_or(100);
    });
    sink.closed = [&] { return m_view->Alarms().HasUnacknowledged() || pace.Elapsed() > 60'000; };
    host::RunOptions how;
    how.limit = 61'000;
    host::SiteRunner(m_site, events, sink, pace, how).Run();
    EXPECT_TRUE(m_view->Alarms().IsUnacknowledged(0x00010102)) << "the state that the behaviour sent";
}

TEST_F(MapWindowTest, AWakeEndsAWait) {
    NeedApplication();
    MapPace pace;
    pace.Wake();
    pace.WaitUntil(600'000);
    EXPECT_LT(pace.Elapsed(), 600'000u);
    pace.WaitUntil(0);
}

TEST_F(MapWindowTest, ClosingIsNoticed) {
    MapWindow& window = Show(kTwoButtons);
    EXPECT_FALSE(window.IsClosed());
    window.close();
    EXPECT_TRUE(window.IsClosed());
}

}  // namespace
}  // namespace brindle::map
