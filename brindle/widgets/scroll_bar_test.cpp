// The scroll bar: where its parts are, and the recipe.
#include "brindle/widgets/scroll_bar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/fake/recording_surface.h"
#include "testing/golden.h"

namespace brindle {
namespace {

constexpr int kMax = 2147483647, kMin = -kMax - 1;

TEST(ScrollBar, PartsStandAlongTheRightSide) {
    struct Row {
        const char* label;
        CRect panel;
        int width, contents, offset;
        CRect up, down, thumb;
    };
    const CRect panel{10, 10, 110, 210};
    const CRect up{90, 10, 110, 30}, down{90, 190, 110, 210};
    const std::vector<Row> rows = {
        {"at the top", panel, 20, 300, 0, up, down, {90, 30, 110, 50}},
        {"halfway: 140 of way by 100 of 200", panel, 20, 300, -100, up, down, {90, 100, 110, 120}},
        {"at the end", panel, 20, 300, -200, up, down, {90, 170, 110, 190}},
        {"cut towards the top: 0.7", panel, 20, 300, -1, up, down, {90, 30, 110, 50}},
        {"1.4", panel, 20, 300, -2, up, down, {90, 31, 110, 51}},
        {"half of an odd height is cut: 139 by 3 of 201",
         {0, 0, 100, 199},
         20,
         300,
         -3,
         {80, 0, 100, 20},
         {80, 179, 100, 199},
         {80, 22, 100, 42}},
        {"wide", panel, 30, 300, -200, {80, 10, 110, 40}, {80, 180, 110, 210}, {80, 150, 110, 180}},
        {"too short for its parts: the thumb goes up",
         {0, 0, 50, 40},
         20,
         120,
         -100,
         {30, 0, 50, 20},
         {30, 20, 50, 40},
         {30, 0, 50, 20}},
        {"no width", panel, 0, 300, -100, {110, 10, 110, 10}, {110, 210, 110, 210}, {110, 110, 110, 110}},
        {"no range",
         {0, 0, 100, 200},
         20,
         100,
         -50,
         {80, 0, 100, 20},
         {80, 180, 100, 200},
         {80, 20, 100, 40}},
        {"a negative width",
         {0, 0, 100, 200},
         -20,
         300,
         0,
         {120, 0, 100, -20},
         {120, 220, 100, 200},
         {120, -20, 100, -40}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ScrollBarLook look = PlaceScrollBar(row.panel, row.width, row.contents, row.offset);
        EXPECT_EQ(look.track,
                  (CRect{row.panel.right - row.width, row.panel.top, row.panel.right, row.panel.bottom}));
        EXPECT_EQ(look.upArrow.place, row.up);
        EXPECT_EQ(look.downArrow.place, row.down);
        EXPECT_EQ(look.thumb.place, row.thumb) << look.thumb.place.top;
        EXPECT_FALSE(look.upArrow.held || look.downArrow.held || look.thumb.held);
    }
}

TEST(ScrollBar, AnyNumbersWillDo) {
    const std::vector<int> numbers = {kMin, kMin + 1, -1, 0, 1, kMax - 1, kMax};
    for (const int side : numbers)
        for (const int width : numbers)
            for (const int contents : numbers)
                for (const int offset : numbers) {
                    const ScrollBarLook look = PlaceScrollBar({0, side, side, kMax}, width, contents, offset);
                    ASSERT_EQ(look.upArrow.place.Width(), width);
                    ASSERT_EQ(look.thumb.place.Height(), width);
                    RecordingSurface surface;
                    DrawScrollBar(surface, look);
                    ASSERT_EQ(surface.Text().find("error"), std::string::npos);
                }
}

TEST(ScrollBar, IsDrawnByItsRecipe) {
    struct Row {
        const char* label;
        void (*set)(ScrollBarLook&);
    };
    const std::vector<Row> rows = {
        {"not held", [](ScrollBarLook&) {}},
        {"up arrow held", [](ScrollBarLook& l) { l.upArrow.held = true; }},
        {"down arrow held", [](ScrollBarLook& l) { l.downArrow.held = true; }},
        {"thumb held", [](ScrollBarLook& l) { l.thumb.held = true; }},
        {"15 wide: a third is 5, the point in the middle of a pixel",
         [](ScrollBarLook& l) {
             l = PlaceScrollBar({10, 10, 110, 210}, 15, 300, -100);
         }},
        {"16 wide: a third is cut",
         [](ScrollBarLook& l) {
             l = PlaceScrollBar({10, 10, 110, 210}, 16, 300, 0);
         }},
    };
    std::string all;
    for (const Row& row : rows) {
        ScrollBarLook look = PlaceScrollBar({10, 10, 110, 210}, 20, 300, -100);
        row.set(look);
        RecordingSurface surface;
        DrawScrollBar(surface, look);
        all += "# " + std::string(row.label) + "\n" + surface.Text();
    }
    testing::ExpectGolden("scroll_bars.txt", all);
}

}  // namespace
}  // namespace brindle
