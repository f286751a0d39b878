// The surface on a Qt painter: the contract, and pixels where they are exact.
#include "brindle/platform/qt/painter_surface.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <cmath>
#include <string>
#include <vector>

#include "brindle/platform/qt/qt_services.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "brindle/platform/screen.h"
#include "testing/drawing_surface_contract.h"

namespace brindle {
namespace {

class OnImage final : public testing::SurfaceUnderTest {
  public:
    DrawingSurface& Surface() override { return m_surface; }

  private:
    QImage m_image{50, 50, QImage::Format_ARGB32_Premultiplied};
    QPainter m_painter{&m_image};
    PainterSurface m_surface{m_painter};
};

std::unique_ptr<testing::SurfaceUnderTest> MakeOnImage() {
    testing::NeedQtApplication();
    return std::make_unique<OnImage>();
}

// What is drawn on 20 by 20 white pixels.
template <class Draw>
QImage Drawn(const Draw& draw) {
    testing::NeedQtApplication();
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    {
        PainterSurface surface(painter);
        draw(static_cast<DrawingSurface&>(surface));
    }
    painter.fillRect(19, 19, 1, 1, Qt::red);  // as the painter was: neither clipped nor moved
    return image;
}

struct Pixel {
    const char* label;
    int x, y;
    QRgb expected;
};

void ExpectPixels(const QImage& image, const std::vector<Pixel>& rows) {
    for (const Pixel& row : rows) {
        SCOPED_TRACE(row.label);
        const QColor drawn(image.pixel(row.x, row.y)), expected(row.expected);
        EXPECT_NEAR(drawn.red(), expected.red(), 1);  // halves may be rounded either way
        EXPECT_NEAR(drawn.green(), expected.green(), 1);
        EXPECT_NEAR(drawn.blue(), expected.blue(), 1);
    }
    EXPECT_EQ(QColor(image.pixel(19, 19)).name(), "#ff0000") << "what the painter was set to comes back";
}

constexpr QRgb kWhite = 0xFFFFFFFF, kBlack = 0xFF000000;

TEST(PainterSurface, PixelCentresLieAtWholeCoordinates) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, true);
        surface.DrawPath(ShapePath().Line({2, 3}, {10, 3}), {0xFF000000, 1});
        surface.FillArea({5, 10, 4, 4}, Paint::Solid(0xFF000000));
    });
    ExpectPixels(image, {{"a line at a whole coordinate is sharp", 5, 3, kBlack},
                         {"above it", 5, 2, kWhite},
                         {"below it", 5, 4, kWhite},
                         {"inside a fill", 7, 12, kBlack},
                         {"its edge is half covered", 5, 12, 0xFF7F7F7F},
                         {"its corner a quarter", 5, 10, 0xFFBFBFBF},
                         {"its far edge too", 9, 12, 0xFF7F7F7F}});
}

TEST(PainterSurface, WithoutSmoothingAFillTakesThePixelsFromLeftAndTopOn) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, false);
        surface.FillArea({5, 10, 4, 3}, Paint::Solid(0xFF000000));
        surface.FillArea({12, 10, 4, 3}, Paint::Vertical({12, 10, 4, 3}, 0xFF000000, 0xFF000000));
        surface.FillPath(ShapePath().Rectangle({2, 2, 3, 4}), Paint::Solid(0xFF000000));
        surface.FillPath(ShapePath().Line({12, 2}, {16, 2}).Line({16, 2}, {12, 6}).Close(),
                         Paint::Solid(0xFF000000));
    });
    std::vector<QRect> rows = {{5, 10, 4, 3}, {12, 10, 4, 3}, {2, 2, 3, 4}};
    for (int i = 0; i < 4; ++i) rows.emplace_back(12, 2 + i, 4 - i, 1);
    for (int y = 0; y < 19; ++y)
        for (int x = 0; x < 19; ++x) {
            bool inside = false;
            for (const QRect& each : rows) inside |= each.contains(x, y);
            EXPECT_EQ(image.pixel(x, y), inside ? kBlack : kWhite) << x << " " << y;
        }
}

TEST(PainterSurface, GradientsRepeatOutsideTheirArea) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, false);
        surface.FillArea({0, 0, 20, 20}, Paint::Vertical({0, 4.5f, 20, 10}, 0xFF000000, 0xFFFFFFFF));
    });
    EXPECT_LT(qRed(image.pixel(3, 5)), 30) << "begins dark";
    EXPECT_GT(qRed(image.pixel(3, 14)), 225) << "ends light";
    EXPECT_GT(qRed(image.pixel(3, 4)), 225) << "above it the end again";
    EXPECT_LT(qRed(image.pixel(3, 15)), 30) << "below it the beginning";
    const auto none = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, false);
        surface.FillArea({0, 0, 20, 20}, Paint::Horizontal({4, 4, 0, 10}, 0xFF000000, 0xFF000000));
    });
    ExpectPixels(none, {{"an area without width paints nothing", 5, 5, kWhite}});
}

TEST(PainterSurface, ACentreGradientRunsFromItsCentreToItsEllipse) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, false);
        surface.FillArea({0, 0, 20, 20}, Paint::Centre({2, 2, 16, 8}, {10, 4}, 0xFF000000, 0xFFFFFFFF));
    });
    EXPECT_LT(qRed(image.pixel(10, 4)), 8);
    EXPECT_NEAR(qRed(image.pixel(10, 7)), 128, 12) << "half of the way down";
    EXPECT_NEAR(qRed(image.pixel(10, 3)), 128, 12) << "half of the way up";
    EXPECT_GT(qRed(image.pixel(2, 6)), 240) << "at the ellipse";
}

TEST(PainterSurface, ClipsCutByWholePixels) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, true);
        surface.ClipShapes(ShapePath().Ellipse({2, 2, 14, 14}), false);
        surface.ClipShapes(ShapePath().Rectangle({0, 0, 20, 9.5f}), true);
        surface.FillArea({0, 0, 18, 18}, Paint::Solid(0xFF000000));
        surface.UnclipShapes();
        surface.FillArea({0.5f, 17.5f, 2, 2}, Paint::Solid(0xFF000000));
    });
    for (int y = 0; y < 17; ++y)
        for (int x = 0; x < 18; ++x) {
            const QRgb pixel = image.pixel(x, y);
            ASSERT_TRUE(pixel == kBlack || pixel == kWhite) << x << " " << y << " is half covered";
        }
    ExpectPixels(image, {{"inside both", 9, 5, kBlack},
                         {"outside the ellipse", 3, 3, kWhite},
                         {"outside the rectangle", 9, 11, kWhite},
                         {"no clip any more", 1, 18, kBlack}});
}

TEST(PainterSurface, AShapeClipReplacesTheEarlierOneButNotTheContexts) {
    const auto image = Drawn([](DrawingSurface& surface) {
        surface.Save();
        surface.ClipToRectangle({15, 0, 18, 20});
        surface.ClipToRectangle({0, 0, 10, 20});  // replaces
        {
            const ShapeScope shapes(surface, false);
            surface.ClipShapes(ShapePath().Rectangle({0, 0, 3, 20}), false);
            surface.ClipShapes(ShapePath().Rectangle({4.5f, -0.5f, 20, 20}), false);
            surface.FillArea({0, 0, 20, 10}, Paint::Solid(0xFF000000));
        }
        surface.Restore();
        const ShapeScope shapes(surface, false);
        surface.FillArea({10.5f, 14.5f, 4, 2}, Paint::Solid(0xFF000000));
    });
    ExpectPixels(image, {{"in the first shape clip only", 1, 5, kWhite},
                         {"in the second", 7, 5, kBlack},
                         {"outside the context's", 12, 5, kWhite},
                         {"inside the context's first", 16, 5, kWhite},
                         {"after it", 12, 16, kBlack}});
}

TEST(PainterSurface, ScalesWithThePainter) {
    testing::NeedQtApplication();
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(2, 2);
    PainterSurface surface(painter);
    const ShapeScope shapes(surface, true);
    surface.DrawPath(ShapePath().Line({2, 5}, {10, 5}), {0xFF000000, 0.5f});
    EXPECT_EQ(QColor(image.pixel(10, 10)).name(), "#000000") << "half a unit is one pixel, and sharp there";
    EXPECT_EQ(QColor(image.pixel(10, 9)).name(), "#ffffff");
    EXPECT_EQ(QColor(image.pixel(10, 11)).name(), "#ffffff");
}

// How much of the pixels is black, in pixels.
double Ink(const QImage& image, const QRect& part) {
    double ink = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) ink += (255 - qRed(image.pixel(x, y))) / 255.0;
    return ink;
}

TEST(PainterSurface, RoundLinesAreAsWideAsStraightOnes) {
    for (const float width : {0.5f, 1.0f, 2.0f, 4.0f}) {
        SCOPED_TRACE(width);
        const auto image = Drawn([&](DrawingSurface& surface) {
            const ShapeScope shapes(surface, true);
            surface.DrawPath(ShapePath().Ellipse({2, 2, 14, 14}), {0xFF000000, width});
        });
        const double whole = 2 * M_PI * 7 * static_cast<double>(width);
        EXPECT_NEAR(Ink(image, {0, 0, 19, 19}), whole, 0.08 * whole);
    }
}

TEST(PainterSurface, CornersAreMitred) {
    const auto image = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, true);
        const ShapePath square =
            ShapePath().Line({5, 5}, {14, 5}).Line({14, 5}, {14, 14}).Line({14, 14}, {5, 14}).Close();
        surface.DrawPath(square, {0xFF000000, 3});
    });
    for (const int x : {4, 15})
        for (const int y : {4, 15}) EXPECT_EQ(QColor(image.pixel(x, y)).name(), "#000000") << x << " " << y;
}

// Along the middle of a line of 4 pixels' width from x = 10 on: where it begins, then how many pixels are dark, light,
// dark and so on.
std::vector<int> Runs(DashStyle dash, bool round) {
    testing::NeedQtApplication();
    QImage image(130, 9, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    {
        PainterSurface surface(painter);
        const ShapeScope shapes(surface, true);
        surface.DrawPath(ShapePath().Line({10, 4}, {110, 4}), {0xFF000000, 4, dash, round});
    }
    std::vector<int> runs = {0};
    bool dark = false;
    for (int x = 0; x < image.width(); ++x) {
        if ((QColor(image.pixel(x, 4)).red() < 0x80) != dark) {
            dark = !dark;
            runs.push_back(0);
        }
        ++runs.back();
    }
    return runs;
}

TEST(PainterSurface, DashesDotsAndGapsAreMultiplesOfTheWidth) {
    struct Row {
        const char* label;
        DashStyle dash;
        std::vector<int> expected;
    };
    const Row rows[] = {{"dashes", DashStyle::kDash, {12, 4, 12, 4, 12, 4}},
                        {"dots", DashStyle::kDot, {4, 4, 4, 4, 4, 4}},
                        {"dash, dot", DashStyle::kDashDot, {12, 4, 4, 4, 12, 4}},
                        {"dash, dot, dot", DashStyle::kDashDotDot, {12, 4, 4, 4, 4, 4, 12}}};
    for (const Row& row : rows) {
        for (const bool round : {false, true}) {
            SCOPED_TRACE(std::string(row.label) + (round ? ", round" : ""));
            const std::vector<int> runs = Runs(row.dash, round);
            ASSERT_GT(runs.size(), row.expected.size());
            // Round ends stand out by half a width.
            EXPECT_NEAR(runs[0], round ? 8 : 10, 1);
            for (std::size_t i = 0; i < row.expected.size(); ++i)
                EXPECT_NEAR(runs[i + 1], row.expected[i], 1) << "run " << i;
        }
    }
    EXPECT_EQ(Runs(DashStyle::kSolid, true).size(), 3u) << "light, dark, light";
}

TEST(PainterSurface, LinesThatDoubleBackAreNotCountedTwice) {
    const auto back = Drawn([](DrawingSurface& surface) {
        const ShapeScope shapes(surface, true);
        surface.DrawPath(ShapePath().Line({2, 5}, {12, 5}).Line({12, 5}, {6, 5}), {0xFF000000, 2});
    });
    ExpectPixels(back, {{"in the middle", 8, 5, kBlack},
                        {"above it, half covered", 8, 4, 0xFF7F7F7F},
                        {"below it", 8, 6, 0xFF7F7F7F}});
}

TEST(QtServices, TheScreenTellsItsResolution) {
    testing::NeedQtApplication();
    InstallQtServices();
    const QScreen* screen = QGuiApplication::primaryScreen();
    EXPECT_EQ(CurrentScreen().DotsPerInchX(), std::lround(screen->logicalDotsPerInchX()));
    EXPECT_EQ(CurrentScreen().DotsPerInchY(), std::lround(screen->logicalDotsPerInchY()));
    InstallQtServices();  // may be called again
    EXPECT_NE(SetScreen(nullptr), nullptr);
}

// The part of the image that is not white.
QRect Ink(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF) ink |= QRect(x, y, 1, 1);
    return ink;
}

TEST(PainterSurface, TextTurnsAboutItsUpperLeftCorner) {
    testing::NeedQtApplication();
    struct Row {
        const char* label;
        int escapement;
        QRect quarter;  // where all of the ink is, of a text that begins at (50, 50)
    };
    const std::vector<Row> rows = {
        {"upright: right and below", 0, {50, 50, 50, 50}},
        {"upwards: right and above", 900, {50, 0, 50, 50}},
        {"downwards: left and below", -900, {0, 50, 50, 50}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        QImage image(100, 100, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        PainterSurface surface(painter);
        LOGFONTA font{};
        font.lfHeight = -16;
        font.lfEscapement = font.lfOrientation = row.escapement;
        std::strcpy(font.lfFaceName, "Arial");
        EXPECT_TRUE(surface.DrawRun({"WWi", {50, 50}, {0, 0, 100, 100}, font}));
        const QRect ink = Ink(image);
        EXPECT_TRUE(row.quarter.adjusted(-1, -1, 1, 1).contains(ink)) << ink.x() << " " << ink.y();
        EXPECT_GT(row.escapement ? ink.height() : ink.width(), row.escapement ? ink.width() : ink.height())
            << "along its line";
    }
}

TEST(PainterSurface, TextIsClippedAndColoured) {
    testing::NeedQtApplication();
    QImage image(100, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PainterSurface surface(painter);
    LOGFONTA font{};
    font.lfHeight = -16;
    EXPECT_TRUE(surface.DrawRun({"WWWWWWWW", {0, 0}, {10, 5, 30, 12}, font, 0x0000FF, true}));
    EXPECT_TRUE(QRect(10, 5, 20, 7).contains(Ink(image)));
    bool red = false;
    for (int x = 10; x < 30; ++x) red |= QColor(image.pixel(x, 8)).name() == "#ff0000";
    EXPECT_TRUE(red) << "0x00BBGGRR";
}

TEST(PainterSurface, ArialHasTheWidthsOfItsKind) {
    testing::NeedQtApplication();
    QImage image(10, 10, QImage::Format_RGB32);
    QPainter painter(&image);
    PainterSurface surface(painter);
    LOGFONTA font{};
    font.lfHeight = -1000;
    std::strcpy(font.lfFaceName, "Arial");
    CSize extent;
    // Advance widths in thousandths of the character height, of that family and of those metric-compatible with it.
    for (const auto& [text, width] :
         std::vector<std::pair<const char*, int>>{{"W", 944}, {"i", 222}, {"0", 556}}) {
        SCOPED_TRACE(text);
        ASSERT_TRUE(surface.TextExtent(font, text, extent));
        EXPECT_NEAR(extent.cx, width, 3);
    }
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Painter, DrawingSurfaceContract, ::testing::Values(&MakeOnImage));
}

}  // namespace brindle
