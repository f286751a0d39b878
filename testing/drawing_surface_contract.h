// What every drawing surface keeps to, as far as it can be asked; what it draws is its own tests' business. A test
// program instantiates the suite for its surface:
//   INSTANTIATE_TEST_SUITE_P(Recording, DrawingSurfaceContract, ::testing::Values(&MakeRecordingSurface));
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "brindle/platform/drawing_surface.h"

namespace brindle::testing {

// A surface together with whatever it needs to live.
class SurfaceUnderTest {
  public:
    virtual ~SurfaceUnderTest() = default;
    virtual DrawingSurface& Surface() = 0;
};
using MakeSurface = std::unique_ptr<SurfaceUnderTest> (*)();

class DrawingSurfaceContract : public ::testing::TestWithParam<MakeSurface> {
  protected:
    DrawingSurface& surface() { return m_surface->Surface(); }
    static LOGFONTA Arial(int height, int escapement = 0) {
        LOGFONTA font{};
        font.lfHeight = height;
        font.lfEscapement = font.lfOrientation = escapement;
        std::strcpy(font.lfFaceName, "Arial");
        return font;
    }
    CSize Extent(const LOGFONTA& font, std::string_view text) {
        CSize extent{-1, -1};
        EXPECT_TRUE(surface().TextExtent(font, text, extent));
        return extent;
    }

  private:
    std::unique_ptr<SurfaceUnderTest> m_surface = GetParam()();
};

TEST_P(DrawingSurfaceContract, TextGrowsAlongItsLine) {
    const LOGFONTA font = Arial(-20);
    const int line = Extent(font, "").cy;
    EXPECT_GE(line, 20);
    EXPECT_LE(line, 40);
    EXPECT_EQ(Extent(font, "").cx, 0);
    int last = 0;
    for (const char* text : {"W", "WW", "WWW i", "WWW ii", "WWW ii\xE9"}) {
        SCOPED_TRACE(text);
        const CSize extent = Extent(font, text);
        EXPECT_GT(extent.cx, last);
        EXPECT_EQ(extent.cy, line);
        last = extent.cx;
    }
}

TEST_P(DrawingSurfaceContract, LargerFontsAreLarger) {
    const CSize small = Extent(Arial(-10), "Text"), large = Extent(Arial(-20), "Text");
    EXPECT_GT(large.cx, small.cx);
    EXPECT_GT(large.cy, small.cy);
    EXPECT_GT(Extent(Arial(0), "Text").cx, 0) << "height 0 is a default";
}

TEST_P(DrawingSurfaceContract, ExtentsDoNotTurn) {
    const CSize upright = Extent(Arial(-20), "Some text");
    for (const int escapement : {900, -900, 450})
        EXPECT_EQ(Extent(Arial(-20, escapement), "Some text"), upright);
}

TEST_P(DrawingSurfaceContract, ZeroBytesAndAnyByteAreMeasuredAndDrawn) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_GT(Extent(Arial(-20), all).cx, 0);
    EXPECT_TRUE(surface().DrawRun({all, {0, 0}, {0, 0, 50, 50}, Arial(-20)}));
}

TEST_P(DrawingSurfaceContract, UnusualFontsAreDrawn) {
    LOGFONTA font = Arial(-2147483647 - 1);
    CSize extent;
    EXPECT_TRUE(surface().TextExtent(font, "a", extent));
    std::memset(font.lfFaceName, '\xFF', sizeof font.lfFaceName);
    font.lfFaceName[sizeof font.lfFaceName - 1] = '\0';
    font.lfHeight = 12;
    font.lfWeight = -5;
    font.lfWidth = 2147483647;
    EXPECT_TRUE(surface().TextExtent(font, "a", extent));
    EXPECT_TRUE(surface().DrawRun({"a", {0, 0}, {0, 0, 50, 50}, font}));
}

TEST_P(DrawingSurfaceContract, PicturesMayLieOutside) {
    Image image;
    image.width = image.height = 1;
    image.frames = 1;
    image.pixels = {0xFF000000};
    constexpr std::int32_t kFar = 1'000'000'000;
    surface().DrawPicture({image, 0, {0, 0, 1, 1}, {kFar, kFar, kFar + 1, kFar + 1}});
    surface().DrawPicture({image, 0, {0, 0, 1, 1}, {-kFar, -kFar, kFar, kFar}, true, true});
}

TEST_P(DrawingSurfaceContract, OperationsMayBeNested) {
    surface().Restore();  // nothing was saved: does nothing
    surface().Save();
    surface().ClipToRectangle({0, 0, 10, 10});
    surface().Save();
    {
        const ShapeScope shapes(surface(), true);
        const ShapePath path = ShapePath().Rectangle({1, 1, 5, 5});
        surface().ClipShapes(path, true);  // also: there is no earlier one
        surface().ClipShapes(path, false);
        surface().FillPath(path, Paint::Solid(0xFF000000));
        surface().UnclipShapes();
        surface().UnclipShapes();
        surface().FillArea({0, 0, 0, 0}, Paint::Vertical({0, 0, 0, 0}, 0, 0xFFFFFFFF));
        surface().FillPath(ShapePath(), Paint::Solid(0xFF000000));
        surface().DrawPath(ShapePath().Close(), {});
    }
    surface().Restore();
    surface().Restore();
}

}  // namespace brindle::testing
