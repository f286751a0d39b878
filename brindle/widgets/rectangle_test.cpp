// OV::Rectangle on the recording surface.
#include "brindle/widgets/rectangle.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/rounded_rectangle.h"
#include "testing/golden.h"

namespace brindle {

struct RectangleLayoutProbe {
    static std::vector<const void*> Fields(const OV::Rectangle& r) {
        return {&r.m_opacity, &r.m_roundness, &r.m_colour, &r.m_borderThickness, &r.m_borderColour};
    }
};

namespace {

using OV::Rectangle;

TEST(Rectangle, IsDrawnByItsRecipe) {
    struct Row {
        const char* label;
        std::function<void(Rectangle&)> set;
    };
    const std::vector<Row> rows = {
        {"as made", [](Rectangle&) {}},
        {"half transparent, body and outline",
         [](Rectangle& r) { r.SetOpacity(128), r.SetColor(0x102030), r.SetBorderColor(0x405060); }},
        {"no outline: the caption has more room", [](Rectangle& r) { r.SetBorderThickness(0); }},
        {"thick outline", [](Rectangle& r) { r.SetBorderThickness(5); }},
        {"negative outline", [](Rectangle& r) { r.SetBorderThickness(-3); }},
        {"more than half round is square", [](Rectangle& r) { r.SetRoundness(300); }},
        {"the low 8 bits of the opacity", [](Rectangle& r) { r.SetOpacity(0x1FF); }},
    };
    std::string all;
    for (const Row& row : rows) {
        Rectangle rectangle;
        rectangle.SetBounds({5, 5, 105, 45});
        rectangle.SetText("ab");
        rectangle.SetVerticalAlignment(OVDrawing::Top);
        row.set(rectangle);
        RecordingSurface surface;
        CDC dc(surface);
        rectangle.Draw(&dc, 1);
        EXPECT_EQ(rectangle.GetBounds().Height(), 40) << row.label << ": the bounds come back";
        all += "# " + std::string(row.label) + "\n" + surface.Text();
    }
    testing::ExpectGolden("rectangles.txt", all);
}

TEST(CornerRadius, IsAPercentageOfHalfTheSmallerSide) {
    struct Row {
        const char* label;
        CRect bounds;
        int roundness, expected;
    };
    const std::vector<Row> rows = {
        {"40 % of 40", {0, 0, 100, 40}, 40, 8},
        {"10 %", {0, 0, 100, 40}, 10, 2},
        {"cut towards zero", {0, 0, 100, 39}, 10, 1},
        {"the width is smaller", {0, 0, 20, 40}, 50, 5},
        {"all of it", {0, 0, 100, 40}, 100, 20},
        {"more than half of the height is none", {0, 0, 100, 40}, 300, 0},
        {"wide enough for more", {0, 0, 40, 100}, 200, 40},
        {"negative is none", {0, 0, 100, 40}, -10, 0},
        {"reversed", {100, 40, 0, 0}, 10, 0},
        {"beyond whole numbers", {0, 0, 2147483647, 2147483647}, 2147483647, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(CornerRadius(row.bounds, row.roundness), row.expected);
    }
}

TEST(Rectangle, CopiesHaveEverythingAndNoContextDrawsNothing) {
    Rectangle rectangle;
    rectangle.SetBounds({0, 0, 10, 10});
    rectangle.SetColor(0x123456);
    rectangle.Draw(nullptr, 1);
    Rectangle copy = rectangle, assigned;
    assigned = rectangle;
    std::string drawn[3];
    Rectangle* const all[] = {&rectangle, &copy, &assigned};
    for (int i = 0; i < 3; ++i) {
        RecordingSurface surface;
        CDC dc(surface);
        all[i]->Draw(&dc, 1);
        drawn[i] = surface.Text();
    }
    EXPECT_NE(drawn[0].find("fill solid #FF563412"), std::string::npos);
    EXPECT_EQ(drawn[1], drawn[0]);
    EXPECT_EQ(drawn[2], drawn[0]);
}

TEST(RectangleLayout, FieldsStandInTheirOrder) {
    const Rectangle rectangle;
    const std::vector<const void*> fields = RectangleLayoutProbe::Fields(rectangle);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
}

}  // namespace
}  // namespace brindle
