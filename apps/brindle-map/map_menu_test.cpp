// The context menu: by mouse and by keys, on an object, on the ground; shortcuts without it.
#include "apps/brindle-map/map_menu.h"

#include <QtGui/QContextMenuEvent>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>

#include "apps/brindle-map/map_window_test.h"

namespace brindle::map {
namespace {

const char* const kMap =
    "<button object='a' text='One' x='10' y='10' width='100' height='50'/>"
    "<panel device='1:1:2' x='200' y='10' width='100' height='50'/>"
    "<label text='Words' x='10' y='200' width='100' height='50'/>"
    "<alarms x='0' y='100' width='300' height='90'/>";

class MapMenuTest : public MapWindowTest {
  protected:
    MapMenuTest() {
        Show(kMap);
        m_window->activateWindow();
        m_window->setFocus();
        Settle();
        m_menu.emplace(*m_window);
        m_menu->Add({"Look &here", QKeySequence("Ctrl+L"), MapMenuEntry::kObject,
                     [](const MapPlace& place) { return !place.object.empty(); },
                     [this](const MapPlace& place) { m_used.push_back(place.object); }});
        m_menu->Add({"&All", QKeySequence("Ctrl+E"), MapMenuEntry::kMap, {}, [this](const MapPlace& place) {
                         m_used.push_back("all but " + place.object);
                     }});
    }
    ~MapMenuTest() override { Escape(); }
    QMenu* Open() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    void Escape() {
        if (QWidget* const menu = Open()) menu->close();
        Settle();
    }
    // The texts of the open menu; those that cannot be used in brackets.
    std::string Texts() {
        std::string texts;
        for (const QAction* action : Open() ? Open()->actions() : QList<QAction*>()) {
            const std::string text = action->text().replace('\t', ' ').toStdString();
            texts += action->isSeparator() ? "[" + text + "]:"
                     : action->isEnabled() ? text
                                           : "(" + text + ")";
            texts += "; ";
        }
        return texts;
    }
    void RightClick(QPoint at) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_window->mapToGlobal(at));
        QApplication::sendEvent(&*m_window, &event);
    }
    void MenuKey(int key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(&*m_window, &press);
    }
    void KeyInMenu(int key, const QString& text = {}) {
        ASSERT_NE(Open(), nullptr);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(Open(), &press);
        Settle();
    }

    std::optional<MapMenu> m_menu;
    std::vector<std::string> m_used;
};

TEST_F(MapMenuTest, HasWhatAppliesToThePlace) {
    State("0001:01:02", 3);
    Settle();
    struct Row {
        const char* label;
        QPoint at;
        const char* texts;
    };
    const Row rows[] = {
        {"a button of an object",
         {20, 20},
         "[a]:; &Press; Look &here Ctrl+L; [A map]:; &Close Ctrl+Q; &All Ctrl+E; "},
        {"a device without an object",
         {210, 20},
         "[]:; (&Press); (Look &here Ctrl+L); [A map]:; &Close Ctrl+Q; &All Ctrl+E; "},
        {"a row of alarms",
         {20, 110},
         "[Fan: ]:; &Press; (Look &here Ctrl+L); [A map]:; &Close Ctrl+Q; &All Ctrl+E; "},
        {"words", {20, 210}, "[A map]:; &Close Ctrl+Q; &All Ctrl+E; "},
        {"the ground", {390, 290}, "[A map]:; &Close Ctrl+Q; &All Ctrl+E; "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RightClick(row.at);
        EXPECT_EQ(Texts(), row.texts);
        Escape();
    }
}

TEST_F(MapMenuTest, OpensByKeysOnWhatHasTheFocus) {
    const std::pair<int, Qt::KeyboardModifiers> keys[] = {{Qt::Key_Menu, Qt::NoModifier},
                                                          {Qt::Key_F10, Qt::ShiftModifier}};
    for (const auto& [key, modifiers] : keys) {
        m_view->SetFocus({});
        MenuKey(key, modifiers);
        EXPECT_EQ(Texts(), "[A map]:; &Close Ctrl+Q; &All Ctrl+E; ") << "nothing has the focus";
        Escape();
        m_view->SetFocus(0);
        MenuKey(key, modifiers);
        ASSERT_NE(Open(), nullptr);
        QContextMenuEvent wish(QContextMenuEvent::Keyboard, {}, {});
        QApplication::sendEvent(&*m_window, &wish);
        EXPECT_EQ(Open()->actions().value(0)->text(), "a") << "one menu, though some desktops ask twice";
        KeyInMenu(Qt::Key_Down);
        KeyInMenu(Qt::Key_Return);
    }
    EXPECT_EQ(m_used, (std::vector<std::string>{"a", "a"}));
    MenuKey(Qt::Key_F10, Qt::NoModifier);
    EXPECT_EQ(Open(), nullptr);
}

TEST_F(MapMenuTest, ItsEntriesDoWhatTheySay) {
    RightClick({20, 20});
    KeyInMenu(Qt::Key_P, "p");
    EXPECT_EQ(m_presses.size(), 1u);
    RightClick({20, 20});
    KeyInMenu(Qt::Key_A, "a");
    EXPECT_EQ(m_used, std::vector<std::string>{"all but a"});
    RightClick({390, 290});
    KeyInMenu(Qt::Key_C, "c");
    EXPECT_TRUE(m_window->IsClosed());
}

TEST_F(MapMenuTest, ShortcutsNeedNoMenu) {
    const auto press = [this](int key) {
        QTest::keyClick(&*m_window, static_cast<Qt::Key>(key), Qt::ControlModifier);
        Settle();
    };
    press(Qt::Key_L);
    EXPECT_TRUE(m_used.empty()) << "nothing has the focus";
    press(Qt::Key_E);
    m_view->SetFocus(0);
    press(Qt::Key_L);
    EXPECT_EQ(m_used, (std::vector<std::string>{"all but ", "a"}));
    press(Qt::Key_Q);
    EXPECT_TRUE(m_window->IsClosed());
}

}  // namespace
}  // namespace brindle::map
