// Bodies that are copied: the same pixels as drawn afresh, a new one whenever anything that shows has changed, and a
// limit.
#include "brindle/platform/qt/painter_bodies.h"

#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPicture>
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/painter_surface.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/button_shapes.h"

namespace brindle {
namespace {

using OV::Button;

constexpr int kRounding = 5;  // a level or so for each layer
constexpr std::size_t kUsualLimit = std::size_t{32} << 20;

class PainterBodiesTest : public ::testing::Test {
  protected:
    PainterBodiesTest() { Bodies().Clear(); }
    ~PainterBodiesTest() override { Bodies().SetLimit(kUsualLimit); }

    static PainterBodies& Bodies() { return PainterBodies::Instance(); }
    // How many bodies are not copied by that.
    template <class Act>
    static std::size_t DrawnBy(const Act& act) {
        const std::size_t before = Bodies().Drawn();
        act();
        return Bodies().Drawn() - before;
    }
};

Button At(int x, int y) {
    Button button;
    button.SetBounds({x, y, x + 100, y + 40});
    button.SetRoundness(60);
    button.SetColor(0xB46E3C);
    return button;
}

// Shades, on which transparency shows.
QImage Ground() {
    QImage image(320, 160, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, qRgb(x * 255 / 320, y * 255 / 160, 128));
    return image;
}

void DrawOn(QPainter& painter, Button button) {
    PainterContext context(painter);
    button.Draw(&context.DC(), 1);
}

QImage Drawn(const Button& button, double scale) {
    QImage image = Ground();
    QPainter painter(&image);
    painter.scale(scale, scale);
    DrawOn(painter, button);
    return image;
}

int Difference(const QImage& a, const QImage& b) {
    int worst = a.size() == b.size() ? 0 : 256;
    for (int y = 0; y < a.height() && worst < 256; ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int shift = 0; shift < 24; shift += 8)
                worst = std::max(worst, std::abs(static_cast<int>(a.pixel(x, y) >> shift & 0xFF) -
                                                 static_cast<int>(b.pixel(x, y) >> shift & 0xFF)));
    return worst;
}

struct Change {
    const char* label;
    std::function<void(Button&)> set;
};

const std::vector<Change>& Changes() {
    static const std::vector<Change>& changes = *new std::vector<Change>{
        {"colour", [](Button& b) { b.SetColor(0x00FFFF); }},
        {"opacity", [](Button& b) { b.SetOpacity(100); }},
        {"roundness", [](Button& b) { b.SetRoundness(10); }},
        {"outline's width", [](Button& b) { b.SetBorderThickness(5); }},
        {"no outline", [](Button& b) { b.SetBorderThickness(0); }},
        {"outline's colour", [](Button& b) { b.SetBorderColor(0xFF); }},
        {"fill", [](Button& b) { b.SetFillMode(Button::FillSolid); }},
        {"no fill", [](Button& b) { b.SetFillMode(Button::FillNone); }},
        {"gradient", [](Button& b) { b.SetFillMode(Button::FillHorizontalGradient); }},
        {"gradient's end",
         [](Button& b) { b.SetFillMode(Button::FillHorizontalGradient), b.SetSecondaryColor(0xFFFFFF); }},
        {"pressed", [](Button& b) { b.OnMouseDown(); }},
        {"disabled", [](Button& b) { b.SetDisabled(true); }},
        {"selected", [](Button& b) { b.SetSelected(true); }},
        {"turned", [](Button& b) { b.SetEscapment(OVDrawing::Vertical90); }},
        {"wider",
         [](Button& b) {
             b.SetBounds({20, 20, 121, 60});
         }},
        {"higher",
         [](Button& b) {
             b.SetBounds({20, 20, 120, 61});
         }},
    };
    return changes;
}

TEST_F(PainterBodiesTest, CopiesHaveThePixelsOfFreshOnes) {
    for (const double scale : {1.0, 0.75, 2.0, 1.37}) {
        for (const CPoint at : {CPoint{5, 5}, CPoint{6, 7}, CPoint{-3, -2}}) {
            SCOPED_TRACE(::testing::Message() << scale << " at " << at.x << " " << at.y);
            Bodies().Clear();
            const QImage fresh = Drawn(At(at.x, at.y), scale);
            Bodies().Clear();
            // A hundred units are whole pixels, and less than the origin is another matter.
            const CPoint other{at.x < 0 ? at.x : at.x + 100, at.y < 0 ? at.y : at.y + 100};
            EXPECT_EQ(DrawnBy([&] { Drawn(At(other.x, other.y), scale); }), 1u);
            QImage copied;
            EXPECT_EQ(DrawnBy([&] { copied = Drawn(At(at.x, at.y), scale); }), 0u);
            EXPECT_EQ(copied, fresh);
        }
    }
}

TEST_F(PainterBodiesTest, ACopyLooksLikeTheShapesDrawnDirectly) {
    for (const double scale : {1.0, 0.75, 2.0}) {
        for (const Change& change : Changes()) {
            SCOPED_TRACE(::testing::Message() << change.label << " at scale " << scale);
            Button button = At(20, 20);
            change.set(button);
            QImage direct = Ground();
            QPainter painter(&direct);
            painter.scale(scale, scale);
            painter.setOpacity(0.9999);  // is not copied
            EXPECT_EQ(DrawnBy([&] { DrawOn(painter, button); }), 0u);
            painter.end();
            EXPECT_LE(Difference(Drawn(button, scale), direct), kRounding)
                << "blended once instead of layer by layer";
        }
    }
}

TEST_F(PainterBodiesTest, WhateverShowsMakesANewBody) {
    Drawn(At(20, 20), 1);
    for (const Change& change : Changes()) {
        SCOPED_TRACE(change.label);
        Button button = At(20, 20);
        change.set(button);
        EXPECT_EQ(DrawnBy([&] { Drawn(button, 1); }), 1u);
        EXPECT_EQ(DrawnBy([&] { Drawn(button, 1); }), 0u);
    }
    EXPECT_EQ(DrawnBy([] { Drawn(At(20, 20), 1.25); }), 1u) << "another scale";
    EXPECT_EQ(DrawnBy([] { Drawn(At(21, 20), 1.25); }), 1u) << "another place within a pixel";
    EXPECT_EQ(DrawnBy([] { Drawn(At(24, 20), 1.25); }), 0u) << "the same place within one";
    EXPECT_EQ(DrawnBy([] { Drawn(At(-1, 20), 1); }), 1u) << "left of the origin shapes lie otherwise";
}

TEST_F(PainterBodiesTest, WhatDoesNotShowMakesNone) {
    Drawn(At(20, 20), 1);
    const std::vector<Change> changes = {
        {"place", [](Button& b) { b = At(77, 3); }},
        {"caption", [](Button& b) { b.SetText("On air"), b.SetFontColor(0xFF); }},
        {"mouse", [](Button& b) { b.OnMouseOver(); }},
        {"colour for the selected", [](Button& b) { b.SetSelectedColor(0x123456); }},
        {"data", [](Button& b) { b.SetData(&b); }},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(change.label);
        Button button = At(20, 20);
        change.set(button);
        EXPECT_EQ(DrawnBy([&] { Drawn(button, 1); }), 0u);
    }
}

TEST_F(PainterBodiesTest, KeepsTheLastUsedWithinItsLimit) {
    Drawn(At(20, 20), 1);
    const std::size_t one = Bodies().Bytes();
    ASSERT_GT(one, 100u * 40 * 4);
    Bodies().SetLimit(3 * one);
    const auto coloured = [](unsigned long colour) {
        Button button = At(20, 20);
        button.SetColor(colour);
        return button;
    };
    for (unsigned long colour = 1; colour <= 9; ++colour) {
        Drawn(coloured(colour), 1);
        Drawn(coloured(1), 1);  // stays in use
        EXPECT_LE(Bodies().Bytes(), 3 * one);
    }
    EXPECT_EQ(DrawnBy([&] { Drawn(coloured(1), 1), Drawn(coloured(9), 1), Drawn(coloured(8), 1); }), 0u);
    EXPECT_EQ(DrawnBy([&] { Drawn(coloured(2), 1); }), 1u);
    Bodies().SetLimit(0);
    EXPECT_EQ(Bodies().Bytes(), 0u);
    const QImage first = Drawn(At(20, 20), 1);
    EXPECT_EQ(DrawnBy([&] { EXPECT_EQ(Drawn(At(20, 20), 1), first); }), 1u);
    EXPECT_EQ(Bodies().Bytes(), 0u);
}

TEST_F(PainterBodiesTest, PaintersThatAreNotPlainDrawTheShapes) {
    struct Row {
        const char* label;
        std::function<void(QPainter&)> set;
        std::size_t bodies;
    };
    const std::vector<Row> rows = {
        {"turned", [](QPainter& p) { p.rotate(10); }, 0},
        {"mirrored", [](QPainter& p) { p.translate(200, 0), p.scale(-1, 1); }, 0},
        {"transparent", [](QPainter& p) { p.setOpacity(0.5); }, 0},
        {"another blending", [](QPainter& p) { p.setCompositionMode(QPainter::CompositionMode_Plus); }, 0},
        {"very large", [](QPainter& p) { p.scale(20, 20), p.translate(-15, -18); }, 0},
        {"moved by parts of a pixel", [](QPainter& p) { p.translate(0.3, 0.4); }, 1},
        {"clipped", [](QPainter& p) { p.setClipRect(0, 0, 50, 30); }, 1},
        {"a window of its own", [](QPainter& p) { p.setWindow(0, 0, 160, 80); }, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Bodies().Clear();
        QImage image = Ground();
        QPainter painter(&image);
        row.set(painter);
        EXPECT_EQ(DrawnBy([&] { DrawOn(painter, At(20, 20)); }), row.bodies);
        painter.end();
        EXPECT_GT(Difference(image, Ground()), 50) << "it is drawn";
        if (row.bodies == 0) continue;
        QImage direct = Ground();
        QPainter plain(&direct);
        row.set(plain);
        plain.setOpacity(0.9999);
        DrawOn(plain, At(20, 20));
        plain.end();
        EXPECT_LE(Difference(image, direct), kRounding);
    }
    QPicture picture;
    QPainter painter(&picture);
    EXPECT_EQ(DrawnBy([&] { DrawOn(painter, At(20, 20)); }), 0u) << "no pixels";
}

TEST_F(PainterBodiesTest, DenseScreensHaveBodiesOfTheirPixels) {
    const QImage twice = Drawn(At(20, 20), 2);
    QImage dense = Ground();
    dense.setDevicePixelRatio(2);
    QPainter painter(&dense);
    DrawOn(painter, At(20, 20));
    painter.end();
    dense.setDevicePixelRatio(1);
    EXPECT_EQ(dense, twice);
}

TEST(ButtonShapesExtent, IsUnknownForUnusualOnes) {
    struct Row {
        const char* label;
        std::int32_t width, height, radius;
        bool known;
    };
    const std::vector<Row> rows = {
        {"ordinary", 100, 40, 5, true},
        {"round to the last", 100, 40, 20, true},
        {"empty", 0, 40, 0, false},
        {"reversed", 100, -40, 0, false},
        {"corners overlap", 10, 90, 7, false},
        {"the sheen is inset by more than its height", 600, 40, 0, false},
        {"very large", 1 << 20, 1 << 20, 0, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ButtonLook look;
        look.width = row.width;
        look.height = row.height;
        look.radius = row.radius;
        look.outlineWidth = 2;
        const CRect extent = ButtonShapes(look, ButtonParts::kBoth).Extent({10, 20});
        EXPECT_EQ(extent.Width() > 0, row.known);
        if (row.known) {
            EXPECT_EQ(extent, (CRect{7, 17, 10 + row.width + 3, 20 + row.height + 3}));
        }
    }
}

}  // namespace
}  // namespace brindle
