// Device contexts and fonts, on the recording surface: a font of height -10 has bytes 5 wide and lines 10 high.
#include "brindle/framework/ui/dc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <vector>

#include "brindle/framework/ui/font.h"
#include "brindle/platform/fake/recording_surface.h"

inline void PrintTo(const CRect& r, std::ostream* out) {
    *out << r.left << " " << r.top << " " << r.right << " " << r.bottom;
}

namespace brindle {
namespace {

CFont Font(int height) {
    LOGFONTA record{};
    record.lfHeight = height;
    std::strcpy(record.lfFaceName, "Arial");
    CFont font;
    font.CreateFontIndirectA(&record);
    return font;
}

TEST(Font, HoldsTheRecordItWasMadeFrom) {
    CFont font;
    LOGFONTA record{};
    record.lfHeight = 7;
    EXPECT_EQ(font.GetLogFont(&record), 0);
    EXPECT_EQ(record.lfHeight, 7);
    EXPECT_EQ(font.DeleteObject(), 0);
    EXPECT_EQ(font.CreateFontIndirectA(nullptr), 0);

    std::memset(record.lfFaceName, 'x', sizeof record.lfFaceName);
    EXPECT_EQ(font.CreateFontIndirectA(&record), 1);
    LOGFONTA back{};
    EXPECT_EQ(font.GetLogFont(nullptr), 0);
    EXPECT_EQ(font.GetLogFont(&back), 1);
    EXPECT_EQ(back.lfHeight, 7);
    EXPECT_STREQ(back.lfFaceName, std::string(31, 'x').c_str()) << "ends with a zero in any case";

    EXPECT_EQ(font.DeleteObject(), 1);
    EXPECT_EQ(font.GetLogFont(&back), 0);
}

TEST(DeviceContext, StartsWithItsDefaults) {
    RecordingSurface surface;
    const CDC dc(surface);
    EXPECT_EQ(dc.GetTextColor(), 0u);
    EXPECT_EQ(dc.GetBkMode(), kGroundOpaque);
    EXPECT_EQ(dc.GetMapMode(), kMapPixels);
    EXPECT_EQ(surface.Text(), "");
}

TEST(DeviceContext, SettersReturnWhatWasBefore) {
    RecordingSurface surface;
    CDC dc(surface);
    CFont font = Font(-10);
    EXPECT_EQ(dc.SelectObject(&font), nullptr);
    EXPECT_EQ(dc.SelectObject(nullptr), &font);
    EXPECT_EQ(dc.SetTextColor(0xFF123456), 0u);
    EXPECT_EQ(dc.SetTextColor(0), 0x123456u);
    EXPECT_EQ(dc.SetBkMode(kGroundTransparent), kGroundOpaque);
    EXPECT_EQ(dc.SetBkMode(kGroundOpaque), kGroundTransparent);
    EXPECT_EQ(dc.SetMapMode(2), kMapPixels);
    EXPECT_EQ(dc.SetMapMode(kMapPixels), 2);
}

TEST(DeviceContext, KeptStatesComeBackInLayers) {
    RecordingSurface surface;
    CDC dc(surface);
    CFont font = Font(-10);
    EXPECT_FALSE(dc.RestoreDC());
    EXPECT_EQ(dc.SaveDC(), 1);
    dc.SelectObject(&font);
    dc.SetTextColor(1);
    dc.SetBkMode(kGroundTransparent);
    dc.SetMapMode(2);
    EXPECT_EQ(dc.SaveDC(), 2);
    dc.SelectObject(nullptr);
    dc.SetTextColor(2);
    EXPECT_EQ(dc.SaveDC(), 3);
    dc.ClipToRectangle({1, 2, 3, 4});

    EXPECT_FALSE(dc.RestoreDC(4));
    EXPECT_FALSE(dc.RestoreDC(0));
    EXPECT_FALSE(dc.RestoreDC(-4));
    EXPECT_TRUE(dc.RestoreDC(-2));
    EXPECT_EQ(dc.GetTextColor(), 1u);
    EXPECT_EQ(dc.SelectObject(&font), &font);
    EXPECT_TRUE(dc.RestoreDC(1));
    EXPECT_EQ(dc.GetTextColor(), 0u);
    EXPECT_EQ(dc.GetBkMode(), kGroundOpaque);
    EXPECT_EQ(dc.GetMapMode(), kMapPixels);
    EXPECT_EQ(dc.SelectObject(nullptr), nullptr);
    EXPECT_EQ(surface.Text(), "save\nsave\nsave\nclip 1 2 3 4\nrestore\nrestore\nrestore\n");
}

TEST(DeviceContext, MeasuresTextInARectangle) {
    struct Row {
        const char* label;
        const char* text;
        unsigned format;
        CRect expected;
    };
    const unsigned words = kTextWordBreak | kTextNoPrefix | kTextWordEllipsis;
    const std::vector<Row> rows = {
        {"one line", "abcd", words, {100, 200, 120, 210}},
        {"two by width", "abcd efgh", words, {100, 200, 120, 220}},
        {"in one line without word break", "abcd efgh", 0, {100, 200, 145, 210}},
        {"line breaks", "a\nbb\nccc", words, {100, 200, 115, 230}},
        {"wider than the rectangle, not cut", "abcdefghij", words, {100, 200, 150, 210}},
        {"empty", "", words, {100, 200, 100, 210}},
        {"an ampersand is a character", "&a", 0, {100, 200, 110, 210}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RecordingSurface surface;
        CDC dc(surface);
        CFont font = Font(-10);
        dc.SelectObject(&font);
        CRect rect{100, 200, 140, 260};
        EXPECT_EQ(dc.DrawTextA(row.text, rect, row.format | kTextCalculate), row.expected.Height());
        EXPECT_EQ(rect, row.expected);
        EXPECT_EQ(surface.Text(), "");
    }
}

TEST(DeviceContext, DrawsTextLineByLine) {
    struct Row {
        const char* label;
        const char* text;
        unsigned format;
        const char* expected;
    };
    const std::string tail = " within 100 200 140 260 font \"Arial\" -10 colour #0000FF\n";
    const std::vector<Row> rows = {
        {"left", "ab", 0, "text \"ab\" at 100 200"},
        {"centred", "abc", kTextCentre, "text \"abc\" at 112 200"},
        {"right", "abc", kTextRight, "text \"abc\" at 125 200"},
        {"cut", "abcdefghij", kTextWordBreak | kTextWordEllipsis, "text \"abcde...\" at 100 200"},
        {"too wide, centred", "abcdefghij", kTextCentre, "text \"abcdefghij\" at 95 200"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RecordingSurface surface;
        CDC dc(surface);
        CFont font = Font(-10);
        dc.SelectObject(&font);
        dc.SetTextColor(0xFF);
        dc.SetBkMode(kGroundTransparent);
        CRect rect{100, 200, 140, 260};
        EXPECT_EQ(dc.DrawTextA(row.text, rect, row.format), 10);
        EXPECT_EQ(surface.Text(), row.expected + tail);
        EXPECT_EQ(rect, (CRect{100, 200, 140, 260}));
    }
    RecordingSurface surface;
    CDC dc(surface);
    CRect rect{0, 0, 50, 100};
    EXPECT_EQ(dc.DrawTextA("ab cdefg\nh", rect, kTextWordBreak | kTextRight), 48);
    EXPECT_EQ(surface.Text(),
              "text \"ab\" at 34 0 within 0 0 50 100 font \"\" 0 colour #000000 opaque\n"
              "text \"cdefg\" at 10 16 within 0 0 50 100 font \"\" 0 colour #000000 opaque\n"
              "text \"h\" at 42 32 within 0 0 50 100 font \"\" 0 colour #000000 opaque\n");
}

TEST(DeviceContext, PutsOneLineAtAPoint) {
    RecordingSurface surface;
    CDC dc(surface);
    CFont font = Font(-10);
    dc.SelectObject(&font);
    EXPECT_EQ(dc.GetTextExtent("abc"), (CSize{15, 10}));
    EXPECT_TRUE(dc.ExtTextOutA(1, 2, {3, 4, 5, 6}, "a b"));
    EXPECT_EQ(surface.Text(),
              "text \"a b\" at 1 2 within 3 4 5 6 font \"Arial\" -10 colour #000000 opaque\n");
}

TEST(DeviceContext, ASurfaceWithoutFontsLeavesTextOut) {
    RecordingSurface surface;
    surface.fonts = false;
    CDC dc(surface);
    CRect rect{1, 2, 3, 4};
    EXPECT_EQ(dc.DrawTextA("a", rect, kTextCalculate), 0);
    EXPECT_EQ(rect, (CRect{1, 2, 3, 4}));
    EXPECT_EQ(dc.DrawTextA("a", rect, 0), 0);
    EXPECT_EQ(dc.GetTextExtent("a"), CSize());
    EXPECT_FALSE(dc.ExtTextOutA(1, 2, rect, "a"));
    EXPECT_EQ(surface.Text(), "");
}

}  // namespace
}  // namespace brindle
