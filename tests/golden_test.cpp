// The golden-file helper: equal passes, different fails with a diff and the command that accepts.
#include "testing/golden.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace brindle::testing {
namespace {

class GoldenTest : public ::testing::Test {
  protected:
    GoldenTest() {
        std::filesystem::create_directories(Folder() + "/golden");
        std::ofstream(Folder() + "/golden/text") << "one\ntwo\n";
    }
    ~GoldenTest() override {
        ::unsetenv("BRINDLE_ACCEPT_GOLDEN");
        std::filesystem::remove_all(Folder());
    }
    static std::string Folder() {
        const std::string locale =
            std::getenv("BRINDLE_TEST_LOCALE") ? "german" : "c";  // both may run at once
        return ::testing::TempDir() + "brindle_golden_" + locale;
    }
};

TEST_F(GoldenTest, EqualTextPasses) {
    CompareGolden(Folder(), "text", "one\ntwo\n");
    EXPECT_EQ(LoadGolden(Folder(), "text"), "one\ntwo\n");
}

TEST_F(GoldenTest, DifferenceFailsWithDiffAndCommand) {
    EXPECT_NONFATAL_FAILURE(CompareGolden(Folder(), "text", "one\n2\n"), "- 2: two\n+ 2: 2\n");
    EXPECT_NONFATAL_FAILURE(CompareGolden(Folder(), "text", "one\n"), "tools/accept-golden");
    EXPECT_FALSE(std::filesystem::exists(Folder() + "/golden/text.actual"));
}

TEST_F(GoldenTest, MissingFileFails) {
    EXPECT_NONFATAL_FAILURE(CompareGolden(Folder(), "none", "one\n"), "does not exist");
    EXPECT_NONFATAL_FAILURE(LoadGolden(Folder(), "none"), "cannot be read");
}

TEST_F(GoldenTest, AcceptingStillFailsAndWritesTheActualText) {
    ::setenv("BRINDLE_ACCEPT_GOLDEN", "1", 1);
    EXPECT_NONFATAL_FAILURE(CompareGolden(Folder(), "text", "new\n"), "differs");
    EXPECT_EQ(LoadGolden(Folder(), "text.actual"), "new\n");
    EXPECT_EQ(LoadGolden(Folder(), "text"), "one\ntwo\n");
}

struct DiffRow {
    const char* label;
    std::string expected;
    std::string actual;
    std::string diff;
};

TEST(LineDiff, ShowsWhatDiffers) {
    const DiffRow rows[] = {
        {"equal", "a\nb\n", "a\nb\n", ""},
        {"changed", "a\nb\nc\n", "a\nx\nc\n", "- 2: b\n+ 2: x\n"},
        {"added", "a\nc\n", "a\nb\nc\n", "+ 2: b\n"},
        {"removed", "a\nb\n", "a\n", "- 2: b\n"},
        {"last line feed", "a\n", "a", "- 1: a\n+ 1: a (no line feed)\n"},
        {"everything", "", "a\n", "+ 1: a\n"},
        {"control and high bytes", "a\n", "\x01\xE9\n", "- 1: a\n+ 1: \\x01\\xE9\n"},
    };
    for (const DiffRow& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(LineDiff(row.expected, row.actual), row.diff);
    }
}

TEST(LineDiff, CutsLongParts) {
    std::string many;
    for (int i = 0; i < 50; ++i) many += "x\n";
    EXPECT_NE(LineDiff("", many).find("+ ... and 10 more\n"), std::string::npos);
}

TEST(HexDump, SixteenBytesALine) {
    EXPECT_EQ(HexDump(""), "");
    EXPECT_EQ(HexDump(std::string("A\0\xFF", 3)),
              "0000  41 00 FF                                         A..\n");
    EXPECT_EQ(HexDump("0123456789abcdefg"),
              "0000  30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66  0123456789abcdef\n"
              "0010  67                                               g\n");
}

}  // namespace
}  // namespace brindle::testing
