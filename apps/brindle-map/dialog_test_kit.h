// What tests of the map's dialogs share: the desktop's services, controls by their numbers, and a look at the layout.
// For tests only.
#pragma once

#include <brindle/platform/qt/qt_services.h>
#include <gtest/gtest.h>

#include <QtGui/QPalette>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPushButton>

#include "brindle/platform/qt/dialog_window.h"
#include "brindle/platform/qt/widget_test_application.h"

namespace brindle::map {

inline void NeedDesktop() {
    testing::NeedWidgetApplication();
    InstallQtServices();
}

// The control of that number in the dialog in front.
template <class T>
T* Numbered(unsigned controlId) {
    auto* const window = dynamic_cast<DialogWindow*>(testing::FrontWindow());
    T* const control = window ? dynamic_cast<T*>(window->Control(controlId)) : nullptr;
    EXPECT_NE(control, nullptr) << "no such control: " << controlId;
    return control;
}

inline QPushButton* Button(QDialogButtonBox::StandardButton which) {
    return testing::FrontWindow()->findChild<QDialogButtonBox*>()->button(which);
}

// What a static text is drawn with.
inline QColor TextColour(unsigned controlId) {
    auto* const text = Numbered<QWidget>(controlId);
    static_cast<void>(text->grab());
    return text->palette().color(QPalette::Active, QPalette::WindowText);
}

// No two visible neighbours share a place, and nobody stands outside the one around it.
inline void ExpectNoOverlap(const QWidget& window) {
    const auto children = window.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (int i = 0; i < children.size(); ++i) {
        if (!children[i]->isVisible()) continue;
        EXPECT_TRUE(window.rect().contains(children[i]->geometry()))
            << children[i]->metaObject()->className() << i;
        for (int j = 0; j < i; ++j)
            EXPECT_FALSE(children[j]->isVisible() &&
                         children[i]->geometry().intersects(children[j]->geometry()))
                << children[i]->metaObject()->className() << i << " and "
                << children[j]->metaObject()->className() << j;
    }
}

}  // namespace brindle::map
