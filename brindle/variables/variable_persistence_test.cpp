#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "brindle/framework/archive.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"
#include "brindle/variables/variable_manager.h"
#include "testing/golden.h"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

VariableManager Scope(const Pairs& variables) {
    VariableManager scope;
    for (const auto& [name, value] : variables) scope.addVariable(Variable(name, value));
    return scope;
}

Pairs Contents(const VariableManager& scope) {
    Pairs contents;
    for (const Variable& variable : scope.getVariables())
        contents.emplace_back(variable.name().str(), variable.value().str());
    return contents;
}

const Pairs kStudio = {
    {"Dir", "/media"}, {"amp", "<a & \"b\">"}, {"empty", ""}, {"gr\xFC\xDF", "\x80 5"}, {"lines", "a\tb\nc"}};

TEST(VariablesXml, GoldenDocument) {
    brindle::testing::ExpectGolden("variables.xml", Scope(kStudio).toXML().str());
    brindle::testing::ExpectGolden("variables_empty.xml", VariableManager().toXML().str());
}

TEST(VariablesXml, ComesBackAsWritten) {
    VariableManager scope = Scope({{"old", "gone"}});
    EXPECT_TRUE(scope.fromXML(Scope(kStudio).toXML()));
    EXPECT_EQ(Contents(scope), Contents(Scope(kStudio)));
}

struct ReadRow {
    const char* label;
    const char* xml;
    bool result;
    Pairs expected;
    bool reported;  // a line on standard output
};

TEST(VariablesXml, ReadsRows) {
    const ReadRow rows[] = {
        {"empty text", "", false, {}, false},
        {"not well-formed", "<Variables>", false, {}, true},
        {"not XML at all", "hello", false, {}, true},
        {"no Variables", "<Other><variable name='a' value='1'/></Other>", false, {}, false},
        {"Variables not at the root", "<x><Variables/></x>", false, {}, false},
        {"no entries", "<Variables/>", true, {}, false},
        {"one entry", "<Variables><variable name='a' value='1'/></Variables>", true, {{"a", "1"}}, false},
        {"a missing value reads as empty",
         "<Variables><variable name='a'/></Variables>",
         true,
         {{"a", ""}},
         false},
        {"a missing name is skipped", "<Variables><variable value='1'/></Variables>", true, {}, false},
        {"an empty name is skipped", "<Variables><variable name='' value='1'/></Variables>", true, {}, false},
        {"a later duplicate wins",
         "<Variables><variable name='a' value='1'/><variable name='a' value='2'/></Variables>",
         true,
         {{"a", "2"}},
         false},
        {"other elements are skipped",
         "<Variables><Variable name='x'/><other name='y'/><variable name='a' value='1'><variable name='in'/>"
         "</variable></Variables>",
         true,
         {{"a", "1"}},
         false},
        {"out of order",
         "<Variables><variable name='b'/><variable name='a'/></Variables>",
         true,
         {{"a", ""}, {"b", ""}},
         false},
    };
    for (const ReadRow& row : rows) {
        SCOPED_TRACE(row.label);
        VariableManager scope = Scope({{"old", "gone"}});
        ::testing::internal::CaptureStdout();
        const bool result = scope.fromXML(row.xml);
        EXPECT_EQ(::testing::internal::GetCapturedStdout(),
                  row.reported ? "Problem loading XML string: \n" : "");
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(Contents(scope), row.expected);
    }
}

TEST(VariablesXml, EveryPrefixIsRefusedOrRead) {
    const std::string whole = Scope(kStudio).toXML().str();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        VariableManager scope = Scope({{"old", "gone"}});
        ::testing::internal::CaptureStdout();
        const bool result = scope.fromXML(whole.substr(0, length));
        ::testing::internal::GetCapturedStdout();
        EXPECT_FALSE(result) << length;
        EXPECT_TRUE(Contents(scope).empty()) << length;
    }
}

class VariablesFile : public ::testing::Test {
  protected:
    brindle::FakeFiles m_files;
    brindle::ScopedService<brindle::Files> m_installed{&brindle::SetFiles, m_files};
};

TEST_F(VariablesFile, SavesAndLoads) {
    m_files.Add("/site", brindle::FakeFiles::Kind::kFolder);
    EXPECT_TRUE(Scope(kStudio).save("\\site\\variables.xml"));
    VariableManager outer;
    VariableManager scope = Scope({{"old", "gone"}});
    scope.setParent(&outer);
    EXPECT_TRUE(scope.load("/site/variables.xml"));
    EXPECT_EQ(Contents(scope), Contents(Scope(kStudio)));
    EXPECT_EQ(scope.parent(), &outer);
}

TEST_F(VariablesFile, LoadFailureClearsAndReports) {
    m_files.Add("/bad.xml", brindle::FakeFiles::Kind::kFile, "<Variables");
    for (const char* path : {"/bad.xml", "/missing.xml", ""}) {
        SCOPED_TRACE(path);
        VariableManager scope = Scope({{"old", "gone"}});
        ::testing::internal::CaptureStdout();
        EXPECT_FALSE(scope.load(path));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Problem loading XML string: \n");
        EXPECT_TRUE(Contents(scope).empty());
    }
}

TEST_F(VariablesFile, SaveFailureLeavesTheOldFile) {
    EXPECT_TRUE(Scope({{"a", "1"}}).save("/variables.xml"));
    m_files.SetDiskSpace(10);
    EXPECT_FALSE(Scope(kStudio).save("/variables.xml"));
    m_files.SetDiskSpace(-1);
    EXPECT_FALSE(Scope({{"bell", "\x07"}}).save("/variables.xml")) << "a character XML cannot hold";
    VariableManager scope;
    EXPECT_TRUE(scope.load("/variables.xml"));
    EXPECT_EQ(Contents(scope), (Pairs{{"a", "1"}}));
}

std::string Stored(VariableManager scope) {
    CArchiveMemoryStream stream;
    CArchive archive(stream, CArchive::store);
    scope.Serialize(archive);
    return stream.bytes();
}

TEST(VariablesArchive, GoldenBytes) {
    brindle::testing::ExpectGolden("variables_archive.txt",
                                   brindle::testing::HexDump(Stored(Scope(kStudio))));
    EXPECT_EQ(Stored(VariableManager()), std::string(1, '\0'));
}

// One byte of length below 255, then 16 bits, then 32 bits.
TEST(VariablesArchive, LengthPrefixes) {
    const std::size_t around = Scope({{"a", ""}}).toXML().str().size();
    struct Row {
        const char* label;
        std::size_t length;
        std::string prefix;
    };
    using namespace std::string_literals;
    const Row rows[] = {
        {"one byte", 254, "\xFE"s},
        {"16 bits", 255, "\xFF\xFF\x00"s},
        {"16 bits at the end", 0xFFFD, "\xFF\xFD\xFF"s},
        {"32 bits", 0xFFFE, "\xFF\xFF\xFF\xFE\xFF\x00\x00"s},
        {"32 bits above", 0x10000, "\xFF\xFF\xFF\x00\x00\x01\x00"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const VariableManager scope = Scope({{"a", std::string(row.length - around, 'v')}});
        const std::string bytes = Stored(scope);
        ASSERT_EQ(bytes, row.prefix + scope.toXML().str());
        CArchiveMemoryStream stream(bytes);
        CArchive archive(stream, CArchive::load);
        VariableManager loaded;
        loaded.Serialize(archive);
        EXPECT_EQ(Contents(loaded), Contents(scope));
    }
}

TEST(VariablesArchive, LoadingAnEmptyStringChangesNothing) {
    CArchiveMemoryStream stream(std::string(1, '\0'));
    CArchive archive(stream, CArchive::load);
    VariableManager scope = Scope({{"a", "1"}});
    scope.Serialize(archive);
    EXPECT_EQ(Contents(scope), (Pairs{{"a", "1"}}));
}

TEST(VariablesArchive, EveryPrefixRaisesTheArchiveError) {
    const std::string whole = Stored(Scope(kStudio));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CArchiveMemoryStream stream(whole.substr(0, length));
        CArchive archive(stream, CArchive::load);
        VariableManager scope = Scope({{"a", "1"}});
        EXPECT_THROW(scope.Serialize(archive), CArchiveException) << length;
        EXPECT_EQ(Contents(scope), (Pairs{{"a", "1"}})) << length;
    }
}

}  // namespace
