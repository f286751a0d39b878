// What tests of windows need: an application object on the offscreen platform, and a user who acts while a dialog runs.
#pragma once

#include <gtest/gtest.h>

#include <QtCore/QEvent>
#include <QtCore/QString>
#include <QtWidgets/QWidget>
#include <functional>

namespace brindle::testing {

// Made once; settings of Qt's own go to the test's folder.
void NeedWidgetApplication();

// The step runs when an event loop does; steps keep their order.
void Then(std::function<void()> step);
// The dialog in front that is a T, or null, which fails the test.
template <class T>
T* Front();
QWidget* FrontWindow();
// The step runs once a T is in front.
template <class T>
void ThenIn(std::function<void()> step);
void ThenWhen(std::function<bool()> condition, std::function<void()> step);

void PressKey(QWidget* widget, int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {});
// Replaces what stands in the widget, letter by letter.
void TypeText(QWidget* widget, const QString& text);
void MouseAt(QWidget* widget, QEvent::Type type, QPoint global, Qt::MouseButton button = Qt::LeftButton);
// Presses and releases the button in the widget's middle.
void ClickAt(QWidget* widget);

// Saves a picture of the window to the test's folder, to be looked at.
void SavePicture(QWidget* widget, const QString& name);

}  // namespace brindle::testing

template <class T>
T* brindle::testing::Front() {
    T* const window = dynamic_cast<T*>(FrontWindow());
    if (!window) ADD_FAILURE() << "no such window in front";
    return window;
}

template <class T>
void brindle::testing::ThenIn(std::function<void()> step) {
    ThenWhen(
        [] {
            T* const window = dynamic_cast<T*>(FrontWindow());
            return window && window->isVisible();
        },
        std::move(step));
}
