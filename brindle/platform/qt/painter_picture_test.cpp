// Pictures on a Qt painter, pixel by pixel.
#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <vector>

#include "brindle/platform/qt/painter_surface.h"

namespace brindle {
namespace {

constexpr std::uint32_t kRed = 0xFFFF0000, kGreen = 0xFF00FF00, kBlue = 0xFF0000FF, kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kClear = 0;

// Two frames of 2 by 2; the second is white but for its clear corner.
Image TwoFrames() {
    Image image;
    image.width = image.height = 2;
    image.frames = 2;
    image.pixels = {kRed, kGreen, kBlue, kWhite, kWhite, kWhite, kWhite, kClear};
    return image;
}

// Four by four pixels of black with the part on them.
QImage Drawn(const PicturePart& part) {
    QImage canvas(4, 4, QImage::Format_RGB32);
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    PainterSurface surface(painter);
    surface.DrawPicture(part);
    return canvas;
}

TEST(PainterPicture, FillsItsTargetExactly) {
    struct Row {
        const char* label;
        std::uint32_t frame;
        CRect source, target;
        bool mirrored, upsideDown;
        std::vector<std::uint32_t> expected;  // row by row, 24 bits
    };
    constexpr std::uint32_t r = 0xFF0000, g = 0x00FF00, b = 0x0000FF, w = 0xFFFFFF, o = 0;
    const std::vector<Row> rows = {
        {"as it is",
         0,
         {0, 0, 2, 2},
         {1, 1, 3, 3},
         false,
         false,
         {o, o, o, o, o, r, g, o, o, b, w, o, o, o, o, o}},
        {"mirrored",
         0,
         {0, 0, 2, 2},
         {1, 1, 3, 3},
         true,
         false,
         {o, o, o, o, o, g, r, o, o, w, b, o, o, o, o, o}},
        {"upside down",
         0,
         {0, 0, 2, 2},
         {1, 1, 3, 3},
         false,
         true,
         {o, o, o, o, o, b, w, o, o, r, g, o, o, o, o, o}},
        {"both", 0, {0, 0, 2, 2}, {1, 1, 3, 3}, true, true, {o, o, o, o, o, w, b, o, o, g, r, o, o, o, o, o}},
        {"the second frame, with a clear corner",
         1,
         {0, 0, 2, 2},
         {0, 0, 2, 2},
         false,
         false,
         {w, w, o, o, w, o, o, o, o, o, o, o, o, o, o, o}},
        {"one pixel, enlarged",
         0,
         {1, 0, 2, 1},
         {0, 1, 4, 4},
         false,
         false,
         {o, o, o, o, g, g, g, g, g, g, g, g, g, g, g, g}},
        {"partly outside",
         0,
         {0, 0, 2, 2},
         {-1, 3, 1, 5},
         false,
         false,
         {o, o, o, o, o, o, o, o, o, o, o, o, g, o, o, o}},
    };
    const Image image = TwoFrames();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const QImage drawn = Drawn({image, row.frame, row.source, row.target, row.mirrored, row.upsideDown});
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(drawn.pixel(i % 4, i / 4) & 0xFFFFFF, row.expected[static_cast<std::size_t>(i)]) << i;
    }
}

TEST(PainterPicture, IsScaledSmoothlyAndBlended) {
    Image image;
    image.width = 2;
    image.height = 1;
    image.frames = 1;
    image.pixels = {0xFF000000, 0xFFFFFFFF};
    QImage canvas(8, 1, QImage::Format_RGB32);
    canvas.fill(Qt::black);
    {
        QPainter painter(&canvas);
        PainterSurface surface(painter);
        surface.DrawPicture({image, 0, {0, 0, 2, 1}, {0, 0, 8, 1}});
    }
    int between = 0;
    for (int x = 0; x < 8; ++x)
        between += qRed(canvas.pixel(x, 0)) > 20 && qRed(canvas.pixel(x, 0)) < 235 ? 1 : 0;
    EXPECT_GE(between, 2) << "greys between black and white";

    image.width = 1;
    image.pixels = {0x80008000};  // half green
    const QImage blended = Drawn({image, 0, {0, 0, 1, 1}, {0, 0, 4, 4}});
    EXPECT_NEAR(qGreen(blended.pixel(2, 2)), 0x80, 1);
    EXPECT_EQ(qRed(blended.pixel(2, 2)), 0);
}

TEST(PainterPicture, ObeysTheContextsClip) {
    const Image image = TwoFrames();
    QImage canvas(4, 4, QImage::Format_RGB32);
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    PainterSurface surface(painter);
    surface.Save();
    surface.ClipToRectangle({0, 0, 1, 4});
    surface.DrawPicture({image, 1, {0, 0, 1, 1}, {0, 0, 4, 4}});
    surface.Restore();
    EXPECT_EQ(canvas.pixel(0, 0), kWhite);
    EXPECT_EQ(canvas.pixel(1, 0), 0xFF000000);
}

}  // namespace
}  // namespace brindle
