// A host without an application object, in a process of its own: nothing here may make one.
#include <gtest/gtest.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "brindle/platform/drawing_surface.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/screen.h"

namespace brindle {
namespace {

TEST(PainterWithoutApplication, TextIsLeftOutAndShapesAreDrawn) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        PainterContext context(painter);
        CRect rect{0, 0, 20, 20};
        EXPECT_EQ(context.DC().DrawTextA("abc", rect, 0), 0);
        EXPECT_FALSE(context.DC().ExtTextOutA(0, 0, rect, "abc"));
        EXPECT_EQ(context.DC().GetTextExtent("abc"), CSize());
        ShapeScope shapes(context.DC().Surface(), false);
        context.DC().Surface().FillArea({5, 5, 10, 10}, Paint::Solid(0xFF0000FF));
    }
    EXPECT_EQ(image.pixel(10, 10), 0xFF0000FFu);
    EXPECT_EQ(image.pixel(2, 2), 0xFFFFFFFFu);
    InstallQtServices();
    EXPECT_EQ(CurrentScreen().DotsPerInchY(), 96);
    SetScreen(nullptr);
}

}  // namespace
}  // namespace brindle
