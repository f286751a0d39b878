// Line breaking, with a font whose bytes are all 10 wide.
#include "brindle/framework/ui/text_layout.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

int TenEach(std::string_view text) {
    return 10 * static_cast<int>(text.size());
}

std::string Joined(const std::vector<TextLine>& lines) {
    std::string text;
    for (const TextLine& line : lines) {
        EXPECT_EQ(line.width, TenEach(line.text));
        text += "[" + line.text + "]";
    }
    return text;
}

struct Row {
    const char* label;
    std::string text;
    int width;
    const char* expected;
};

void Expect(const std::vector<Row>& rows, bool breaks, bool ellipsis, bool utf8 = false) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Joined(BreakIntoLines(row.text, {row.width, breaks, ellipsis, utf8}, TenEach)),
                  row.expected);
    }
}

TEST(TextLayout, LinesEndAtLineBreaks) {
    const std::vector<Row> rows = {
        {"empty", "", 50, "[]"},
        {"one line, however wide", "aaa bbb ccc", 50, "[aaa bbb ccc]"},
        {"LF", "a\nb", 50, "[a][b]"},
        {"CR", "a\rb", 50, "[a][b]"},
        {"both are one", "a\r\nb", 50, "[a][b]"},
        {"the other way round are two", "a\n\rb", 50, "[a][][b]"},
        {"at the end", "a\n", 50, "[a][]"},
        {"spaces stay", " a  b ", 50, "[ a  b ]"},
    };
    Expect(rows, false, false);
}

TEST(TextLayout, LinesBreakAtSpaces) {
    const std::vector<Row> rows = {
        {"empty", "", 50, "[]"},
        {"fits", "aa bb", 50, "[aa bb]"},
        {"one too narrow", "aa bb", 49, "[aa][bb]"},
        {"as many words as fit", "a b c d e f", 50, "[a b c][d e f]"},
        {"uneven words", "aaaa b cc ddddd e", 50, "[aaaa][b cc][ddddd][e]"},
        {"several spaces at the break", "aaa   bbb", 50, "[aaa][bbb]"},
        {"several spaces inside", "a   b c", 50, "[a   b][c]"},
        {"spaces at the end", "aaa  ", 50, "[aaa]"},
        {"spaces at the beginning", "  aaa bbb", 50, "[  aaa][bbb]"},
        {"only spaces", "   ", 50, "[]"},
        {"a long word keeps its line", "a bbbbbbbb c", 50, "[a][bbbbbbbb][c]"},
        {"each paragraph by itself", "aa bb\ncc dd", 40, "[aa][bb][cc][dd]"},
        {"no room at all", "aa bb", 0, "[aa][bb]"},
        {"less than none", "aa bb", -10, "[aa][bb]"},
    };
    Expect(rows, true, false);
}

TEST(TextLayout, WordsThatAreTooWideEndInDots) {
    const std::vector<Row> rows = {
        {"fits", "aaaaa", 50, "[aaaaa]"},
        {"cut", "aaaaaa", 50, "[aa...]"},
        {"only room for the dots", "aaaaaa", 30, "[...]"},
        {"not even for them", "aaaaaa", 10, "[...]"},
        {"others stay", "bb aaaaaa bb", 50, "[bb][aa...][bb]"},
        {"a byte of several", "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4", 60, "[\xC3\xA4\xC3...]"},
    };
    Expect(rows, true, true);
    Expect({{"a character of several bytes stays whole", "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4", 60,
             "[\xC3\xA4...]"}},
           true, true, true);
}

TEST(TextLayout, MeasuresNotMuchMoreThanTheText) {
    struct Long {
        const char* label;
        std::string text;
        int width;
    };
    std::string words;
    for (int i = 0; i < 20'000; ++i) words += "word ";
    const std::vector<Long> rows = {
        {"one word", std::string(100'000, 'a'), 100},
        {"many words in narrow lines", words, 100},
        {"many words in one line", words, 100'000'000},
        {"many line breaks", std::string(100'000, '\n'), 100},
    };
    for (const Long& row : rows) {
        SCOPED_TRACE(row.label);
        std::size_t measured = 0;
        BreakIntoLines(row.text, {row.width, true, true, false}, [&](std::string_view text) {
            measured += text.size();
            return TenEach(text);
        });
        EXPECT_LT(measured, 30 * row.text.size());
    }
}

}  // namespace
}  // namespace brindle
