// Scaled and turned fonts, and the placement of text. On the recording surface a font of height -10 has bytes 5 wide
// and lines 10 high.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/framework/ui/font.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/ov_drawing.h"

namespace brindle {
namespace {

using H = OVDrawing::HorizontalAlignment;
using V = OVDrawing::VerticalAlignment;
using E = OVDrawing::Escapement;

LOGFONTA Record(int height) {
    LOGFONTA record{};
    record.lfHeight = height;
    std::strcpy(record.lfFaceName, "Arial");
    return record;
}

TEST(CreateFont, ScalesAndTurnsTheRecord) {
    struct Row {
        const char* label;
        int height;
        float scale;
        int escapement;
        int expectedHeight, expectedTurn;  // the record's own turn is 450/300
    };
    const std::vector<Row> rows = {
        {"default is upright", -13, 1, 0, -13, 0},
        {"horizontal", -13, 1, 1, -13, 0},
        {"upwards", -13, 1, 2, -13, 900},
        {"downwards", -13, 1, 3, -13, -900},
        {"beyond them: as given", -13, 1, 4, -13, 450},
        {"negative: as given", -13, 1, -1, -13, 450},
        {"cut towards zero", -13, 1.5f, 0, -19, 0},
        {"a positive height too", 13, 1.5f, 0, 19, 0},
        {"single precision", 100, 0.29f, 0, 29, 0},
        {"to nothing", -13, 0, 0, 0, 0},
        {"beyond whole numbers", 2000000000, 2, 0, 2147483647, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        LOGFONTA record = Record(row.height);
        record.lfEscapement = 450;
        record.lfOrientation = 300;
        record.lfWeight = 700;
        CFont font;
        EXPECT_EQ(OVDrawing::CreateFontA(font, record, row.scale, static_cast<E>(row.escapement)), 1);
        LOGFONTA made{};
        EXPECT_EQ(font.GetLogFont(&made), 1);
        EXPECT_EQ(made.lfHeight, row.expectedHeight);
        EXPECT_EQ(made.lfEscapement, row.expectedTurn);
        EXPECT_EQ(made.lfOrientation, row.expectedTurn == 450 ? 300 : row.expectedTurn);
        EXPECT_EQ(made.lfWeight, 700) << "the rest stays";
        EXPECT_STREQ(made.lfFaceName, "Arial");
        EXPECT_EQ(record.lfHeight, row.height) << "the caller's record too";
    }
}

// What DrawTextA draws, without what all rows share.
std::string Placed(const char* text, const CRect& rect, int horizontal, int vertical, int escapement,
                   int mapMode) {
    RecordingSurface surface;
    CDC dc(surface);
    dc.SetBkMode(kGroundTransparent);
    dc.SetMapMode(mapMode);
    CFont font;
    const LOGFONTA record = Record(-10);
    font.CreateFontIndirectA(&record);
    OVDrawing::DrawTextA(&dc, text, rect, static_cast<H>(horizontal), static_cast<V>(vertical),
                         static_cast<E>(escapement), &font);
    std::string drawn = surface.Text();
    const std::string tail = " font \"Arial\" -10 colour #000000\n";
    for (std::size_t at; (at = drawn.find(tail)) != std::string::npos;) drawn.replace(at, tail.size(), ";");
    return drawn;
}

struct Placement {
    const char* label;
    const char* text;
    CRect rect;
    int horizontal, vertical;
    const char* expected;
};

void ExpectPlaced(const std::vector<Placement>& rows, int escapement, int mapMode = kMapPixels) {
    for (const Placement& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Placed(row.text, row.rect, row.horizontal, row.vertical, escapement, mapMode),
                  row.expected);
    }
}

TEST(DrawUpright, PlacesTextByItsAlignments) {
    constexpr CRect kRect{100, 200, 140, 230};
    const std::vector<Placement> rows = {
        {"left top", "abc", kRect, 0, 2, R"(text "abc" at 100 200 within 100 200 115 210;)"},
        {"left middle", "abc", kRect, 0, 1, R"(text "abc" at 100 210 within 100 210 115 220;)"},
        {"left bottom", "abc", kRect, 0, 0, R"(text "abc" at 100 220 within 100 220 115 230;)"},
        {"centre, half cut towards zero", "abc", kRect, 1, 2,
         R"(text "abc" at 112 200 within 112 200 127 210;)"},
        {"right", "abc", kRect, 2, 2, R"(text "abc" at 125 200 within 125 200 140 210;)"},
        {"lines", "ab cdefgh", kRect, 1, 1,
         R"(text "ab" at 115 205 within 105 205 135 225;text "cdefgh" at 105 215 within 105 205 135 225;)"},
        {"lines, right", "ab cdefgh", kRect, 2, 0,
         R"(text "ab" at 130 210 within 110 210 140 230;text "cdefgh" at 110 220 within 110 210 140 230;)"},
        {"too wide keeps the right edge", "abcdefghij", kRect, 0, 2,
         R"(text "abcde..." at 100 200 within 100 200 140 210;)"},
        // Kept: the centring has moved the left edge out before the right one is brought back.
        {"too wide, centred", "abcdefghij", kRect, 1, 2,
         R"(text "abcdef..." at 95 200 within 95 200 140 210;)"},
        {"too wide, right", "abcdefghij", kRect, 2, 2,
         R"(text "abcdefghij" at 90 200 within 90 200 140 210;)"},
        {"too high keeps the bottom edge", "a\nb\nc\nd", kRect, 0, 1,
         R"(text "a" at 100 200 within 100 200 105 230;text "b" at 100 210 within 100 200 105 230;)"
         R"(text "c" at 100 220 within 100 200 105 230;text "d" at 100 230 within 100 200 105 230;)"},
        {"as high as the room",
         "a\nb\nc",
         {100, 200, 140, 230},
         0,
         0,
         R"(text "a" at 100 200 within 100 200 105 230;text "b" at 100 210 within 100 200 105 230;)"
         R"(text "c" at 100 220 within 100 200 105 230;)"},
        {"odd room: up by the smaller half",
         "abc",
         {100, 200, 140, 231},
         0,
         1,
         R"(text "abc" at 100 210 within 100 210 115 220;)"},
        {"an ampersand is a character", "&a", kRect, 0, 2, R"(text "&a" at 100 200 within 100 200 110 210;)"},
        {"alignments beyond the three: left, top", "abc", kRect, 3, 3,
         R"(text "abc" at 100 200 within 100 200 115 210;)"},
    };
    ExpectPlaced(rows, 0);
    ExpectPlaced(rows, 1);
    ExpectPlaced(rows, 4);
    ExpectPlaced(rows, 0, 2);
}

// 40 wide, 61 high; "abcd" is 20 along and 10 across.
constexpr CRect kTall{100, 200, 140, 261};

TEST(DrawTurned, DownwardsInPixels) {
    ExpectPlaced(
        {
            {"middle", "abcd", kTall, 0, 1, R"(text "abcd" at 110 220 within 100 200 140 261;)"},
            {"middle, too long: from the top", "abcdefghijklmn", kTall, 0, 1,
             R"(text "abcdefghijklmn" at 110 200 within 100 200 140 261;)"},
            {"bottom", "abcd", kTall, 0, 0, R"(text "abcd" at 110 241 within 100 200 140 261;)"},
            {"top", "abcd", kTall, 0, 2, R"(text "abcd" at 110 200 within 100 200 140 261;)"},
            {"centre", "abcd", kTall, 1, 2, R"(text "abcd" at 125 200 within 100 200 140 261;)"},
            {"right", "abcd", kTall, 2, 2, R"(text "abcd" at 140 200 within 100 200 140 261;)"},
        },
        3);
}

TEST(DrawTurned, DownwardsInAnotherMapping) {
    ExpectPlaced(
        {
            {"middle", "abcd", kTall, 0, 1, R"(text "abcd" at 110 180 within 100 200 140 261;)"},
            {"bottom", "abcd", kTall, 0, 0, R"(text "abcd" at 110 281 within 100 200 140 261;)"},
            {"top", "abcd", kTall, 0, 2, R"(text "abcd" at 110 200 within 100 200 140 261;)"},
            {"centre", "abcd", kTall, 1, 2, R"(text "abcd" at 125 200 within 100 200 140 261;)"},
            {"right", "abcd", kTall, 2, 2, R"(text "abcd" at 140 200 within 100 200 140 261;)"},
            {"a rectangle that runs upwards",
             "abcd",
             {100, 261, 140, 200},
             0,
             1,
             R"(text "abcd" at 110 241 within 100 261 140 200;)"},
        },
        3, 2);
}

TEST(DrawTurned, UpwardsInPixels) {
    ExpectPlaced(
        {
            {"middle", "abcd", kTall, 0, 1, R"(text "abcd" at 100 240 within 100 200 140 261;)"},
            {"middle, too long: past the bottom", "abcdefghijklmn", kTall, 0, 1,
             R"(text "abcdefghijklmn" at 100 270 within 100 200 140 261;)"},
            {"top", "abcd", kTall, 0, 2, R"(text "abcd" at 100 220 within 100 200 140 261;)"},
            {"bottom", "abcd", kTall, 0, 0, R"(text "abcd" at 100 261 within 100 200 140 261;)"},
            {"centre", "abcd", kTall, 1, 0, R"(text "abcd" at 115 261 within 100 200 140 261;)"},
            {"right", "abcd", kTall, 2, 0, R"(text "abcd" at 130 261 within 100 200 140 261;)"},
        },
        2);
}

TEST(DrawTurned, UpwardsInAnotherMapping) {
    ExpectPlaced(
        {
            {"middle", "abcd", kTall, 0, 1, R"(text "abcd" at 100 160 within 100 200 140 261;)"},
            {"top", "abcd", kTall, 0, 2, R"(text "abcd" at 100 180 within 100 200 140 261;)"},
            {"bottom", "abcd", kTall, 0, 0, R"(text "abcd" at 100 261 within 100 200 140 261;)"},
            {"centre", "abcd", kTall, 1, 0, R"(text "abcd" at 115 261 within 100 200 140 261;)"},
            {"right", "abcd", kTall, 2, 0, R"(text "abcd" at 130 261 within 100 200 140 261;)"},
        },
        2, 2);
}

TEST(DrawText, NothingToDraw) {
    OVDrawing::DrawTextA(nullptr, "abc", {}, OVDrawing::Left, OVDrawing::Top, OVDrawing::Default, nullptr);
    EXPECT_EQ(Placed("", kTall, 0, 0, 0, kMapPixels), "");
    EXPECT_EQ(Placed("", kTall, 0, 0, 2, kMapPixels), "");
}

TEST(DrawText, TheFontSelectedBeforeComesBack) {
    RecordingSurface surface;
    CDC dc(surface);
    CFont before, given;
    const LOGFONTA record = Record(-10);
    before.CreateFontIndirectA(&record);
    dc.SelectObject(&before);
    for (const E escapement : {OVDrawing::Default, OVDrawing::Vertical90}) {
        OVDrawing::DrawTextA(&dc, "a", kTall, OVDrawing::Left, OVDrawing::Top, escapement, &given);
        EXPECT_EQ(dc.SelectObject(&before), &before);
    }
    surface.Clear();
    OVDrawing::DrawTextA(&dc, "a", kTall, OVDrawing::Left, OVDrawing::Top, OVDrawing::Default, nullptr);
    EXPECT_NE(surface.Text().find("font \"Arial\" -10"), std::string::npos) << "no font: the selected one";
}

}  // namespace
}  // namespace brindle
