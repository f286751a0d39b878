// The frame recipe, operation by operation, and the rounded rectangle it shares.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/ov_drawing.h"
#include "brindle/widgets/rounded_rectangle.h"
#include "testing/golden.h"

namespace brindle {
namespace {

constexpr unsigned long kFirst = 0xC86432, kSecond = 0x3CC8F0, kBorder = 0x143C14;

struct Frame {
    const char* label;
    CRect rect{5, 5, 105, 45};
    int fillMode = 0;
    int borderWidth = 2;
    int penStyle = 0;
    bool hollow = false;
    CPoint roundness{10, 10};
};

std::string Drawn(const Frame& frame) {
    RecordingSurface surface;
    CDC dc(surface);
    EXPECT_EQ(OVDrawing::DrawFrame(&dc, frame.rect, kFirst, kSecond, kBorder, frame.borderWidth,
                                   frame.penStyle, frame.fillMode, frame.hollow, frame.roundness),
              1);
    return surface.Text();
}

TEST(Frame, IsDrawnByItsRecipe) {
    const std::vector<Frame> rows = {
        {.label = "solid"},
        {.label = "horizontal gradient", .fillMode = 1},
        {.label = "vertical gradient", .fillMode = 2},
        {.label = "glossy", .fillMode = 3},
        {.label = "any other fill is vertical", .fillMode = 4, .borderWidth = 0},
        {.label = "negative fill is vertical", .fillMode = -1, .borderWidth = 0},
        {.label = "hollow: border only", .hollow = true},
        {.label = "hollow and glossy: the gloss stays", .fillMode = 3, .hollow = true},
        {.label = "no border", .borderWidth = 0},
        {.label = "negative border", .borderWidth = -1},
        {.label = "reversed rectangle", .rect{105, 45, 5, 5}, .fillMode = 2},
        {.label = "odd height: half units", .rect{5, 5, 106, 46}, .fillMode = 3, .roundness{0, 0}},
        {.label = "empty rectangle", .rect{5, 5, 5, 5}, .fillMode = 1},
    };
    std::string all;
    for (const Frame& row : rows) all += "# " + std::string(row.label) + "\n" + Drawn(row);
    testing::ExpectGolden("frames.txt", all);
}

TEST(Frame, PenStyles) {
    struct Row {
        int style;
        const char* expected;
    };
    for (const Row& row : std::vector<Row>{{0, ""},
                                           {1, " dash round"},
                                           {2, " dot round"},
                                           {3, " dash-dot round"},
                                           {4, " dash-dot-dot round"},
                                           {5, ""},
                                           {-1, ""}}) {
        SCOPED_TRACE(row.style);
        const std::string drawn = Drawn({.label = "", .penStyle = row.style});
        EXPECT_NE(drawn.find(std::string("draw #FF143C14 width 2") + row.expected + "\n"), std::string::npos)
            << drawn;
    }
}

TEST(Frame, ByBrushesAndAPen) {
    struct Row {
        const char* label;
        int angle;
        std::uint32_t style;
        int fillMode;    // of the recipe that is expected
        bool exchanged;  // its colours
        bool hollow;
    };
    const std::vector<Row> rows = {
        {"-2: glossy", -2, 0, 3, false, false},       {"-1: solid", -1, 0, 0, false, false},
        {"-3: solid", -3, 0, 0, false, false},        {"0: vertical", 0, 0, 2, true, false},
        {"90: horizontal", 90, 0, 1, true, false},    {"1: horizontal", 1, 0, 1, true, false},
        {"179: horizontal", 179, 0, 1, true, false},  {"180: vertical", 180, 0, 2, true, false},
        {"181: horizontal", 181, 0, 1, true, false},  {"hollow", -1, 1, 0, false, true},
        {"hollow and glossy", -2, 1, 3, false, true}, {"hatched is not hollow", -1, 2, 0, false, false},
    };
    const CRect rect{5, 5, 105, 45};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RecordingSurface adapted, direct;
        CDC adaptedDc(adapted), directDc(direct);
        LOGBRUSH first{row.style, kFirst, 0}, second{1, kSecond, 0};
        LOGPEN pen{2, {9, 3}, kBorder};  // the width is the vertical 3
        EXPECT_EQ(OVDrawing::DrawFrame(&adaptedDc, rect, first, second, row.angle, pen, {40, 10}), 1);
        OVDrawing::DrawFrame(&directDc, rect, row.exchanged ? kSecond : kFirst,
                             row.exchanged ? kFirst : kSecond, kBorder, 3, 2, row.fillMode, row.hollow,
                             {40, 10});
        EXPECT_EQ(adapted.Text(), direct.Text());
    }
}

TEST(Frame, NothingIsDrawnWithoutAContext) {
    EXPECT_EQ(OVDrawing::DrawFrame(nullptr, {}, 0, 0, 0, 1, 0, 0, false, {}), 1);
}

TEST(RoundedRectangle, CutsItsCoordinatesAndHalvesItsCorners) {
    struct Row {
        const char* label;
        RectF rect;
        int cornerX, cornerY;
        RectF first;    // the box of the first arc
        PointF bottom;  // where the lower edge begins
    };
    const std::vector<Row> rows = {
        {"half units go", {5.5f, 5.5f, 99, 39}, 10, 10, {5, 5, 10, 10}, {99, 44}},
        {"odd corners lose their half", {5.5f, 5.5f, 99, 39}, 15, 11, {5, 5, 14, 10}, {97, 44}},
        {"negative corners round down first", {5.5f, 5.5f, 99, 39}, -15, -15, {5, 5, 16, 16}, {96, 44}},
        {"at most half of the sides", {5.5f, 5.5f, 99, 39}, 1000, 1000, {5, 5, 98, 38}, {55, 44}},
        {"negative places are cut towards zero", {-5.5f, -5.5f, 99, 39}, 0, 0, {-5, -5, 0, 0}, {94, 34}},
        {"fractions of sides go", {0, 0, 99.9f, 39.9f}, 0, 0, {0, 0, 0, 0}, {99, 39}},
        {"a negative width counts as positive", {0, 0, -99, 39}, 10, 10, {0, 0, 10, 10}, {94, 39}},
        {"nothing", {0.5f, 0.5f, -1, -1}, 10, 10, {0, 0, 0, 0}, {1, -1}},
        {"beyond whole numbers", {3e9f, 0, 1, 1}, 0, 0, {2147483648.0f, 0, 0, 0}, {2147483648.0f, 1}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const auto steps = RoundedRectangle(row.rect, row.cornerX, row.cornerY).Steps();
        ASSERT_EQ(steps.size(), 9u);
        EXPECT_EQ(steps[0].box.x, row.first.x);
        EXPECT_EQ(steps[0].box.y, row.first.y);
        EXPECT_EQ(steps[0].box.width, row.first.width);
        EXPECT_EQ(steps[0].box.height, row.first.height);
        EXPECT_EQ(steps[5].from.x, row.bottom.x);
        EXPECT_EQ(steps[5].from.y, row.bottom.y);
    }
}

TEST(RoundedRectangle, OneRadiusIsLimitedByTheHeightOnly) {
    struct Row {
        const char* label;
        RectF rect;
        int radius;
        float across;
    };
    const std::vector<Row> rows = {
        {"as given", {0, 0, 99, 39}, 5, 10},
        {"half of the height", {0, 0, 99, 39}, 20, 38},
        {"wider than the width", {0, 0, 10, 39}, 15, 30},
        {"none", {0, 0, 99, 39}, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const auto steps = RoundedRectangle(row.rect, row.radius).Steps();
        EXPECT_EQ(steps[0].box.width, row.across);
        EXPECT_EQ(steps[0].box.height, row.across);
    }
}

TEST(Colours, BecomeArgb) {
    EXPECT_EQ(ArgbOf(0x123456), 0xFF563412u);
    EXPECT_EQ(ArgbOf(0xFF123456, 0), 0x00563412u) << "the top byte is not the alpha";
    EXPECT_EQ(ArgbOf(0x0000FF, 0x1C8), 0xC8FF0000u) << "the low 8 bits";
    EXPECT_EQ(ArgbOf(0, -1), 0xFF000000u);
    EXPECT_EQ(WhiteWithAlpha(0x42), 0x42FFFFFFu);
}

}  // namespace
}  // namespace brindle
