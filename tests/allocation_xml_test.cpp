// Readers and writers of XML when memory runs out: the cursor, the document and the file are as before, or as the
// operation makes them.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "brindle/platform/files.h"
#include "brindle/platform/ini_store.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"
#include "testing/failing_allocation.h"

namespace {

using namespace brindle::testing;

constexpr const char* kDocument =
    "<!DOCTYPE r [<!ENTITY e 'a text of an entity that is rather long'>]><r><first a=\"1\">&e;&e;</first>"
    "<n:second xmlns:n=\"urn:a-namespace-of-some-length\" n:b=\"an attribute of some "
    "length\"><deep/></n:second></r>";

std::string Markup(const XMLReader& reader) {
    std::string xml;
    reader.ReadXML(xml);
    return xml;
}

std::shared_ptr<XMLReader> Opened() {
    auto reader = std::make_shared<XMLReader>();
    CStringA unused;
    EXPECT_TRUE(reader->LoadFromString(kDocument, unused));
    EXPECT_TRUE(reader->EnterSection("r", true));
    return reader;
}

std::string ReadFile(const std::string& path) {
    std::string bytes;
    EXPECT_TRUE(brindle::CurrentFiles().ReadWhole(path, 1'000'000, bytes).ok());
    return bytes;
}

TEST(XmlAllocationTest, LoadingAText) {
    for (const bool positioned : {false, true}) {
        FailEveryAllocation(positioned ? "positioned load" : "load", 2, [positioned] {
            const auto reader = std::make_shared<XMLReader>();
            const auto load = [reader, positioned] {
                CStringA unused;
                brindle::Result result;
                return positioned ? reader->LoadFromStringPositioned(kDocument, result)
                                  : reader->LoadFromString(kDocument, unused);
            };
            const auto check = [reader, load](bool done) {
                EXPECT_EQ(reader->EnterSection("r", true), done);
                reader->CloseSection();
                EXPECT_TRUE(load());
                EXPECT_TRUE(reader->EnterSection("r", true));
                EXPECT_EQ(reader->GetChildSections().size(), 2u);
            };
            return Attempt{[load] { EXPECT_TRUE(load()); }, check};
        });
    }
}

TEST(XmlAllocationTest, TextsThatAreRefused) {
    const std::string many = "<r " + [] {
        std::string attributes;
        for (int i = 0; i < 5'000; ++i) attributes += "a" + std::to_string(i) + "='' ";
        return attributes;
    }() + "/>";
    for (const std::string& text :
         {std::string("<r><unclosed></r>"), std::string("no markup at all"), many}) {
        FailEveryAllocation(text.substr(0, 20).c_str(), 1, [&text] {
            const auto reader = std::make_shared<XMLReader>();
            const auto load = [reader, &text] {
                brindle::Result result;
                EXPECT_FALSE(reader->LoadFromStringPositioned(text.c_str(), result));
            };
            return Attempt{load, [reader](bool) { EXPECT_FALSE(reader->EnterSection("r", true)); }};
        });
    }
}

TEST(XmlAllocationTest, Entering) {
    FailEveryAllocation("enter", 1, [] {
        const auto reader = Opened();
        const auto check = [reader](bool done) {
            if (!done) {
                EXPECT_TRUE(reader->EnterSection("first", false)) << "the section was passed over";
            }
            int number = 0;
            EXPECT_TRUE(reader->ReadAttribute("a", number));
            EXPECT_EQ(number, 1);
            reader->CloseSection();
            EXPECT_TRUE(reader->EnterSection("second", false));
        };
        return Attempt{[reader] { reader->EnterSection("first", false); }, check};
    });
    FailEveryAllocation("names of children", 2, [] {
        const auto reader = Opened();
        const auto check = [reader](bool) { EXPECT_EQ(reader->GetChildSections().size(), 2u); };
        return Attempt{[reader] { static_cast<void>(reader->GetChildSections()); }, check};
    });
}

TEST(XmlAllocationTest, ReadingAttributes) {
    FailEveryAllocation("attributes", 1, [] {
        const auto reader = Opened();
        EXPECT_TRUE(reader->EnterSection("second", false));
        const auto value = std::make_shared<std::string>("before");
        const auto read = [reader, value] {
            reader->ReadAttribute("n:b", *value);
            std::vector<XMLAttribute> all;
            reader->ReadAttributes(all);
            static_cast<void>(reader->GetAttributeNames());
            static_cast<void>(reader->ReadData());
        };
        const auto check = [reader, value](bool) {
            EXPECT_TRUE(*value == "before" || *value == "an attribute of some length") << *value;
            EXPECT_EQ(reader->GetAttributeNames().size(), 2u);
        };
        return Attempt{read, check};
    });
}

// With many attributes, so that the document keeps an index of them.
TEST(XmlAllocationTest, Editing) {
    FailEveryAllocation("edit", 2, [] {
        const auto reader = Opened();
        CStringA value = "an attribute of some length";
        for (int i = 0; i < 40; ++i) reader->WriteAttribute(("name" + std::to_string(i)).c_str(), value);
        const std::string before = Markup(*reader);
        const auto set = [reader, value] {
            CStringA copy = value;
            reader->WriteAttribute("an attribute with a long name", copy);
        };
        const auto check = [=](bool done) {
            EXPECT_TRUE(done || Markup(*reader) == before) << "half an attribute";
            set();
            std::string read;
            EXPECT_TRUE(reader->ReadAttribute("an attribute with a long name", read));
            EXPECT_EQ(read, value.str());
        };
        return Attempt{set, check};
    });
    FailEveryAllocation("a new section", 1, [] {
        const auto reader = Opened();
        const std::string before = Markup(*reader);
        const auto check = [reader, before](bool done) {
            if (done) reader->CloseSection();
            EXPECT_EQ(Markup(*reader) == before, !done);
        };
        return Attempt{[reader] { reader->CreateSection("created"); }, check};
    });
}

TEST(XmlAllocationTest, Writing) {
    const auto source = Opened();
    const auto write = [source](XMLWriter& writer) {
        if (!writer.Initialize()) return false;
        writer.EnterSection("document");
        writer.WriteAttribute("name", "a value that is longer than a string holds by itself");
        writer.EnterCopy(*source, {{"text", "a replacement of the text that makes it longer still"}});
        writer.CloseSection();
        writer.CloseSection();
        return true;
    };
    XMLWriter complete;
    ASSERT_TRUE(write(complete));
    std::string whole;
    ASSERT_TRUE(complete.SaveToString(whole));
    FailEveryAllocation("write", 10, [=] {
        const auto writer = std::make_shared<XMLWriter>();
        const auto check = [writer, whole](bool done) {
            std::string xml;
            const bool saved = writer->SaveToString(xml);
            if (done) {
                EXPECT_EQ(xml, whole);
            }
            if (!done && saved) {
                EXPECT_EQ(xml.find("replacement"), std::string::npos) << "a part of a copy";
            }
        };
        return Attempt{[=] { EXPECT_TRUE(write(*writer)); }, check};
    });
}

TEST(XmlAllocationTest, SavingAFile) {
    const std::string path = ::testing::TempDir() + "allocation_save.xml";
    const auto writer = std::make_shared<XMLWriter>();
    ASSERT_TRUE(writer->Initialize());
    writer->EnterSection("document");
    std::string after;
    ASSERT_TRUE(writer->SaveToString(after));
    FailEveryAllocation("save a file", 4, [=] {
        EXPECT_TRUE(brindle::CurrentFiles().WriteWhole(path, "before").ok());
        const auto check = [=](bool done) { EXPECT_EQ(ReadFile(path), done ? after : "before"); };
        return Attempt{[=] { EXPECT_TRUE(writer->Save(path.c_str())); }, check};
    });
}

TEST(XmlAllocationTest, WritingAnIniValue) {
    const std::string path = ::testing::TempDir() + "allocation_write.ini";
    const std::string before = "[section]\r\nkey=the value that stood here before, long enough\r\n";
    FailEveryAllocation("write an INI value", 4, [=] {
        EXPECT_TRUE(brindle::CurrentFiles().WriteWhole(path, before).ok());
        const auto check = [=](bool done) {
            const std::string after = "[section]\r\nkey=new\r\n";
            EXPECT_EQ(ReadFile(path), done ? after : before);
        };
        const auto write = [=] {
            EXPECT_TRUE(brindle::CurrentIniStore().Write("section", "key", "new", path.c_str()).ok());
        };
        return Attempt{write, check};
    });
}

}  // namespace
