#include "host/skin_document.h"

#include <gtest/gtest.h>

#include "host/written_site_test.h"

namespace brindle::host {
namespace {

std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += text + "; ";
    return all;
}

TEST(SkinDocument, ListsTheValuesOfASkinInOrder) {
    OVSkin skin;
    skin.LoadFromStr("<skin><b><y q='1' p='2'/></b><a><x z='3'/></a></skin>");
    std::vector<SkinValue> values;
    ASSERT_TRUE(ListSkinValues(skin, values));
    std::string all;
    for (const SkinValue& value : values)
        all += value.mode + "/" + value.element + "/" + value.attribute + "=" + value.text + " ";
    EXPECT_EQ(all, "b/y/p=2 b/y/q=1 a/x/z=3 ");
    skin.SetExactProp("a", "not a name", "z", 1);
    EXPECT_FALSE(ListSkinValues(skin, values));
}

TEST(SkinDocument, TheVocabularyIsThatOfTheBuiltInSkin) {
    std::string all;
    for (const auto& entry : SkinVocabulary())
        if (entry.element == "radiobox" || entry.attribute == "lfFaceName" || entry.attribute == "lfHeight")
            all += entry.element + "." + entry.attribute + ":" +
                   std::to_string(static_cast<int>(entry.kind)) + " ";
    EXPECT_EQ(all,
              "radiobox.bordercolour:2 radiobox.bordersize:1 radiobox.fillcoloura:2 radiobox.fillcolourb:2 "
              "radiobox.fillstyle:1 TimeFont1.lfFaceName:0 TimeFont1.lfHeight:1 ");
}

TEST(SkinDocument, ColoursHaveSixDigits) {
    for (const char* good : {"#FF8000", "ff8000", "#000000"}) EXPECT_TRUE(IsSkinColour(good)) << good;
    for (const char* bad : {"", "#", "#fff", "fffff", "#ff80000", "xff8000", "#ff80 0", "ff800g"})
        EXPECT_FALSE(IsSkinColour(bad)) << bad;
}

std::string Checked(const std::string& text) {
    WrittenSite site;
    site.Write("skin.xml", text);
    Problems problems;
    CheckSkin(site.Path("skin.xml"), problems);
    std::string all;
    for (const Problem& problem : problems)
        all +=
            std::to_string(problem.line) + ":" + std::to_string(problem.column) + " " + problem.text + "; ";
    return all;
}

TEST(SkinDocument, ChecksElementsAttributesAndValues) {
    const struct {
        const char* label;
        const char* text;
        const char* problems;
    } rows[] = {
        {"fine", "<skin><pressed><mark colour='#FF8000' thickness='-3'/></pressed></skin>", ""},
        {"any mode", "<skin><mine><mark colour='ff8000'/></mine></skin>", ""},
        {"an attribute of another mode's element", "<skin><pressed><button fillstyle='1'/></pressed></skin>",
         ""},
        {"any face name", "<skin><default><TimeFont1 lfFaceName=''/></default></skin>", ""},
        {"unknown element", "<skin>\n <pressed>\n  <Mark colour='x'/></pressed></skin>",
         "3:3 element \"Mark\" is unknown; "},
        {"unknown attribute", "<skin><pressed><mark color='#FF8000'/></pressed></skin>",
         "1:16 attribute \"color\" of \"mark\" is unknown; "},
        {"short colour", "<skin><pressed><mark colour='#fff'/></pressed></skin>",
         "1:16 colour=\"#fff\" is not a colour such as #FF8000; "},
        {"no number", "<skin><pressed><mark thickness='2px'/></pressed></skin>",
         "1:16 thickness=\"2px\" is not a number; "},
        {"an empty number", "<skin><pressed><mark thickness=''/></pressed></skin>",
         "1:16 thickness=\"\" is not a number; "},
        {"no skin", "<a/>", "1:1 the document is no \"skin\"; "},
    };
    for (const auto& row : rows) EXPECT_EQ(Checked(row.text), row.problems) << row.label;
    EXPECT_TRUE(Checked("<skin>\n<m>").starts_with("2:")) << "not well-formed";
}

TEST(SkinDocument, SaysWhatSavingLoses) {
    const struct {
        const char* text;
        const char* lost;
    } rows[] = {
        {"<skin><m><e a='1'/></m></skin>", ""},
        {"<skin>\n <m>\n  <e a='1'/>\n </m>\n</skin>", ""},
        {"<skin id='1'><m><e a='1'/></m></skin>", "attributes of the root; "},
        {"<skin><m b='1'><e a='1'/></m></skin>", "attributes of modes; "},
        {"<skin xmlns:p='u'><m><e p:a='1' a='1'/></m></skin>", "attributes with a prefix; "},
        {"<skin><m><e/><e a='1'/></m></skin>", "elements without attributes; "},
        {"<skin><m><e a='1'><f/></e></m></skin>", "elements inside elements; "},
        {"<skin><m>t<e a='1'/></m></skin>", "texts; "},
        {"<!-- x --><skin><m><e a='1'/></m></skin>", "comments; "},
        {"<skin><m><e a='1'><!-- x --></e></m></skin>", "comments; "},
        {"<skin><?x y?><m><e a='1'/></m></skin>", "processing instructions; "},
        {"<skin", ""},
    };
    for (const auto& row : rows) {
        WrittenSite site;
        site.Write("skin.xml", row.text);
        EXPECT_EQ(Joined(LostBySkin(site.Path("skin.xml"))), row.lost) << row.text;
    }
}

}  // namespace
}  // namespace brindle::host
