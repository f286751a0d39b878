// The code page's contract, over the system's service and the fake one, and the pieces both are made of.
#include "brindle/platform/code_page.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "brindle/framework/letter_case.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/fake/code_page_fake.h"
#include "brindle/platform/service.h"
#include "brindle/platform/system_text.h"
#include "brindle/platform/utf8.h"

namespace brindle {
namespace {

class CodePageContract : public ::testing::TestWithParam<bool> {
  protected:
    CodePageContract() : m_installed(&SetCodePage, service()) {}
    ~CodePageContract() override { service().Select(kCodePageWindows1252); }
    CodePage& service() { return GetParam() ? BackendCodePage() : static_cast<CodePage&>(m_fake); }

  private:
    FakeCodePage m_fake;
    ScopedService<CodePage> m_installed;
};

INSTANTIATE_TEST_SUITE_P(CodePages, CodePageContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(CodePageContract, IsWindows1252WithoutAnyCall) {
    EXPECT_EQ(service().Selected(), kCodePageWindows1252);
    EXPECT_EQ(ToUtf8("A\x80\xE4"), "A\xE2\x82\xAC\xC3\xA4");
    EXPECT_EQ(FromUtf8("A\xE2\x82\xAC\xC3\xA4"), "A\x80\xE4");
}

TEST_P(CodePageContract, EveryByteOfWindows1252ComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        const std::string bytes = std::string("12345678") + static_cast<char>(byte);
        const std::string utf8 = ToUtf8(bytes);
        EXPECT_TRUE(IsUtf8(utf8));
        EXPECT_EQ(FromUtf8(utf8), bytes);
    }
}

TEST_P(CodePageContract, Windows1252Table) {
    struct Row {
        const char* byte;
        const char* utf8;
    };
    const Row rows[] = {{"\x81", "\xC2\x81"}, {"\x8D", "\xC2\x8D"},     {"\x8F", "\xC2\x8F"},
                        {"\x90", "\xC2\x90"}, {"\x9D", "\xC2\x9D"},     {"\x82", "\xE2\x80\x9A"},
                        {"\x8A", "\xC5\xA0"}, {"\x99", "\xE2\x84\xA2"}, {"\x9F", "\xC5\xB8"},
                        {"\xA0", "\xC2\xA0"}, {"\xFF", "\xC3\xBF"},     {"\x7F", "\x7F"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.utf8);
        EXPECT_EQ(ToUtf8(row.byte), row.utf8);
        EXPECT_EQ(FromUtf8(row.utf8), row.byte);
    }
}

TEST_P(CodePageContract, CharactersWithoutByteBecomeQuestionMarks) {
    struct Row {
        const char* label;
        const char* utf8;
        bool complete;
        const char* bytes;
    };
    const Row rows[] = {
        {"ASCII", "plain", true, "plain"},
        {"no byte", "\xE4\xB8\xAD", false, "?"},
        {"above the first plane", "a\xF0\x9F\x98\x80z", false, "a?z"},
        {"a C1 character that has none", "\xC2\x80", false, "?"},
        {"a lone tail", "\xBF", false, "?"},
        {"a cut character", "\xE2\x82", false, "??"},
        {"cut by a letter", "\xE2\x82z", false, "??z"},
        {"overlong", "\xC0\xAF", false, "??"},
        {"overlong in three", "\xE0\x80\xAF", false, "???"},
        {"a surrogate", "\xED\xA0\x80", false, "???"},
        {"beyond the last", "\xF4\x90\x80\x80", false, "????"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = "+";
        EXPECT_EQ(service().AppendBytes(row.utf8, bytes), row.complete);
        EXPECT_EQ(bytes, std::string("+") + row.bytes);
    }
}

TEST_P(CodePageContract, Utf8IsTheIdentity) {
    ASSERT_TRUE(service().Select(kCodePageUtf8));
    EXPECT_EQ(service().Selected(), kCodePageUtf8);
    EXPECT_EQ(ToUtf8("\xE4\xC3\xA4"), "\xE4\xC3\xA4");
    std::string bytes;
    EXPECT_TRUE(service().AppendBytes("\xFF\xC3\xA4", bytes));
    EXPECT_EQ(bytes, "\xFF\xC3\xA4");
}

TEST_P(CodePageContract, UnknownCodePagesAreRefused) {
    for (const unsigned codePage : {0u, 1u, 99'999u, 1200u, 37u}) {
        SCOPED_TRACE(codePage);
        EXPECT_FALSE(service().Select(codePage));
        EXPECT_EQ(service().Selected(), kCodePageWindows1252);
    }
}

TEST_P(CodePageContract, LetterCaseFollows) {
    EXPECT_EQ(ToUpper('\xE4'), '\xC4');
    ASSERT_TRUE(service().Select(kCodePageUtf8));
    EXPECT_EQ(ToUpper('\xE4'), '\xE4');
    EXPECT_EQ(ToUpper('a'), 'A');
    ASSERT_TRUE(service().Select(kCodePageWindows1252));
    EXPECT_EQ(ToUpper('\xE4'), '\xC4');
}

TEST(CodePage, LetterCaseFollowsTheInstalledServiceOnly) {
    FakeCodePage other;
    ASSERT_TRUE(other.Select(kCodePageUtf8));
    EXPECT_EQ(ToUpper('\xE4'), '\xC4') << "not installed";
    EXPECT_EQ(SetCodePage(&other), nullptr);
    EXPECT_EQ(ToUpper('\xE4'), '\xE4') << "installed";
    EXPECT_EQ(SetCodePage(nullptr), &other);
    EXPECT_EQ(ToUpper('\xE4'), '\xC4') << "the backend's again";
}

TEST(CodePage, FakeCanRefuse) {
    FakeCodePage fake;
    fake.FailSelect(true);
    EXPECT_FALSE(fake.Select(kCodePageUtf8));
    EXPECT_EQ(fake.Selected(), kCodePageWindows1252);
}

class SystemCodePage : public ::testing::Test {
  protected:
    ~SystemCodePage() override { BackendCodePage().Select(kCodePageWindows1252); }
};

TEST_F(SystemCodePage, ConvertsOtherCodePages) {
    struct Row {
        const char* label;
        unsigned codePage;
        const char* bytes;
        const char* utf8;
    };
    const Row rows[] = {
        {"Central European", 1250, "\x8A\xE8", "\xC5\xA0\xC4\x8D"},
        {"Cyrillic", 1251, "A\xCF\xF0", "A\xD0\x9F\xD1\x80"},
        {"Greek", 1253, "\xE1", "\xCE\xB1"},
        {"DOS", 850, "\x84", "\xC3\xA4"},
        {"Japanese, two bytes", 932, "\x93\xFA\\", "\xE6\x97\xA5\\"},
        {"Korean", 949, "\xB0\xA1", "\xEA\xB0\x80"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ASSERT_TRUE(BackendCodePage().Select(row.codePage));
        EXPECT_EQ(ToUtf8(row.bytes), row.utf8);
        EXPECT_EQ(FromUtf8(row.utf8), row.bytes);
    }
}

TEST_F(SystemCodePage, ReplacesWhatHasNoCharacter) {
    ASSERT_TRUE(BackendCodePage().Select(1253));
    EXPECT_EQ(ToUtf8("a\xD2z"), "a\xEF\xBF\xBDz") << "an unassigned byte";
    std::string bytes;
    EXPECT_FALSE(BackendCodePage().AppendBytes("a\xE4\xB8\xADz\xFF", bytes));
    EXPECT_EQ(bytes, "a?z?");
    ASSERT_TRUE(BackendCodePage().Select(932));
    EXPECT_EQ(ToUtf8("a\x93"), "a\xEF\xBF\xBD") << "half a character at the end";
}

TEST_F(SystemCodePage, LongTextsComeBack) {
    ASSERT_TRUE(BackendCodePage().Select(1251));
    std::string bytes;
    for (int i = 0; i < 5000; ++i) bytes += static_cast<char>(0xC0 + i % 64);
    EXPECT_EQ(FromUtf8(ToUtf8(bytes)), bytes);
}

TEST(SystemText, BytesThatAreNotUtf8Pass) {
    std::string bytes;
    EXPECT_TRUE(FromSystemText("\xC3\xA4", bytes));
    EXPECT_EQ(bytes, "\xE4");
    EXPECT_TRUE(FromSystemText("caf\xE9", bytes));
    EXPECT_EQ(bytes, "caf\xE9");
    EXPECT_FALSE(FromSystemText("\xE4\xB8\xAD", bytes));
    EXPECT_EQ(bytes, "?");
    EXPECT_EQ(ToSystemText("\xE4"), "\xC3\xA4");
}

TEST(Utf8, EncodesEveryLength) {
    for (const char32_t character : {U'a', U'\u00E4', U'\u20AC', U'\U0001F600', U'\U0010FFFF'}) {
        std::string text;
        EncodeUtf8(character, text);
        std::size_t position = 0;
        EXPECT_EQ(DecodeUtf8(text, position), character);
        EXPECT_EQ(position, text.size());
    }
    EXPECT_EQ(AsciiPrefix("123456789\xE4"), 9u);
    EXPECT_EQ(AsciiPrefix("12345678"), 8u);
    EXPECT_EQ(AsciiPrefix(""), 0u);
}

}  // namespace
}  // namespace brindle
