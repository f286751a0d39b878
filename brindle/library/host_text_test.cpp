// What hosts reach of the text, files and console services, and what the library says of itself.
#include "brindle/library/host_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "brindle/library/console.h"
#include "brindle/library/host_path_access.h"
#include "brindle/library/library_info.h"
#include "brindle/platform/code_page.h"
#include "brindle/platform/environment.h"
#include "brindle/platform/fake/code_page_fake.h"
#include "brindle/platform/fake/environment_fake.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

TEST(HostText, CrossesBothWays) {
    struct Row {
        const char* label;
        std::string system;
        std::string bytes;
        bool whole;
        std::string back;
    };
    const std::vector<Row> rows = {
        {"plain", "abc", "abc", true, "abc"},
        {"empty", "", "", true, ""},
        {"a letter with a byte", "\xC3\xA9", "\xE9", true, "\xC3\xA9"},
        {"the euro sign", "\xE2\x82\xAC", "\x80", true, "\xE2\x82\xAC"},
        {"a character without a byte", "a\xE2\x86\x92z", "a?z", false, "a?z"},
        {"not UTF-8", "a\xE9", "a\xE9", true, "a\xC3\xA9"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = "before";
        EXPECT_EQ(TextFromSystem(row.system, bytes), row.whole);
        EXPECT_EQ(bytes, row.bytes);
        EXPECT_EQ(TextToSystem(bytes), row.back);
    }
}

TEST(HostText, TheHostSelectsTheCodePage) {
    FakeCodePage fake;
    const ScopedService<CodePage> installed(&SetCodePage, fake);
    EXPECT_EQ(SelectedCodePage(), 1252u);
    EXPECT_TRUE(SelectCodePage(65001));
    EXPECT_EQ(SelectedCodePage(), 65001u);
    EXPECT_EQ(TextToSystem("\xE2\x86\x92"), "\xE2\x86\x92");
    EXPECT_FALSE(SelectCodePage(4711));
    EXPECT_EQ(SelectedCodePage(), 65001u);
}

TEST(HostPathAccess, GoesThroughTheFilesService) {
    FakeFiles fake;
    const ScopedService<Files> installed(&SetFiles, fake);
    ASSERT_TRUE(fake.WriteWhole("/site.ini", "[Site]").ok());
    std::string bytes = "before";
    EXPECT_TRUE(ReadHostFile("\\site.ini", 6, bytes).ok());
    EXPECT_EQ(bytes, "[Site]");
    bytes = "before";
    EXPECT_FALSE(ReadHostFile("/site.ini", 5, bytes).ok());
    EXPECT_FALSE(ReadHostFile("/missing.ini", 6, bytes).ok());
    EXPECT_EQ(bytes, "before");
    EXPECT_TRUE(WriteHostFile("\\site.ini", "[New]").ok());
    EXPECT_TRUE(ReadHostFile("/site.ini", 6, bytes).ok());
    EXPECT_EQ(bytes, "[New]");
    EXPECT_FALSE(WriteHostFile("/no folder/site.ini", "").ok());
    EXPECT_EQ(SystemPathOf("/SITE.INI"), fake.SystemPath("/SITE.INI", false));
    fake.Add("/here", FakeFiles::Kind::kFolder);
    ASSERT_TRUE(fake.SetCurrentDirectory("/here").ok());
    EXPECT_EQ(AbsoluteHostPath("a\\b"), "/here/a\\b");
    for (const char* path : {"/a", "\\a", "C:\\a", "C:a", ""}) EXPECT_EQ(AbsoluteHostPath(path), path);
    EXPECT_FALSE(MapDriveLetter('1', "/media"));
    EXPECT_TRUE(MapDriveLetter('c', "/media"));
    EXPECT_EQ(SystemPathOf("C:\\x"), fake.SystemPath("C:\\x", false));
    EXPECT_TRUE(MapDriveLetter('C', ""));
}

TEST(Console, ColoursFollowTheEnvironment) {
    struct Row {
        const char* label;
        const char* name;
        const char* value;
        bool allowed;
    };
    const std::vector<Row> rows = {
        {"nothing set", "OTHER", "1", true},        {"NO_COLOR", "NO_COLOR", "1", false},
        {"NO_COLOR of 0", "NO_COLOR", "0", false},  {"an empty NO_COLOR", "NO_COLOR", "", true},
        {"a dumb terminal", "TERM", "dumb", false}, {"a terminal", "TERM", "xterm", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        FakeEnvironment fake;
        const ScopedService<Environment> installed(&SetEnvironment, fake);
        fake.Set(row.name, row.value);
        EXPECT_EQ(ColoursAllowed(), row.allowed);
    }
}

TEST(Console, AsksForEachStreamAlone) {
    FakeEnvironment fake;
    const ScopedService<Environment> installed(&SetEnvironment, fake);
    EXPECT_FALSE(OutputIsTerminal());
    EXPECT_FALSE(ErrorIsTerminal());
    fake.SetTerminal(StandardStream::kOutput);
    EXPECT_TRUE(OutputIsTerminal());
    EXPECT_FALSE(ErrorIsTerminal());
    fake.SetTerminal(StandardStream::kError);
    EXPECT_TRUE(ErrorIsTerminal());
}

TEST(LibraryInfo, TellsVersionCodePageAndLimits) {
    FakeCodePage fake;
    const ScopedService<CodePage> installed(&SetCodePage, fake);
    ASSERT_TRUE(SelectCodePage(65001));
    const LibraryInfo info = DescribeLibrary();
    EXPECT_THAT(info.version, ::testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
    EXPECT_EQ(info.codePage, 65001u);
    EXPECT_FALSE(info.compiler.empty());
    std::string services;
    for (const LibraryPart& part : info.parts) {
        services += part.service + "; ";
        EXPECT_FALSE(part.library.empty()) << part.service;
    }
    for (const char* service : {"XML", "SNMP", "code page", "files"})
        EXPECT_THAT(services, ::testing::HasSubstr(service));
    ASSERT_FALSE(info.limits.empty());
    EXPECT_EQ(info.limits[0].name, "XML document");
    EXPECT_EQ(info.limits[0].value, 16u << 20);
}

}  // namespace
}  // namespace brindle
