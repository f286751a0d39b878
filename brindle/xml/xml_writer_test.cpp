#include "brindle/xml/xml_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/xml_dom_fake.h"
#include "brindle/platform/service.h"
#include "brindle/xml/xml_reader.h"

namespace {

using brindle::ScopedService;
const std::string kDeclaration = "<?xml version=\"1.0\"?>";

std::string Saved(const XMLWriter& writer) {
    std::string xml = "not saved";
    writer.SaveToString(xml);
    return xml;
}

class Initialized : public XMLWriter {
  public:
    Initialized() { EXPECT_TRUE(Initialize()); }
};

TEST(XMLWriterTest, InitializingTwiceMakesOneDeclaration) {
    XMLWriter writer;
    EXPECT_EQ(Saved(writer), "not saved");
    EXPECT_TRUE(writer.Initialize());
    EXPECT_TRUE(writer.Initialize());
    EXPECT_EQ(Saved(writer), kDeclaration);
    writer.EnterSection("a");
    EXPECT_TRUE(writer.Initialize());
    writer.WriteAttribute("k", "v");
    EXPECT_EQ(Saved(writer), kDeclaration + "<a k=\"v\"/>");
}

TEST(XMLWriterTest, HoldsExactlyTheNodesWritten) {
    Initialized writer;
    writer.WriteComment("before");
    writer.EnterSection("List");
    writer.WriteAttribute("Name", "Door \"A\" & <B>");
    writer.WriteAttribute("Delay", -5);
    writer.WriteAttribute("Most", 2147483647);
    writer.WriteAttribute("Least", -2147483647 - 1);
    writer.WriteAttribute("Enabled", true);
    writer.EnterSection("Item");
    writer.WriteData("1 < 2");
    writer.WriteComment("inside");
    writer.WriteData("");
    writer.CloseSection();
    writer.EnterSection("Item");
    writer.CloseSection();
    writer.CloseSection();
    writer.WriteComment("after");
    EXPECT_EQ(
        Saved(writer),
        kDeclaration +
            "<!--before--><List Name=\"Door &quot;A&quot; &amp; &lt;B&gt;\" Delay=\"-5\" Most=\"2147483647\" "
            "Least=\"-2147483648\" Enabled=\"TRUE\"><Item>1 &lt; "
            "2<!--inside--></Item><Item/></List><!--after-->");
}

TEST(XMLWriterTest, AnAttributeWrittenTwiceIsReplaced) {
    Initialized writer;
    writer.EnterSection("a");
    writer.WriteAttribute("Enabled", true);
    writer.WriteAttribute("Enabled", false);
    EXPECT_EQ(Saved(writer), kDeclaration + "<a Enabled=\"FALSE\"/>");
}

TEST(XMLWriterTest, NothingHappensWithoutAPlaceToWriteTo) {
    XMLWriter writer;
    writer.EnterSection("a");
    writer.WriteAttribute("k", 1);
    writer.WriteData("x");
    writer.WriteComment("x");
    writer.CloseSection();
    writer.CloseSection();
    CStringA xml = "unchanged";
    EXPECT_FALSE(writer.SaveToString(xml));
    EXPECT_EQ(xml, "unchanged");
    EXPECT_FALSE(writer.Save("/tmp/brindle_never_written.xml"));
    ASSERT_TRUE(writer.Initialize());
    writer.WriteAttribute("k", "no section is open");
    EXPECT_EQ(Saved(writer), kDeclaration);
    writer.EnterSection("a");
    writer.EnterSection("");  // makes no element: what is meant for it goes nowhere
    writer.EnterSection("inside");
    writer.WriteData("x");
    writer.CloseSection();
    writer.WriteAttribute("k", 1);
    writer.WriteComment("x");
    writer.CloseSection();
    writer.WriteAttribute("l", 2);
    writer.WriteAttribute(nullptr, 2);
    writer.WriteData(nullptr);
    EXPECT_EQ(Saved(writer), kDeclaration + "<a l=\"2\"></a>");
}

TEST(XMLWriterTest, TextsAreInTheAnsiCodePageAndFilesInUtf8) {
    const std::string path = ::testing::TempDir() + "brindle_xml_writer.xml";
    Initialized writer;
    writer.EnterSection(
        "gr\xF6\xDF"
        "e");
    writer.WriteAttribute("\xE4", "Caf\xE9 \x80\x81");
    writer.WriteData("\xFC");
    EXPECT_EQ(Saved(writer), kDeclaration +
                                 "<gr\xF6\xDF"
                                 "e \xE4=\"Caf\xE9 \x80\x81\">\xFC</gr\xF6\xDF"
                                 "e>");
    ASSERT_TRUE(writer.Save(path.c_str()));
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(bytes, kDeclaration +
                         "<gr\xC3\xB6\xC3\x9F"
                         "e \xC3\xA4=\"Caf\xC3\xA9 \xE2\x82\xAC\xC2\x81\">\xC3\xBC</gr\xC3\xB6\xC3\x9F"
                         "e>");
    XMLReader reader;
    CStringA error;
    CStringA value;
    ASSERT_TRUE(reader.Load(path.c_str(), error));
    ASSERT_TRUE(
        reader.EnterSection("gr\xF6\xDF"
                            "e",
                            true));
    EXPECT_TRUE(reader.ReadAttribute("\xE4", value));
    EXPECT_EQ(value, "Caf\xE9 \x80\x81");
    std::filesystem::remove(path);
}

TEST(XMLWriterTest, WritingGoesOnAfterASave) {
    Initialized writer;
    writer.EnterSection("a");
    EXPECT_EQ(Saved(writer), kDeclaration + "<a/>");
    writer.EnterSection("b");
    EXPECT_EQ(Saved(writer), kDeclaration + "<a><b/></a>");
    EXPECT_EQ(Saved(writer), kDeclaration + "<a><b/></a>");
}

// Every byte that a narrow text can hold.
TEST(XMLWriterTest, WhatIsWrittenReadsBackTheSame) {
    std::string all = "\t\n\r";
    for (int byte = 0x20; byte < 0x100; ++byte) all += static_cast<char>(byte);
    Initialized writer;
    writer.EnterSection("a");
    writer.WriteAttribute("k", all.c_str());
    writer.WriteData(all.c_str());
    CStringA xml;
    ASSERT_TRUE(writer.SaveToString(xml));
    XMLReader reader;
    CStringA error;
    std::string value;
    ASSERT_TRUE(reader.LoadFromString(xml, error));
    ASSERT_TRUE(reader.EnterSection("a", true));
    EXPECT_TRUE(reader.ReadAttribute("k", value));
    EXPECT_EQ(value, all);
    EXPECT_EQ(reader.ReadData(), all);
}

TEST(XMLWriterTest, AControlCharacterFailsTheSaveAndLeavesTheOldFile) {
    const std::string path = ::testing::TempDir() + "brindle_xml_control.xml";
    for (int byte = 1; byte < 0x20; ++byte) {
        SCOPED_TRACE(byte);
        const bool allowed = byte == '\t' || byte == '\n' || byte == '\r';
        std::ofstream(path, std::ios::binary) << "old";
        Initialized writer;
        writer.EnterSection("a");
        writer.WriteAttribute("k", std::string(1, static_cast<char>(byte)).c_str());
        std::string xml = "unchanged";
        EXPECT_EQ(writer.Save(path.c_str()), allowed);
        EXPECT_EQ(writer.SaveToString(xml), allowed);
        EXPECT_EQ(xml == "unchanged", !allowed);
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(bytes == "old", !allowed);
    }
    std::filesystem::remove(path);
}

TEST(XMLWriterTest, AFullDiskFailsTheSaveAndLeavesTheOldFile) {
    brindle::FakeFiles files;
    ScopedService<brindle::Files> installed(brindle::SetFiles, files);
    files.Add("/f.xml", brindle::FakeFiles::Kind::kFile, "old");
    files.SetDiskSpace(10);
    Initialized writer;
    writer.EnterSection("a");
    EXPECT_FALSE(writer.Save("/f.xml"));
    EXPECT_FALSE(writer.Save("/no/such/folder/f.xml"));
    EXPECT_FALSE(writer.Save(""));
    EXPECT_FALSE(writer.Save(nullptr));
    std::string bytes;
    ASSERT_TRUE(files.ReadWhole("/f.xml", 100, bytes).ok());
    EXPECT_EQ(bytes, "old");
    files.SetDiskSpace(-1);
    EXPECT_TRUE(writer.Save("/f.xml"));
    ASSERT_TRUE(files.ReadWhole("/f.xml", 100, bytes).ok());
    EXPECT_EQ(bytes, kDeclaration + "<a/>");
}

TEST(XMLWriterTest, FaultsOfTheServiceAreReportedAsFailures) {
    brindle::FakeXmlDom dom;
    ScopedService<brindle::XmlDom> installed(brindle::SetXmlDom, dom);
    XMLWriter writer;
    dom.FaultSwitches().create = true;
    EXPECT_FALSE(writer.Initialize());
    dom.FaultSwitches().create = false;
    EXPECT_TRUE(writer.Initialize());
    writer.EnterSection("a");
    dom.FaultSwitches().documentMarkup = true;
    EXPECT_FALSE(writer.Save("/tmp/brindle_never_written.xml"));
    EXPECT_EQ(Saved(writer), "not saved");
    dom.FaultSwitches().documentMarkup = false;
    EXPECT_EQ(Saved(writer), kDeclaration + "<a/>");
}

TEST(XMLWriterTest, CopiesASectionOfAReaderWithTextsReplaced) {
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(reader.LoadFromString("<r xmlns:p='u'><p:a k='%F% \xFC'><!-- %F% --><b>%V%</b>%F%</p:a></r>",
                                      unused));
    Initialized writer;
    EXPECT_FALSE(writer.EnterCopy(reader)) << "no section is open";
    EXPECT_EQ(Saved(writer), kDeclaration);
    ASSERT_TRUE(reader.EnterSection("r", true));
    ASSERT_TRUE(reader.EnterSection("a", true));
    EXPECT_FALSE(XMLWriter().EnterCopy(reader)) << "not initialised";
    writer.EnterSection("t");
    ASSERT_TRUE(writer.EnterCopy(reader, {{"%F%", "<\x80>"}, {"%V%", "%F%"}, {"", "x"}}));
    writer.WriteAttribute("more", true);
    writer.CloseSection();
    ASSERT_TRUE(writer.EnterCopy(reader));
    writer.CloseSection();
    writer.CloseSection();
    EXPECT_EQ(Saved(writer),
              kDeclaration +
                  "<t><p:a xmlns:p=\"u\" k=\"&lt;\x80&gt; \xFC\" more=\"TRUE\"><!-- <\x80> --><b>%F%</b>"
                  "&lt;\x80&gt;</p:a><p:a xmlns:p=\"u\" k=\"%F% \xFC\"><!-- %F% --><b>%V%</b>%F%</p:a></t>");
}

TEST(XMLWriterTest, ACopySharesTheDocument) {
    Initialized writer;
    writer.EnterSection("a");
    XMLWriter copy(writer);
    XMLWriter assigned;
    assigned = writer;
    copy.WriteAttribute("k", 1);
    assigned.WriteAttribute("l", 2);
    EXPECT_EQ(Saved(writer), kDeclaration + "<a k=\"1\" l=\"2\"/>");
}

TEST(XMLWriterTest, SectionsMayNestToAnyDepth) {
    Initialized writer;
    for (int i = 0; i < 100000; ++i) writer.EnterSection("n");
    EXPECT_EQ(Saved(writer).size(), kDeclaration.size() + 99999 * 7 + 4);
}

}  // namespace
