// Font records to font objects and back, at several resolutions.
#include "brindle/widgets/ov_font.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "brindle/platform/screen.h"
#include "brindle/platform/service.h"

namespace {

class FixedScreen final : public brindle::Screen {
  public:
    explicit FixedScreen(int y) : m_y(y) {}
    int DotsPerInchX() override { return 1; }
    int DotsPerInchY() override { return m_y; }

  private:
    int m_y;
};

LOGFONTA Record(int height) {
    LOGFONTA record{};
    record.lfHeight = height;
    return record;
}

FontValue Property(IFontDisp& font, FontProperty property) {
    FontValue value;
    EXPECT_TRUE(font.GetProperty(property, value));
    return value;
}

TEST(OvFont, WithoutADesktopThereAre96DotsPerInch) {
    EXPECT_EQ(brindle::CurrentScreen().DotsPerInchX(), 96);
    EXPECT_EQ(brindle::CurrentScreen().DotsPerInchY(), 96);
}

TEST(OvFont, AnswersNullWithNothing) {
    LOGFONTA record = Record(5);
    EXPECT_EQ(OV_Font::DispatchToFont(nullptr, &record), 0);
    EXPECT_EQ(record.lfHeight, 5);
    IFontDisp* font = CreateFontDisp({});
    EXPECT_EQ(OV_Font::DispatchToFont(font, nullptr), 0);
    font->Release();
    EXPECT_EQ(OV_Font::FontToDispatch(nullptr), nullptr);
}

TEST(OvFont, SizesAreAQuarterPointLargerAndComeBack) {
    struct Row {
        const char* label;
        int dpi, height;
        std::int64_t size;  // in 1/10000 of a point
        int back;
    };
    const std::vector<Row> rows = {
        {"10 points at 96 dpi", 96, -13, 102'500, -13},
        {"positive heights come back negative", 96, 13, 102'500, -13},
        {"8 points", 96, -11, 82'500, -11},
        {"no height", 96, 0, 2'500, 0},
        {"10 points at 72 dpi", 72, -10, 102'500, -10},
        {"10 points at 120 dpi", 120, -17, 102'500, -17},
        {"rounded to whole points", 96, -14, 112'500, -15},
        {"too high", 1, -2147483647, 12'500, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        FixedScreen screen(row.dpi);
        const brindle::ScopedService<brindle::Screen> scope(brindle::SetScreen, screen);
        const LOGFONTA record = Record(row.height);
        IFontDisp* font = OV_Font::FontToDispatch(&record);
        EXPECT_EQ(std::get<std::int64_t>(Property(*font, kFontSize)), row.size);
        LOGFONTA back = Record(77);
        EXPECT_EQ(OV_Font::DispatchToFont(font, &back), 1);
        EXPECT_EQ(back.lfHeight, row.back);
        EXPECT_EQ(font->Release(), 0u) << "one reference, the caller's";
    }
}

TEST(OvFont, FractionsOfAPointAreDropped) {
    struct Row {
        const char* label;
        std::int64_t size;
        int height;
    };
    const std::vector<Row> rows = {
        {"whole", 100'000, -13},     {"almost the next", 109'999, -13}, {"the next", 110'000, -15},
        {"less than one", 9'999, 0}, {"negative", -100'000, 13},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IFontDisp* font = CreateFontDisp({"", row.size, 400, 0, false, false, false});
        LOGFONTA record{};
        OV_Font::DispatchToFont(font, &record);
        EXPECT_EQ(record.lfHeight, row.height);
        font->Release();
    }
}

TEST(OvFont, TheRestOfARecordGoesBothWays) {
    LOGFONTA record = Record(-13);
    std::strcpy(record.lfFaceName, "Arial");
    record.lfWeight = 600;
    record.lfItalic = 1;
    record.lfUnderline = 255;
    record.lfStrikeOut = 1;
    record.lfCharSet = 238;
    IFontDisp* font = OV_Font::FontToDispatch(&record);
    EXPECT_EQ(std::get<CStringA>(Property(*font, kFontName)), "Arial");
    EXPECT_EQ(std::get<std::int16_t>(Property(*font, kFontWeight)), 600);
    EXPECT_EQ(std::get<std::int16_t>(Property(*font, kFontCharset)), 238);

    LOGFONTA back{};
    back.lfWidth = 3;
    back.lfEscapement = 900;
    back.lfQuality = 4;
    std::strcpy(back.lfFaceName, "something much longer");
    EXPECT_EQ(OV_Font::DispatchToFont(font, &back), 1);
    EXPECT_STREQ(back.lfFaceName, "Arial");
    EXPECT_EQ(back.lfWeight, 600);
    EXPECT_EQ(back.lfItalic, 1);
    EXPECT_EQ(back.lfUnderline, 1);
    EXPECT_EQ(back.lfStrikeOut, 1);
    EXPECT_EQ(back.lfCharSet, 238);
    EXPECT_EQ(back.lfWidth, 3) << "what the object does not tell stays";
    EXPECT_EQ(back.lfEscapement, 900);
    EXPECT_EQ(back.lfQuality, 4);
    font->Release();
}

TEST(OvFont, FlagsAreClearedToo) {
    const LOGFONTA record = Record(-13);
    IFontDisp* font = OV_Font::FontToDispatch(&record);
    EXPECT_EQ(std::get<std::int16_t>(Property(*font, kFontWeight)), 0) << "not the one it was made with";
    EXPECT_EQ(std::get<CStringA>(Property(*font, kFontName)), "");
    LOGFONTA back{};
    back.lfItalic = back.lfUnderline = back.lfStrikeOut = 7;
    OV_Font::DispatchToFont(font, &back);
    EXPECT_EQ(back.lfItalic, 0);
    EXPECT_EQ(back.lfUnderline, 0);
    EXPECT_EQ(back.lfStrikeOut, 0);
    font->Release();
}

TEST(OvFont, BoldIsNotAsked) {
    IFontDisp* font = CreateFontDisp({"", 0, 551, 0, false, false, false});
    LOGFONTA record{};
    OV_Font::DispatchToFont(font, &record);
    EXPECT_EQ(record.lfWeight, 551);
    font->Release();
}

TEST(OvFont, ANameThatIsTooLongIsCut) {
    IFontDisp* font = CreateFontDisp({CStringA(std::string(40, 'x')), 0, 0, 0, false, false, false});
    LOGFONTA record{};
    OV_Font::DispatchToFont(font, &record);
    EXPECT_STREQ(record.lfFaceName, std::string(31, 'x').c_str());
    font->Release();
    std::memset(record.lfFaceName, 'y', sizeof record.lfFaceName);  // without a zero
    font = OV_Font::FontToDispatch(&record);
    EXPECT_EQ(std::get<CStringA>(Property(*font, kFontName)), std::string(32, 'y'));
    font->Release();
}

}  // namespace
