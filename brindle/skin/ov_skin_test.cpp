// Values in and out: look-up, fall-back, conversion, the two families of overloads.
#include "brindle/skin/ov_skin.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr unsigned long kUntouched = 0x123456;

// A skin whose attribute "a" of "e" in the mode "default" has one text.
OVSkin SkinWith(const char* text) {
    OVSkin skin;
    skin.SetExactProp("default", "e", "a", CStringA(text));
    return skin;
}

OVSkin DefaultSkin() {
    OVSkin skin;
    EXPECT_TRUE(skin.LoadFromFile("no such file"));
    return skin;
}

template <class Value, class Mode>
std::string Get(const OVSkin& skin, const Mode& mode, const char* element, const char* attribute) {
    Value value = static_cast<Value>(77);
    const bool found = skin.GetExactProp(mode, element, attribute, value);
    if (found) return std::to_string(value);
    EXPECT_EQ(value, static_cast<Value>(77)) << "unchanged on failure";
    return "none";
}

template <class Mode>
std::string GetText(const OVSkin& skin, const Mode& mode, const char* element, const char* attribute) {
    CStringA text = "unchanged";
    const bool found = skin.GetExactProp(mode, element, attribute, text);
    if (found) return text.str();
    EXPECT_EQ(text, "unchanged");
    return "none";
}

TEST(OVSkinTest, NumbersFallBackToTheDefaultModeAndTextsDoNot) {
    const OVSkin skin = DefaultSkin();
    const struct {
        const char* mode;
        const char* element;
        const char* attribute;
        const char* number;
        const char* text;
    } rows[] = {
        {"checked", "button", "bordersize", "2", "none"},      // no such mode
        {"pressed", "button", "bordersize", "2", "none"},      // no such element in the mode
        {"pressed", "mark", "thickness", "2", "2"},            // the mode's own
        {"pressed", "mark", "bordersize", "none", "none"},     // nowhere
        {"default", "button", "fillstyle", "2", "2"},          // the default mode itself
        {"default", "button", "Fillstyle", "none", "none"},    // case counts
        {"Default", "button", "fillstyle", "2", "none"},       // in mode names too
        {"default", "Button", "fillstyle", "none", "none"},    // and in elements
        {"", "TimeFont1", "lfHeight", "-13", "none"},          // an empty mode name is a name
        {"default", "TimeFont1", "lfFaceName", "0", "Arial"},  // no number reads as 0
    };
    for (const auto& row : rows) {
        const std::string label = std::string(row.mode) + "/" + row.element + "/" + row.attribute;
        EXPECT_EQ(Get<int>(skin, CStringA(row.mode), row.element, row.attribute), row.number) << label;
        EXPECT_EQ(Get<long>(skin, CStringA(row.mode), row.element, row.attribute), row.number) << label;
        EXPECT_EQ(GetText(skin, CStringA(row.mode), row.element, row.attribute), row.text) << label;
    }
}

TEST(OVSkinTest, AnAttributeMissingInTheModeFallsBackToo) {
    OVSkin skin = SkinWith("5");
    skin.SetExactProp("pressed", "e", "other", CStringA("1"));
    EXPECT_EQ(Get<int>(skin, CStringA("pressed"), "e", "a"), "5");
    EXPECT_EQ(Get<unsigned char>(skin, CStringA("pressed"), "e", "a"), "5");
    EXPECT_EQ(Get<unsigned long>(SkinWith("#010000"), CStringA("pressed"), "e", "a"), "1");
    EXPECT_EQ(Get<unsigned long>(SkinWith("#010000"), CStringA("pressed"), "e", "b"), "none");
    EXPECT_EQ(Get<unsigned char>(skin, CStringA("pressed"), "e", "b"), "none");
}

TEST(OVSkinTest, NumbersAreReadAsFarAsTheyGo) {
    const struct {
        const char* text;
        const char* byte;
        const char* number;
    } rows[] = {
        {"", "0", "0"},
        {"0", "0", "0"},
        {"300", "44", "300"},  // the low 8 bits
        {"-1", "255", "-1"},
        {"256", "0", "256"},
        {" 12px", "12", "12"},
        {"abc", "0", "0"},
        {"+7", "7", "7"},
        {"0x10", "0", "0"},
        {"99999999999", "255", "2147483647"},
        {"-99999999999", "0", "-2147483648"},
    };
    for (const auto& row : rows) {
        const OVSkin skin = SkinWith(row.text);
        EXPECT_EQ(Get<unsigned char>(skin, 0, "e", "a"), row.byte) << row.text;
        EXPECT_EQ(Get<int>(skin, 0, "e", "a"), row.number) << row.text;
        EXPECT_EQ(Get<long>(skin, 0, "e", "a"), row.number) << row.text;
    }
}

TEST(OVSkinTest, ColoursAreReadByTheLengthOfTheirText) {
    const struct {
        const char* text;
        unsigned long colour;
    } rows[] = {
        {"#ffffff", 0xFFFFFF},
        {"ffffff", 0xFFFFFF},
        {"Xffffff", 0xFFFFFF},  // the first of seven is not looked at
        {"#fff", 0},
        {"", 0},
        {"#", 0},
        {"#ffff", 0},
        {"#12345", 0x452300},
        {"#1234567", 0},  // six characters: "#1" is no number
        {"#FF0000", 0x0000FF},
        {"#00fF00", 0x00FF00},
        {"#0000ff", 0xFF0000},
        {"123456", 0x563412},
        {"#zz0000", 0},
        {"#1z0000", 1},
        {"#z10000", 0},
        {"#00-1ff", 0xFF0000},
        {"# f00f0", 0xF00000},
        {"0x1234", 0x341200},
        {"#0x1z\xE9g", 0x0100},
    };
    for (const auto& row : rows) {
        unsigned long colour = kUntouched;
        EXPECT_TRUE(SkinWith(row.text).GetExactProp("default", "e", "a", colour)) << row.text;
        EXPECT_EQ(colour, row.colour) << row.text;
    }
}

TEST(OVSkinTest, ColoursAreWrittenInCapitalsRedFirst) {
    const struct {
        unsigned long colour;
        const char* text;
    } rows[] = {{0, "#000000"},        {0xFF, "#FF0000"},       {0xFF00, "#00FF00"},  {0xFF0000, "#0000FF"},
                {0x0A0B0C, "#0C0B0A"}, {0xFF000001, "#010000"}, {0xABCDEF, "#EFCDAB"}};
    for (const auto& row : rows) {
        OVSkin skin;
        EXPECT_TRUE(skin.SetExactProp("m", "e", "a", row.colour));
        EXPECT_EQ(GetText(skin, CStringA("m"), "e", "a"), row.text);
        EXPECT_TRUE(skin.SetExactProp(2, "e", "a", row.colour));
        EXPECT_EQ(GetText(skin, CStringA("pressed"), "e", "a"), row.text);
    }
}

TEST(OVSkinTest, ModeNumbersHaveNames) {
    OVSkin skin;
    for (const char* mode : {"default", "checked", "pressed", "rule"})
        skin.SetExactProp(CStringA(mode), "e", "a", CStringA(mode));
    const std::pair<int, const char*> rows[] = {
        {0, "default"},         {1, "checked"}, {2, "pressed"},  {3, "rule"},
        {4, "default"},         {7, "default"}, {-1, "default"}, {-2147483647 - 1, "default"},
        {2147483647, "default"}};
    for (const auto& [number, name] : rows) EXPECT_EQ(GetText(skin, number, "e", "a"), name) << number;
}

TEST(OVSkinTest, EverySetterByNameAndByNumber) {
    OVSkin skin;
    EXPECT_TRUE(skin.SetExactProp("pressed", "e", "text", CStringA("#Ff")));
    EXPECT_TRUE(skin.SetExactProp("pressed", "e", "int", -5));
    EXPECT_TRUE(skin.SetExactProp("pressed", "e", "colour", 0x030201UL));
    EXPECT_TRUE(skin.SetExactProp(2, "n", "text", CStringA("")));
    EXPECT_TRUE(skin.SetExactProp(2, "n", "byte", static_cast<unsigned char>(200)));
    EXPECT_TRUE(skin.SetExactProp(2, "n", "int", -2147483647 - 1));
    EXPECT_TRUE(skin.SetExactProp(2, "n", "long", 0x1FFFFFFFFL));  // a long has 32 bits
    EXPECT_TRUE(skin.SetExactProp(2, "n", "colour", 0x0A0B0CUL));
    EXPECT_TRUE(skin.SetExactProp(-1, "n", "int", 1));
    const struct {
        const char* mode;
        const char* element;
        const char* attribute;
        const char* text;
    } rows[] = {{"pressed", "e", "text", "#Ff"},       {"pressed", "e", "int", "-5"},
                {"pressed", "e", "colour", "#010203"}, {"pressed", "n", "text", ""},
                {"pressed", "n", "byte", "200"},       {"pressed", "n", "int", "-2147483648"},
                {"pressed", "n", "long", "-1"},        {"pressed", "n", "colour", "#0C0B0A"},
                {"default", "n", "int", "1"}};
    for (const auto& row : rows)
        EXPECT_EQ(GetText(skin, CStringA(row.mode), row.element, row.attribute), row.text) << row.attribute;
}

TEST(OVSkinTest, GettersByNumberGiveWhatGettersByNameGive) {
    const OVSkin skin = SkinWith("#00012c");
    EXPECT_EQ(Get<unsigned long>(skin, 1, "e", "a"), Get<unsigned long>(skin, CStringA("checked"), "e", "a"));
    EXPECT_EQ(Get<unsigned long>(skin, 1, "e", "a"), std::to_string(0x2C0100));
    EXPECT_EQ(Get<unsigned char>(SkinWith("300"), 1, "e", "a"), "44");
    EXPECT_EQ(GetText(skin, 1, "e", "a"), "none");
    EXPECT_EQ(GetText(skin, 0, "e", "a"), "#00012c");
}

TEST(OVSkinTest, CopiesAreDeep) {
    OVSkin skin = SkinWith("1");
    const std::string before = skin.GetXML().str();
    OVSkin copy = skin;
    copy.SetExactProp("default", "e", "a", 2);
    copy.SetExactProp("new", "e", "a", 3);
    EXPECT_EQ(Get<int>(skin, 0, "e", "a"), "1");
    EXPECT_EQ(skin.GetXML().str(), before);
    skin = copy;
    EXPECT_EQ(Get<int>(skin, 0, "e", "a"), "2");
    EXPECT_EQ(GetText(skin, CStringA("new"), "e", "a"), "3");
    copy = OVSkin();
    EXPECT_EQ(Get<int>(copy, 0, "e", "a"), "none");
    EXPECT_EQ(Get<int>(skin, 0, "e", "a"), "2");
}

TEST(OVSkinTest, TheHookForHostsDoesNothing) {
    OVSkin skin = SkinWith("1");
    const std::string before = skin.GetXML().str();
    EXPECT_TRUE(skin.PrepNewSkin());
    EXPECT_EQ(skin.GetXML().str(), before);
    EXPECT_EQ(skin.GetError(), "");
}

}  // namespace
