// Skins as documents: merging, the built-in skin, what is written.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"
#include "brindle/skin/default_skin.h"
#include "brindle/skin/ov_skin.h"
#include "brindle/xml/xml_reader.h"
#include "testing/golden.h"

namespace {

using brindle::testing::ExpectGolden;

const std::string kDeclaration = "<?xml version=\"1.0\"?>";

std::string Merged(std::initializer_list<const char*> documents) {
    OVSkin skin;
    for (const char* document : documents) EXPECT_TRUE(skin.LoadFromStr(document)) << document;
    return skin.GetXML().str().substr(kDeclaration.size());
}

TEST(OVSkinDocumentTest, TheBuiltInSkinIsOneLineOf945Characters) {
    EXPECT_EQ(std::strlen(brindle::g_defaultSkin), 945u);
    EXPECT_EQ(std::string(brindle::g_defaultSkin).find_first_of("\r\n\t"), std::string::npos);
    EXPECT_TRUE(std::string(brindle::g_defaultSkin).starts_with(kDeclaration));
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(reader.LoadFromString(brindle::g_defaultSkin, unused));
    ASSERT_TRUE(reader.EnterSection("skin", true));
    CStringA id;
    CStringA name;
    reader.ReadAttribute("id", id);
    reader.ReadAttribute("name", name);
    EXPECT_EQ(id, "OrvaneDefaultSkin");
    EXPECT_EQ(name, "OrvaneDefaultSkin");
}

// Every mode, element, attribute and value, in the order of the text.
TEST(OVSkinDocumentTest, TheBuiltInSkinHoldsTheseValues) {
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(reader.LoadFromString(brindle::g_defaultSkin, unused));
    ASSERT_TRUE(reader.EnterSection("skin", true));
    std::string text;
    for (const CStringA& mode : reader.GetChildSections()) {
        reader.EnterSection(mode, false);
        for (const CStringA& element : reader.GetChildSections()) {
            reader.EnterSection(element, false);
            text += mode.str() + " " + element.str() + ":";
            std::vector<XMLAttribute> attributes;
            reader.ReadAttributes(attributes);
            for (const auto& attribute : attributes)
                text += " " + attribute.name.str() + "=" + attribute.value.str();
            text += "\n";
            reader.CloseSection();
        }
        reader.CloseSection();
    }
    EXPECT_EQ(
        text,
        "pressed mark: colour=#ffffff thickness=2\n"
        "pressed radiobox: bordersize=2 bordercolour=#ffffff fillstyle=1 fillcoloura=#cccccc "
        "fillcolourb=#808080\n"
        "default frame: top=50 left=0 bottom=100 right=100 fitpicture=1 sizeboxestoframe=1 textOnLeft=0\n"
        "default radiobox: bordersize=2 bordercolour=#ffffff fillstyle=1 fillcoloura=#d4d4d4 "
        "fillcolourb=#888888\n"
        "default radiobox_label: x=0 y=0\n"
        "default button: bordersize=2 bordercolour=#000000 fillstyle=2 fillcoloura=#595959 "
        "fillcolourb=#595959 pictureaspectlock=0\n"
        "default button_label: x=0 y=0\n"
        "default general: clocktype=0\n"
        "default TimeFont1: lfCharSet=0 lfClipPrecision=2 lfEscapement=0 lfFaceName=Arial lfHeight=-13 "
        "lfItalic=0 lfOrientation=0 lfOutPrecision=3 lfPitchAndFamily=34 lfQuality=1 lfStrikeOut=0 "
        "lfUnderline=0 lfWeight=400 lfWidth=0 colour=#000000\n");
}

TEST(OVSkinDocumentTest, GoldenDocuments) {
    OVSkin skin;
    EXPECT_EQ(skin.GetXML(), (kDeclaration + "<skin/>").c_str());
    skin.LoadFromFile("");
    ExpectGolden("default_skin.xml", skin.GetXML().str());
    EXPECT_TRUE(
        skin.LoadFromStr("<skin id='x'><rule><mark zone='&lt;1&gt;'/></rule><pressed><mark thickness='3' "
                         "Colour='red'/><new A='1' a='2'/></pressed></skin>"));
    ExpectGolden("merged_skin.xml", skin.GetXML().str());
}

TEST(OVSkinDocumentTest, DocumentsMerge) {
    const struct {
        const char* label;
        std::initializer_list<const char*> documents;
        const char* expected;
    } rows[] = {
        {"modes in the order of first addition",
         {"<skin><b><e x='1'/></b><a><e x='2'/></a></skin>",
          "<skin><a><f x='3'/></a><b><e y='4'/></b></skin>"},
         "<skin><b><e x=\"1\" y=\"4\"/></b><a><e x=\"2\"/><f x=\"3\"/></a></skin>"},
        {"a mode twice",
         {"<skin><m><e x='1'/></m><n><e x='5'/></n><m><e x='2' y='3'/></m></skin>"},
         "<skin><m><e x=\"2\" y=\"3\"/></m><n><e x=\"5\"/></n></skin>"},
        {"an element twice, the later value wins",
         {"<skin><m><e x='1'/><f x='2'/><e x='3'/></m></skin>"},
         "<skin><m><e x=\"3\"/><f x=\"2\"/></m></skin>"},
        {"attributes in byte order",
         {"<skin><m><e b='1' a='2' C='3' _='4'/></m></skin>"},
         "<skin><m><e C=\"3\" _=\"4\" a=\"2\" b=\"1\"/></m></skin>"},
        {"nothing without attributes", {"<skin><m><e/></m><n/></skin>"}, "<skin/>"},
        {"attributes of root and mode, texts, comments and what is deeper are not read",
         {"<skin a='1'><m b='2'>t<e c='3'>u<deep d='4'/></e><!-- x --></m></skin>"},
         "<skin><m><e c=\"3\"/></m></skin>"},
        {"an empty value is a value", {"<skin><m><e x=''/></m></skin>"}, "<skin><m><e x=\"\"/></m></skin>"},
        {"prefixed attributes cannot be asked for by their local name, namespaces can",
         {"<skin><m><e xmlns:p='u' p:x='1' xmlns='v'/></m></skin>"},
         "<skin><m><e xmlns=\"v\"/></m></skin>"},
        {"prefixes of elements are not part of the name",
         {"<skin xmlns:p='u'><p:m><p:e x='1'/></p:m></skin>"},
         "<skin><m><e x=\"1\"/></m></skin>"},
        {"a repeated name after others",
         {"<skin><m><a x='1'/><b x='1'/><a y='1'/><b y='1'/></m></skin>"},
         "<skin><m><a x=\"1\" y=\"1\"/><b x=\"1\" y=\"1\"/></m></skin>"},
    };
    for (const auto& row : rows) EXPECT_EQ(Merged(row.documents), row.expected) << row.label;
}

TEST(OVSkinDocumentTest, ADocumentThatIsNoSkinChangesNothing) {
    OVSkin skin;
    skin.SetExactProp("m", "e", "a", CStringA("1"));
    const std::string before = skin.GetXML().str();
    for (const char* text :
         {"", "<skins/>", "<a><skin><m><e b='1'/></m></skin></a>", "<Skin/>", "<skin>", "plain"}) {
        EXPECT_FALSE(skin.LoadFromStr(text)) << text;
        EXPECT_EQ(skin.GetXML().str(), before) << text;
        EXPECT_EQ(skin.GetError(), "") << text;
    }
    EXPECT_TRUE(skin.LoadFromStr("<skin/>"));
    EXPECT_EQ(skin.GetXML().str(), before);
}

TEST(OVSkinDocumentTest, EveryPrefixOfADocumentIsRefusedOrWhole) {
    const std::string text = "<skin><m><e a='1' b='&lt;'/></m></skin>";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        OVSkin skin;
        EXPECT_EQ(skin.LoadFromStr(text.substr(0, length).c_str()), length == text.size()) << length;
    }
}

class OVSkinFileTest : public ::testing::Test {
  protected:
    void Add(const char* path, const std::string& bytes) {
        m_files.Add(path, brindle::FakeFiles::Kind::kFile, bytes);
    }

  private:
    brindle::FakeFiles m_files;
    brindle::ScopedService<brindle::Files> m_guard{&brindle::SetFiles, m_files};
};

std::string Loaded(const char* path, bool expected = true) {
    OVSkin skin;
    EXPECT_EQ(skin.LoadFromFile(path), expected) << path;
    EXPECT_EQ(skin.GetError(), "");
    return skin.GetXML().str();
}

TEST_F(OVSkinFileTest, AFileThatCannotBeLoadedGivesTheBuiltInSkin) {
    Add("/good.xml", "<skin><m><e a='1'/></m></skin>");
    Add("/broken.xml", "<skin><m><e a='1'/></m>");
    Add("/empty.xml", "");
    Add("/other.xml", "<other/>");
    std::string deep = "<skin>";
    for (int i = 0; i < 300; ++i) deep += "<a>";
    for (int i = 0; i < 300; ++i) deep += "</a>";
    deep += "</skin>";
    Add("/deep.xml", deep);
    const std::string builtIn = Loaded("/missing.xml");
    EXPECT_NE(builtIn.find("TimeFont1"), std::string::npos);
    EXPECT_EQ(Loaded("/broken.xml"), builtIn);
    EXPECT_EQ(Loaded("/empty.xml"), builtIn);
    EXPECT_EQ(Loaded("/deep.xml"), builtIn);
    EXPECT_EQ(Loaded(""), builtIn);
    EXPECT_EQ(Loaded("/good.xml"), kDeclaration + "<skin><m><e a=\"1\"/></m></skin>");
    EXPECT_EQ(Loaded("/other.xml", false),
              kDeclaration + "<skin/>");  // it can be loaded, so nothing stands in
}

TEST_F(OVSkinFileTest, LoadingMergesAndTheBuiltInSkinMergesToo) {
    Add("/good.xml", "<skin><default><button bordersize='9' own='1'/></default></skin>");
    OVSkin skin;
    skin.LoadFromFile("/good.xml");
    skin.LoadFromFile("/missing.xml");
    int size = 0;
    EXPECT_TRUE(skin.GetExactProp("default", "button", "bordersize", size));
    EXPECT_EQ(size, 2);
    EXPECT_TRUE(skin.GetExactProp("default", "button", "own", size));
    EXPECT_EQ(size, 1);
}

TEST_F(OVSkinFileTest, TheBuiltInSkinIsReadThroughItsPointerWhenItIsNeeded) {
    const char* kept = brindle::g_defaultSkin;
    brindle::g_defaultSkin = "<skin><m><e a='other'/></m></skin>";
    const std::string other = Loaded("/missing.xml");
    brindle::g_defaultSkin = "<skin>";
    const std::string broken = Loaded("/missing.xml", false);
    brindle::g_defaultSkin = kept;
    EXPECT_EQ(other, kDeclaration + "<skin><m><e a=\"other\"/></m></skin>");
    EXPECT_EQ(broken, kDeclaration + "<skin/>");
}

TEST(OVSkinDocumentTest, TheTextIsKeptUntilTheSkinChanges) {
    OVSkin skin;
    skin.LoadFromStr("<skin><m><e a='1'/></m></skin>");
    const CStringA& xml = skin.GetXML();
    const char* made = xml.GetString();
    EXPECT_EQ(skin.GetXML().GetString(), made);
    skin.LoadFromStr("<skin><m/></skin>");  // stores nothing
    EXPECT_EQ(skin.GetXML().GetString(), made);
    skin.SetExactProp("m", "e", "a", 2);
    EXPECT_TRUE(xml.IsEmpty());  // even before it is asked for again
    EXPECT_NE(skin.GetXML().str().find("a=\"2\""), std::string::npos);
    skin.LoadFromStr("<skin><m><e a='2'/></m></skin>");
    EXPECT_TRUE(xml.IsEmpty());
    skin.GetXML();
    skin.SetExactProp(0, "e", "a", 2);
    EXPECT_TRUE(xml.IsEmpty());
}

TEST(OVSkinDocumentTest, TheTextIsInTheCodePage) {
    OVSkin skin;
    skin.SetExactProp("m", "e", "a", CStringA("\xFC \x80 <&\">"));  // u with diaeresis, euro sign
    const std::string xml = skin.GetXML().str();
    EXPECT_EQ(xml, kDeclaration + "<skin><m><e a=\"\xFC \x80 &lt;&amp;&quot;&gt;\"/></m></skin>");
    OVSkin back;
    EXPECT_TRUE(back.LoadFromStr(xml.c_str()));
    EXPECT_EQ(back.GetXML().str(), xml);
}

TEST(OVSkinDocumentTest, ATextThatXmlCannotHoldGivesNoDocument) {
    OVSkin skin;
    skin.SetExactProp("m", "e", "a", CStringA("\x01"));
    EXPECT_EQ(skin.GetXML(), "");
    skin.SetExactProp("m", "e", "a", CStringA("fine"));
    EXPECT_NE(skin.GetXML(), "");
}

// Time in proportion to the number of values: with quadratic time this would not end.
TEST(OVSkinDocumentTest, LargeSkinsLoadAndSave) {
    std::string attributes;
    for (int i = 0; i < 100; ++i) attributes += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    std::string text = "<skin><m>";
    for (int i = 0; i < 1000; ++i) text += "<e" + std::to_string(i) + attributes + "/>";
    text += "</m></skin>";
    OVSkin skin;
    ASSERT_TRUE(skin.LoadFromStr(text.c_str()));
    OVSkin again;
    ASSERT_TRUE(again.LoadFromStr(skin.GetXML()));
    EXPECT_EQ(again.GetXML(), skin.GetXML());
    int value = 0;
    EXPECT_TRUE(again.GetExactProp("m", "e999", "a99", value));
    EXPECT_EQ(value, 99);
}

TEST(OVSkinDocumentTest, HostileSkinsEnd) {
    std::string manyElements = "<skin><m>";
    for (int i = 0; i < 30'000; ++i) manyElements += "<e" + std::to_string(i) + " a=''/>";
    manyElements += "</m></skin>";
    std::string oneElement = "<skin><m>";
    for (int i = 30'000; i > 0; --i) oneElement += "<e a" + std::to_string(i) + "=''/>";
    oneElement += "</m></skin>";
    OVSkin skin;
    EXPECT_TRUE(skin.LoadFromStr(manyElements.c_str()));
    EXPECT_TRUE(skin.LoadFromStr(oneElement.c_str()));
    EXPECT_GT(skin.GetXML().GetLength(), 300'000);
}

}  // namespace
