// The library's own font object.
#include "brindle/framework/ui/font_disp.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

FontValue Get(IFontDisp& font, long property) {
    FontValue value = CStringA("none");
    EXPECT_TRUE(font.GetProperty(property, value));
    return value;
}

TEST(FontObject, HasThePropertiesItWasMadeWith) {
    IFontDisp* font = CreateFontDisp({"Arial", 102'500, 700, 238, true, false, true});
    const std::vector<std::pair<long, FontValue>> rows = {
        {kFontName, CStringA("Arial")},
        {kFontSize, std::int64_t{102'500}},
        {kFontBold, true},
        {kFontItalic, true},
        {kFontUnderline, false},
        {kFontStrikethrough, true},
        {kFontWeight, std::int16_t{700}},
        {kFontCharset, std::int16_t{238}},
    };
    for (const auto& [property, expected] : rows) {
        SCOPED_TRACE(property);
        EXPECT_TRUE(Get(*font, property) == expected);
    }
    EXPECT_EQ(font->Release(), 0u);
}

TEST(FontObject, PropertiesCanBeSet) {
    IFontDisp* font = CreateFontDisp({});
    const std::vector<std::pair<long, FontValue>> rows = {
        {kFontName, CStringA("Courier")}, {kFontSize, std::int64_t{1}}, {kFontItalic, true},
        {kFontUnderline, true},           {kFontStrikethrough, true},   {kFontWeight, std::int16_t{551}},
        {kFontCharset, std::int16_t{2}},
    };
    for (const auto& [property, value] : rows) {
        SCOPED_TRACE(property);
        EXPECT_FALSE(Get(*font, property) == value);
        EXPECT_TRUE(font->PutProperty(property, value));
        EXPECT_TRUE(Get(*font, property) == value);
    }
    font->Release();
}

TEST(FontObject, BoldIsAMatterOfTheWeight) {
    IFontDisp* font = CreateFontDisp({});
    EXPECT_TRUE(font->PutProperty(kFontWeight, std::int16_t{550}));
    EXPECT_TRUE(Get(*font, kFontBold) == FontValue(false));
    EXPECT_TRUE(font->PutProperty(kFontWeight, std::int16_t{551}));
    EXPECT_TRUE(Get(*font, kFontBold) == FontValue(true));
    EXPECT_TRUE(font->PutProperty(kFontBold, true));
    EXPECT_TRUE(Get(*font, kFontWeight) == FontValue(std::int16_t{700}));
    EXPECT_TRUE(font->PutProperty(kFontBold, false));
    EXPECT_TRUE(Get(*font, kFontWeight) == FontValue(std::int16_t{400}));
    font->Release();
}

TEST(FontObject, RefusesWhatItDoesNotHave) {
    IFontDisp* font = CreateFontDisp({});
    FontValue value = true;
    for (const long property : {-1L, 1L, 9L}) {
        SCOPED_TRACE(property);
        EXPECT_FALSE(font->GetProperty(property, value));
        EXPECT_TRUE(value == FontValue(true));
        EXPECT_FALSE(font->PutProperty(property, value));
    }
    for (const long property : {kFontName, kFontSize, kFontWeight, kFontCharset}) {
        SCOPED_TRACE(property);
        EXPECT_FALSE(font->PutProperty(property, true));
    }
    for (const long property : {kFontBold, kFontItalic, kFontUnderline, kFontStrikethrough}) {
        SCOPED_TRACE(property);
        EXPECT_FALSE(font->PutProperty(property, CStringA("1")));
    }
    font->Release();
}

TEST(FontObject, CountsReferences) {
    IFontDisp* font = CreateFontDisp({});
    EXPECT_EQ(font->AddRef(), 2u);
    EXPECT_EQ(font->Release(), 1u);
    EXPECT_EQ(font->Release(), 0u);
}

}  // namespace
