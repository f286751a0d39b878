#include "brindle/xml/xml_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "brindle/platform/code_page.h"
#include "brindle/platform/fake/xml_dom_fake.h"
#include "brindle/platform/files.h"
#include "brindle/platform/service.h"

namespace {

using brindle::ScopedService;

// A reader over a text, its root entered.
class Loaded : public XMLReader {
  public:
    explicit Loaded(const char* text, const char* root = "L") {
        CStringA error;
        EXPECT_TRUE(LoadFromString(text, error)) << text;
        EXPECT_TRUE(EnterSection(root, true)) << text;
    }
};

std::string Joined(const std::vector<CStringA>& names) {
    std::string all;
    for (const CStringA& name : names) all += name.str() + " ";
    return all;
}

TEST(XMLReaderTest, AnEmptyReaderAnswersNothing) {
    XMLReader reader;
    std::string text = "unchanged";
    CStringA string = "unchanged";
    int number = 7;
    long longNumber = 8;
    bool flag = true;
    std::uint32_t line = 9;
    std::uint32_t column = 10;
    EXPECT_FALSE(reader.EnterSection("a", true));
    EXPECT_FALSE(reader.ReadAttribute("a", text));
    EXPECT_FALSE(reader.ReadAttribute("a", string));
    EXPECT_FALSE(reader.ReadAttribute("a", number));
    EXPECT_FALSE(reader.ReadAttribute("a", longNumber));
    EXPECT_FALSE(reader.ReadAttribute("a", flag));
    EXPECT_FALSE(reader.WriteAttribute("a", string));
    EXPECT_FALSE(reader.WriteAttribute("a", number));
    EXPECT_FALSE(reader.GetPosition(line, column));
    EXPECT_EQ(reader.ReadData(), "");
    reader.ReadXML(text);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(string, "unchanged");
    reader.ReadXML(string);
    EXPECT_EQ(string, "");
    EXPECT_EQ(number + longNumber + flag + line + column, 35u);
    EXPECT_TRUE(reader.GetChildSections().empty());
    EXPECT_TRUE(reader.GetAttributeNames().empty());
    EXPECT_EQ(&reader.GetChildSections(), &XMLReader().GetChildSections());
    reader.CreateSection("a");
    reader.CloseSection();
    EXPECT_FALSE(reader.EnterSection("a", true));
}

TEST(XMLReaderTest, ThreeSiblingsAreReadOneAfterTheOther) {
    Loaded reader("<L><Behaviour i='1'/><Behaviour i='2'/><Behaviour i='3'/></L>");
    int index = 0;
    for (int i = 1; i <= 3; ++i) {
        ASSERT_TRUE(reader.EnterSection("Behaviour", false));
        EXPECT_TRUE(reader.ReadAttribute("i", index));
        EXPECT_EQ(index, i);
        reader.CloseSection();
    }
    EXPECT_FALSE(reader.EnterSection("Behaviour", false));
    EXPECT_FALSE(reader.EnterSection("Behaviour", false));
    ASSERT_TRUE(reader.EnterSection("Behaviour", true));
    EXPECT_TRUE(reader.ReadAttribute("i", index));
    EXPECT_EQ(index, 1);
}

TEST(XMLReaderTest, TheWalkGoesOnBehindTheLastMatch) {
    Loaded reader("<L><A i='1'/><B i='2'/><A i='3'/><B i='4'/></L>");
    const struct {
        const char* label;
        const char* name;
        bool fromStart;
        int found;  // 0: none
    } rows[] = {{"B from the start", "B", true, 2}, {"then the second A", "A", false, 3},
                {"no third A", "A", false, 0},      {"and now nothing", "B", false, 0},
                {"case counts", "a", true, 0},      {"from the start again", "A", true, 1},
                {"no such child", "C", false, 0},   {"null is no name", nullptr, true, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        int index = 0;
        ASSERT_EQ(reader.EnterSection(row.name, row.fromStart), row.found != 0);
        if (row.found == 0) continue;
        reader.ReadAttribute("i", index);
        EXPECT_EQ(index, row.found);
        reader.CloseSection();
    }
}

TEST(XMLReaderTest, AFailedEnterLeavesTheCursorWhereItWas) {
    Loaded reader("<L k='1'><A><B k='2'/></A></L>");
    EXPECT_FALSE(reader.EnterSection("B", true));
    int value = 0;
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, 1);
}

TEST(XMLReaderTest, TheFirstSectionIsSelectedByXPath) {
    const struct {
        const char* name;
        bool found;
    } rows[] = {{"L", true},    {"/L", true},     {"//B", true},        {"/L/A", true},  {"l", false},
                {"A", false},   {"", false},      {"/", false},         {"//@k", false}, {"[", false},
                {"1 +", false}, {nullptr, false}, {"//T/text()", false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name ? row.name : "null");
        XMLReader reader;
        CStringA error;
        ASSERT_TRUE(reader.LoadFromString("<L k='1'><A><B k='2'/></A><T>t</T></L>", error));
        EXPECT_EQ(reader.EnterSection(row.name, false), row.found);
    }
}

TEST(XMLReaderTest, ChildrenAreMatchedByTheirLocalName) {
    Loaded reader("<L xmlns='u' xmlns:p='v'>t<p:A/><!--c--><B/><?i?><p:A/></L>");
    EXPECT_EQ(Joined(reader.GetChildSections()), "A B A ");
    EXPECT_TRUE(reader.EnterSection("A", true));
    reader.CloseSection();
    EXPECT_FALSE(reader.EnterSection("p:A", true));
}

TEST(XMLReaderTest, NumbersAreReadByTheRulesOfAtoi) {
    const struct {
        const char* label;
        const char* text;
        bool read;
        int value;
    } rows[] = {{"number", "12", true, 12},
                {"empty", "", false, -1},
                {"letters behind", "12abc", true, 12},
                {"letters only", "abc", true, 0},
                {"white space and sign", " \t-7x", true, -7},
                {"plus", "+5", true, 5},
                {"blank only", " ", true, 0},
                {"sign only", "-", true, 0},
                {"fraction", "1.9", true, 1},
                {"saturates", "99999999999", true, 2147483647},
                {"saturates below", "-99999999999", true, -2147483647 - 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        Loaded reader((std::string("<L k='") + row.text + "'/>").c_str());
        int value = -1;
        long longValue = -1;
        EXPECT_EQ(reader.ReadAttribute("k", value), row.read);
        EXPECT_EQ(reader.ReadAttribute("k", longValue), row.read);
        EXPECT_EQ(value, row.value);
        EXPECT_EQ(longValue, row.value);
        EXPECT_FALSE(reader.ReadAttribute("absent", value));
        EXPECT_EQ(value, row.value);
    }
}

TEST(XMLReaderTest, BooleansHaveSixSpellingsInAnyCase) {
    const struct {
        const char* text;
        int read;  // -1: not read
    } rows[] = {{"TRUE", 1}, {"true", 1},  {"True", 1},  {"1", 1},  {"ON", 1},     {"on", 1},
                {"oN", 1},   {"FALSE", 0}, {"false", 0}, {"0", 0},  {"OFF", 0},    {"Off", 0},
                {"yes", -1}, {"no", -1},   {"", -1},     {"2", -1}, {" TRUE", -1}, {"01", -1},
                {"TRU", -1}, {"O", -1},    {"TRUEx", -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        Loaded reader((std::string("<L k='") + row.text + "'/>").c_str());
        for (const bool before : {false, true}) {
            bool value = before;
            EXPECT_EQ(reader.ReadAttribute("k", value), row.read >= 0);
            EXPECT_EQ(value, row.read >= 0 ? row.read == 1 : before);
            EXPECT_FALSE(reader.ReadAttribute("absent", value));
        }
    }
}

TEST(XMLReaderTest, AnAbsentAttributeEmptiesAStringButNotAStdString) {
    Loaded reader("<L k='v' e=''/>");
    std::string text = "before";
    CStringA string = "before";
    EXPECT_FALSE(reader.ReadAttribute("absent", text));
    EXPECT_FALSE(reader.ReadAttribute("absent", string));
    EXPECT_EQ(text, "before");
    EXPECT_EQ(string, "");
    EXPECT_TRUE(reader.ReadAttribute("k", text));
    EXPECT_TRUE(reader.ReadAttribute("k", string));
    EXPECT_EQ(text, "v");
    EXPECT_EQ(string, "v");
    EXPECT_TRUE(reader.ReadAttribute("e", text));
    EXPECT_TRUE(reader.ReadAttribute("e", string));
    EXPECT_EQ(text, "");
    EXPECT_EQ(string, "");
    EXPECT_FALSE(reader.ReadAttribute(nullptr, text));
    EXPECT_FALSE(reader.ReadAttribute("K", text));
}

TEST(XMLReaderTest, KeptAttributeNamesAreOneListForAllReaders) {
    Loaded first("<L a='1' b='2'><C c='3'/></L>");
    Loaded second("<L d='4'/>");
    const auto& names = first.GetAttributeNames();
    EXPECT_EQ(Joined(names), "a b ");
    ASSERT_TRUE(first.EnterSection("C", true));
    EXPECT_EQ(Joined(first.GetAttributeNames()), "c ");
    EXPECT_EQ(Joined(names), "c ");
    EXPECT_EQ(&second.GetAttributeNames(), &names);
    EXPECT_EQ(Joined(names), "d ");
    XMLReader().GetAttributeNames();
    EXPECT_TRUE(names.empty());
}

TEST(XMLReaderTest, ReadsAllAttributesWithoutPrefixAtOnce) {
    Loaded reader(
        "<L xmlns:p='u' xmlns='v' b='1' p:a='2' a='\xC3\xA9&amp;' undeclared='' p:c='3' c='4'><E/></L>");
    std::vector<XMLAttribute> attributes(7);
    reader.ReadAttributes(attributes);
    std::string all;
    for (const XMLAttribute& attribute : attributes) {
        all += attribute.name.str() + "=" + attribute.value.str() + ";";
        CStringA value;
        EXPECT_TRUE(reader.ReadAttribute(attribute.name, value)) << attribute.name.GetString();
        EXPECT_EQ(value, attribute.value) << attribute.name.GetString();
    }
    EXPECT_EQ(all, "xmlns=v;b=1;a=\xC3\xA9&;undeclared=;c=4;");
    ASSERT_TRUE(reader.EnterSection("E", true));
    reader.ReadAttributes(attributes);
    EXPECT_TRUE(attributes.empty());
    attributes.resize(2);
    XMLReader().ReadAttributes(attributes);
    EXPECT_TRUE(attributes.empty());
}

TEST(XMLReaderTest, ChildSectionsAreThoseOfTheMomentTheSectionWasEntered) {
    Loaded reader("<L><A/><B/></L>");
    reader.CreateSection("C");
    reader.CloseSection();
    EXPECT_EQ(Joined(reader.GetChildSections()), "A B ");
    EXPECT_FALSE(reader.EnterSection("C", true));
    reader.CloseSection();
    ASSERT_TRUE(reader.EnterSection("L", true));
    EXPECT_EQ(Joined(reader.GetChildSections()), "A B C ");
    ASSERT_TRUE(reader.EnterSection("A", true));
    EXPECT_EQ(Joined(reader.GetChildSections()), "");
}

TEST(XMLReaderTest, TextAndMarkupOfTheCurrentSection) {
    Loaded reader("<?xml version='1.0'?><L>\r\n<A k='&lt;'>x<B>y</B><![CDATA[<z>]]></A> </L>");
    EXPECT_EQ(reader.ReadData(), "\nxy<z> ");
    ASSERT_TRUE(reader.EnterSection("A", true));
    EXPECT_EQ(reader.ReadData(), "xy<z>");
    std::string xml;
    CStringA string;
    reader.ReadXML(xml);
    reader.ReadXML(string);
    EXPECT_EQ(xml, "<A k=\"&lt;\">x<B>y</B><![CDATA[<z>]]></A>");
    EXPECT_EQ(string, xml);
}

TEST(XMLReaderTest, ALoadedDocumentCanBeEdited) {
    Loaded reader("<L><A k='1'/></L>");
    CStringA value = "a<b\xE9";
    ASSERT_TRUE(reader.EnterSection("A", true));
    EXPECT_TRUE(reader.WriteAttribute("k", value));
    EXPECT_TRUE(reader.WriteAttribute("l", value));
    EXPECT_FALSE(reader.WriteAttribute("", value));
    reader.CreateSection("N\xE4");
    EXPECT_TRUE(reader.WriteAttribute("m", value));
    reader.CloseSection();
    reader.CreateSection("");
    std::string xml;
    reader.ReadXML(xml);
    EXPECT_EQ(xml, "<A k=\"a&lt;b\xE9\" l=\"a&lt;b\xE9\"><N\xE4 m=\"a&lt;b\xE9\"/></A>");
}

TEST(XMLReaderTest, KeptWritingANumberWrites150AndReportsFailure) {
    Loaded reader("<L/>");
    int value = 42;
    EXPECT_FALSE(reader.WriteAttribute("k", value));
    EXPECT_EQ(value, 42);
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, 150);
}

TEST(XMLReaderTest, KeptTheErrorArgumentIsNeverWritten) {
    XMLReader reader;
    CStringA error = "before";
    EXPECT_FALSE(reader.LoadFromString("<a", error));
    EXPECT_FALSE(reader.LoadFromString(nullptr, error));
    EXPECT_FALSE(reader.Load("/nowhere/at/all.xml", error));
    EXPECT_FALSE(reader.Load("", error));
    EXPECT_FALSE(reader.Load(nullptr, error));
    EXPECT_TRUE(reader.LoadFromString("<a/>", error));
    EXPECT_EQ(error, "before");
}

TEST(XMLReaderTest, AFailedLoadLeavesAnEmptyDocumentButAMissingPathNothing) {
    XMLReader reader;
    CStringA error;
    ASSERT_TRUE(reader.LoadFromString("<a/>", error));
    EXPECT_FALSE(reader.Load("", error));
    EXPECT_TRUE(reader.EnterSection("a", true));
    reader.CloseSection();
    EXPECT_FALSE(reader.LoadFromString("<b>", error));
    EXPECT_FALSE(reader.EnterSection("a", true));
    EXPECT_TRUE(reader.LoadFromString("<c/>", error));
    EXPECT_TRUE(reader.EnterSection("c", true));
}

TEST(XMLReaderTest, SectionsStayInTheDocumentTheyWereEnteredIn) {
    Loaded reader("<L k='1'><A k='2'/></L>");
    CStringA error;
    ASSERT_TRUE(reader.LoadFromString("<M k='3'/>", error));
    int value = 0;
    ASSERT_TRUE(reader.EnterSection("A", true));
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, 2);
    EXPECT_EQ(Joined(reader.GetChildSections()), "");
    reader.CloseSection();
    reader.CloseSection();
    ASSERT_TRUE(reader.EnterSection("M", true));
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, 3);
}

TEST(XMLReaderTest, ACopySharesTheDocument) {
    XMLReader reader;
    CStringA error;
    ASSERT_TRUE(reader.LoadFromString("<L><A/></L>", error));
    XMLReader copy(reader);
    XMLReader assigned;
    assigned = reader;
    CStringA value = "v";
    ASSERT_TRUE(reader.EnterSection("L", true));
    reader.WriteAttribute("k", value);
    for (XMLReader* other : {&copy, &assigned}) {
        ASSERT_TRUE(other->EnterSection("L", true));
        CStringA read;
        EXPECT_TRUE(other->ReadAttribute("k", read));
        EXPECT_EQ(read, "v");
    }
    // Not supported, but harmless.
    {
        XMLReader open(reader);
        EXPECT_TRUE(open.EnterSection("A", true));
    }
    EXPECT_FALSE(reader.EnterSection("A", false));
    EXPECT_TRUE(reader.EnterSection("A", true));
}

TEST(XMLReaderTest, SectionRecordsAreNotMixedUp) {
    Loaded reader("<L><A k='1'><B k='2'><C/></B><B/></A><A k='3'><D/></A></L>");
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(reader.EnterSection("A", true));
        ASSERT_TRUE(reader.EnterSection("B", false));
        EXPECT_EQ(Joined(reader.GetChildSections()), "C ");
        reader.CloseSection();
        EXPECT_EQ(Joined(reader.GetChildSections()), "B B ");
        reader.CloseSection();
        ASSERT_TRUE(reader.EnterSection("A", false));
        EXPECT_EQ(Joined(reader.GetChildSections()), "D ");
        reader.CloseSection();
    }
}

TEST(XMLReaderTest, SectionsMayBeCreatedToAnyDepth) {
    Loaded reader("<L/>");
    for (int i = 0; i < 100000; ++i) reader.CreateSection("n");
    for (int i = 0; i < 50000; ++i) reader.CloseSection();
    std::string xml;
    reader.ReadXML(xml);
    EXPECT_EQ(xml.size(), 50000u * 7 + 4);
}

TEST(XMLReaderTest, TextsAreInTheAnsiCodePage) {
    Loaded reader(
        "<?xml version='1.0' encoding='UTF-8'?><L \xE4='Caf\xE9 \x80\x81'>&#x20AC;&#x3B1;<\xD6/></L>");
    std::string value;
    EXPECT_TRUE(reader.ReadAttribute("\xE4", value));
    EXPECT_EQ(value, "Caf\xE9 \x80\x81");
    EXPECT_EQ(reader.ReadData(), "\x80?");
    EXPECT_EQ(Joined(reader.GetAttributeNames()), "\xE4 ");
    EXPECT_EQ(Joined(reader.GetChildSections()), "\xD6 ");
    EXPECT_TRUE(reader.EnterSection("\xD6", true));
    std::string xml;
    reader.ReadXML(xml);
    EXPECT_EQ(xml, "<\xD6/>");
    CStringA error;
    XMLReader marked;
    EXPECT_FALSE(marked.LoadFromString("\xEF\xBB\xBF<a/>", error));
}

TEST(XMLReaderTest, InTheUtf8CodePageTextsPassAsTheyAre) {
    const unsigned before = brindle::CurrentCodePage().Selected();
    ASSERT_TRUE(brindle::CurrentCodePage().Select(brindle::kCodePageUtf8));
    Loaded reader("<L k='\xCE\xB1'/>");
    std::string value;
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, "\xCE\xB1");
    CStringA error;
    EXPECT_FALSE(XMLReader().LoadFromString("<L k='\xE9'/>", error));
    ASSERT_TRUE(brindle::CurrentCodePage().Select(before));
}

TEST(XMLReaderTest, APositionedLoadSaysWhere) {
    XMLReader reader;
    brindle::Result result;
    EXPECT_FALSE(reader.LoadFromStringPositioned("<L>\n <A>\n</L>", result));
    EXPECT_EQ(result.code, brindle::ErrorCode::kNotWellFormed);
    EXPECT_EQ(result.line, 3u);
    EXPECT_NE(result.text, "");
    EXPECT_FALSE(reader.LoadFromStringPositioned("<L>\n <\xE9>\n</L>", result));
    EXPECT_NE(result.text.find('\xE9'), std::string::npos) << result.text;
    EXPECT_FALSE(reader.LoadPositioned("/nowhere/at/all.xml", result));
    EXPECT_EQ(result.line, 0u);
    EXPECT_NE(result.text, "");
    EXPECT_FALSE(reader.LoadPositioned("", result));
    EXPECT_FALSE(reader.LoadFromStringPositioned(nullptr, result));
    ASSERT_TRUE(reader.LoadFromStringPositioned("<L>\n <A\n/><B/></L>", result));
    EXPECT_TRUE(result.ok());
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    ASSERT_TRUE(reader.EnterSection("L", true));
    ASSERT_TRUE(reader.EnterSection("B", true));
    EXPECT_TRUE(reader.GetPosition(line, column));
    EXPECT_EQ(line, 3u);
    EXPECT_EQ(column, 3u);
    Loaded plain("<L/>");
    EXPECT_FALSE(plain.GetPosition(line, column));
}

TEST(XMLReaderTest, FilesAreReadThroughTheFileService) {
    const std::string path = ::testing::TempDir() + "brindle_xml_reader.xml";
    std::ofstream(path, std::ios::binary) << "\xEF\xBB\xBF<L k='\xC3\xA9'>\r\n</L>";
    XMLReader reader;
    CStringA error;
    ASSERT_TRUE(reader.Load(path.c_str(), error));
    ASSERT_TRUE(reader.EnterSection("L", true));
    CStringA value;
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, "\xE9");
    EXPECT_EQ(reader.ReadData(), "\n");
    {
        std::ofstream big(path, std::ios::binary);
        big << "<L>" << std::string(16 << 20, '\n') << "</L>";
    }
    brindle::Result result;
    EXPECT_FALSE(reader.LoadPositioned(path.c_str(), result));
    EXPECT_EQ(result.code, brindle::ErrorCode::kLimit) << result.text;
    std::filesystem::remove(path);
}

TEST(XMLReaderTest, FaultsOfTheServiceAreReportedAsFailures) {
    brindle::FakeXmlDom dom;
    ScopedService<brindle::XmlDom> installed(brindle::SetXmlDom, dom);
    XMLReader reader;
    CStringA error;
    dom.FaultSwitches().create = true;
    EXPECT_FALSE(reader.LoadFromString("<L/>", error));
    EXPECT_FALSE(reader.Load("/tmp", error));
    EXPECT_FALSE(reader.EnterSection("L", true));
    dom.FaultSwitches() = {};
    dom.FaultSwitches().parse = true;
    EXPECT_FALSE(reader.LoadFromString("<L/>", error));
    dom.FaultSwitches() = {};
    ASSERT_TRUE(reader.LoadFromString("<L/>", error));
    ASSERT_TRUE(reader.EnterSection("L", true));
    dom.FaultSwitches().markup = true;
    std::string xml = "unchanged";
    CStringA string = "before";
    reader.ReadXML(xml);
    reader.ReadXML(string);
    EXPECT_EQ(xml, "unchanged");
    EXPECT_EQ(string, "");
}

}  // namespace
