// A host without an application object, in a process of its own: nothing here may make one.
#include <gtest/gtest.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <string>

#include "brindle/platform/drawing_surface.h"
#include "brindle/platform/images.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_services.h"
#include "brindle/platform/screen.h"
#include "brindle/platform/ui_timer.h"
#include "brindle/util/run_loop.h"
#include "testing/picture_bytes.h"

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

TEST(PainterWithoutApplication, PicturesAreDecodedAndDrawn) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    InstallQtServices();
    for (const std::string& bytes :
         {testing::PngBytes(1, 1, {0xFFFFFFFF}), testing::JpegBytes(),
          testing::GifBytes(2, 2, {{3, 1}, {3, 2}}), testing::BmpBytes(1, 1, {0xFFFFFFFF}),
          testing::IconBytes({{16, 0xFFFFFFFF}})}) {
        Image picture;
        ASSERT_TRUE(CurrentImages().Decode(bytes, ImageFrames::kAll, picture).ok());
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        PainterContext context(painter);
        context.DC().Surface().DrawPicture({picture, 0, {0, 0, 1, 1}, {0, 0, 1, 1}});
        EXPECT_EQ(image.pixel(0, 0), 0xFFFFFFFFu);
        EXPECT_EQ(image.pixel(1, 0), 0xFF000000u);
    }
    SetImages(nullptr);
    SetScreen(nullptr);
}

TEST(PainterWithoutApplication, TimersTickInThePlainLoop) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    InstallQtServices();
    class Target final : public UiTimerTarget {
      public:
        void OnTick(std::uint64_t id) override { ticked = id; }
        std::uint64_t ticked = 0;
    } target;
    ASSERT_TRUE(CurrentUiTimer().Start(target, 7, 1));
    RunLoop loop;
    constexpr std::uint32_t kLongest = 60'000;
    EXPECT_EQ(loop.RunOnce(kLongest), 1);
    EXPECT_EQ(target.ticked, 7u);
    CurrentUiTimer().StopAll(target);
    SetUiTimer(nullptr);
    SetImages(nullptr);
    SetScreen(nullptr);
}

}  // namespace
}  // namespace brindle
