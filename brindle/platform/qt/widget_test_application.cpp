#include "brindle/platform/qt/widget_test_application.h"

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

namespace brindle::testing {

namespace {

// The application object goes while Qt is still there to take it down.
class Application final : public ::testing::Environment {
  public:
    void TearDown() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete QCoreApplication::instance();
    }
};
const ::testing::Environment* const g_application = ::testing::AddGlobalTestEnvironment(new Application);

}  // namespace

void NeedWidgetApplication() {
    if (QCoreApplication::instance()) return;
    const QByteArray folder = QByteArray::fromStdString(::testing::TempDir());
    // Large enough for every dialog at two pixels a unit: on a small screen Qt's dialogs leave things out.
    QFile screens(folder + "screens.json");
    EXPECT_TRUE(screens.open(QIODevice::WriteOnly));
    screens.write(R"({"screens": [{"name": "test", "x": 0, "y": 0, "width": 2400, "height": 1800,
                      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + folder + "screens.json");
    qputenv("XDG_CONFIG_HOME", folder);
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    new QApplication(count, arguments);
}

void Then(std::function<void()> step) {
    QTimer::singleShot(0, qApp, std::move(step));
}

void ThenWhen(std::function<bool()> condition, std::function<void()> step) {
    QTimer::singleShot(1, qApp, [condition = std::move(condition), step = std::move(step)]() mutable {
        if (condition()) return step();
        ThenWhen(std::move(condition), std::move(step));
    });
}

QWidget* FrontWindow() {
    return QApplication::activeModalWidget();
}

void PressKey(QWidget* widget, int key, const QString& text, Qt::KeyboardModifiers modifiers) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(widget, &event);
    }
}

void TypeText(QWidget* widget, const QString& text) {
    if (auto* const line = qobject_cast<QLineEdit*>(widget)) line->selectAll();
    if (text.isEmpty()) PressKey(widget, Qt::Key_Delete);
    for (const QChar letter : text) PressKey(widget, 0, letter);
}

void MouseAt(QWidget* widget, QEvent::Type type, QPoint global, Qt::MouseButton button) {
    const QPointF local = widget->mapFromGlobal(QPointF(global));
    const bool move = type == QEvent::MouseMove;
    QMouseEvent event(type, local, QPointF(global), move ? Qt::NoButton : button,
                      type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void ClickAt(QWidget* widget) {
    const QPoint middle = widget->mapToGlobal(widget->rect().center());
    MouseAt(widget, QEvent::MouseButtonPress, middle);
    MouseAt(widget, QEvent::MouseButtonRelease, middle);
}

void SavePicture(QWidget* widget, const QString& name) {
    const QString path = QString::fromStdString(::testing::TempDir()) + name;
    EXPECT_TRUE(widget->grab().save(path)) << path.toStdString();
}

}  // namespace brindle::testing
