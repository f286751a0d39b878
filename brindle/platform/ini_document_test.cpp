// INI text: what is found where, and edits that change nothing else.
#include "brindle/platform/ini_document.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brindle {
namespace {

TEST(IniDocument, FindsValues) {
    struct Row {
        const char* label;
        std::string text;
        const char* section;
        const char* key;
        const char* expected;  // null: not found
    };
    const std::vector<Row> rows = {
        {"plain", "[s]\r\nk=v\r\n", "s", "k", "v"},
        {"no file text", "", "s", "k", nullptr},
        {"names in other case", "[Sec]\nKey=v\n", "sEC", "kEY", "v"},
        {"letters of the code page",
         "[Z\xFCge]\nGr\xF6\xDF"
         "e=5\n",
         "Z\xDCGE",
         "gR\xD6\xDF"
         "E",
         "5"},
        {"blanks around all", " [ s ] \n\tk \t=  v w \t\n", "s", "k", "v w"},
        {"asked with blanks", "[s]\nk=v", " s ", "\tk ", "v"},
        {"empty value", "[s]\nk=\n", "s", "k", ""},
        {"value of blanks", "[s]\nk= \t \n", "s", "k", ""},
        {"a value holds =", "[s]\nk==a=b\n", "s", "k", "=a=b"},
        {"no comment behind a value", "[s]\nk=a ; b\n", "s", "k", "a ; b"},
        {"a comment is no key", "[s]\n;k=v\n", "s", ";k", nullptr},
        {"an indented comment either", "[s]\n  ;k=v\n", "s", "k", nullptr},
        {"# is no comment", "[s]\n#k=v\n", "s", "#k", "v"},
        {"a line without = is no key", "[s]\nk\nk=2\n", "s", "k", "2"},
        {"a line that begins with =", "[s]\n=v\n", "s", "", nullptr},
        {"first of two keys", "[s]\nk=1\nK=2\n", "s", "k", "1"},
        {"first of two sections", "[s]\na=1\n[t]\n[S]\nb=2\n", "s", "b", nullptr},
        {"key before any section", "k=1\n[s]\n", "s", "k", nullptr},
        {"the empty section", "[]\nk=1\n", "", "k", nullptr},
        {"double quotes", "[s]\nk=\" v \"\n", "s", "k", " v "},
        {"single quotes", "[s]\nk=' v '\n", "s", "k", " v "},
        {"one pair only", "[s]\nk=\"\"v\"\"\n", "s", "k", "\"v\""},
        {"quotes that do not match", "[s]\nk=\"v'\n", "s", "k", "\"v'"},
        {"one quote alone", "[s]\nk=\"\n", "s", "k", "\""},
        {"text behind the quotes", "[s]\nk=\"a\" b\n", "s", "k", "\"a\" b"},
        {"line ends of CR", "[s]\rk=1\rj=2\r", "s", "j", "2"},
        {"mixed line ends", "[s]\r\nk=1\nj=2\r[t]\n", "s", "j", "2"},
        {"text behind the bracket", "[s] ; c\nk=1\n", "s", "k", "1"},
        {"the last bracket counts", "[a]b]\nk=1\n", "a]b", "k", "1"},
        {"a section line that is not closed", "[a]\n[b\nk=1\n", "a", "k", "1"},
        {"byte order mark hides its line", "\xEF\xBB\xBF[s]\nk=1\n", "s", "k", nullptr},
        {"no-break spaces are no blanks", "[s]\nk=\xA0v\xA0\n", "s", "k", "\xA0v\xA0"},
        {"end-of-file mark", "[s]\nk=v\x1A", "s", "k", "v"},
        {"vertical tab and form feed", "[s]\nk=\v\fv\f\v\n", "s", "k", "v"},
        {"zero byte ends the value", std::string("[s]\nk=a\0b\nj=2\n", 14), "s", "k", "a"},
        {"and not the file", std::string("[s]\nk=a\0b\nj=2\n", 14), "s", "j", "2"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const IniDocument document(row.text);
        std::string_view value = "before";
        EXPECT_EQ(document.Find(row.section, row.key, value), row.expected != nullptr);
        EXPECT_EQ(value, row.expected ? row.expected : "before");
    }
}

// Long sections answer through an index once they are asked often: the same answers.
TEST(IniDocument, LongSectionsAnswerTheSame) {
    std::string text = "[short]\nk7=short\n[long]\n";
    for (int i = 0; i < 300; ++i) text += "K" + std::to_string(i) + "=" + std::to_string(i) + "\nk7=second\n";
    IniDocument document(text);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        const std::string key = "k" + std::to_string(i);
        std::string_view value;
        EXPECT_TRUE(document.Find("LONG", key, value));
        EXPECT_EQ(value, i == 7 ? "second" : std::to_string(i));
        EXPECT_FALSE(document.Find("long", key + "x", value));
        if (i % 50 == 0) {
            EXPECT_TRUE(document.Find("short", "K7", value));
            EXPECT_EQ(value, "short");
        }
    }
    ASSERT_TRUE(document.SetValue("long", "k200", "new"));
    std::string_view value;
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(document.Find("long", "k200", value));
        EXPECT_EQ(value, "new");
    }
}

TEST(IniDocument, ListsNames) {
    const IniDocument document("k=0\n[ b ]\ny = 1\nword\n;c=2\nX=\n[a]\n[]\n[B]\nz=3\n");
    EXPECT_EQ(document.SectionList(), std::string("b\0a\0B\0", 6));
    EXPECT_EQ(document.KeyList("B"), std::string("y\0X\0", 4));
    EXPECT_EQ(document.KeyList("a"), "");
    EXPECT_EQ(document.KeyList("none"), "");
}

TEST(IniDocument, EditsLeaveTheRestAlone) {
    struct Row {
        const char* label;
        const char* before;
        const char* key;    // null: remove the section [A]
        const char* value;  // null: remove the key
        const char* after;
    };
    const std::vector<Row> rows = {
        {"into nothing", "", "k", "v", "[A]\r\nk=v\r\n"},
        {"a new section", "[B]\nx=1\n", "k", "v", "[B]\nx=1\n[A]\nk=v\n"},
        {"behind a line that is not ended", "[B]\nx=1", "k", "v", "[B]\nx=1\n[A]\nk=v\n"},
        {"a new key", "[A]\r\nj=1\r\n[B]\r\n", "k", "v", "[A]\r\nj=1\r\nk=v\r\n[B]\r\n"},
        {"a new key before the blank lines", "[A]\nj=1\n\n \n[B]\n", "k", "v", "[A]\nj=1\nk=v\n\n \n[B]\n"},
        {"a new key behind a comment", "[A]\n; tail\n[B]\n", "k", "v", "[A]\n; tail\nk=v\n[B]\n"},
        {"a first key", "[A]", "k", "v", "[A]\r\nk=v\r\n"},
        {"a value", "; c\n[A] x\n  K  =  1  \nj = 2\n", "k", "v", "; c\n[A] x\n  K  =  v  \nj = 2\n"},
        {"a value in quotes", "[A]\nk=\"a b\"\n", "k", "v", "[A]\nk=v\n"},
        {"an empty value", "[A]\nk=\nj=1\n", "k", "v", "[A]\nk=v\nj=1\n"},
        {"CR line ends", "[A]\rk=1\r", "j", "v", "[A]\rk=1\rj=v\r"},
        {"the first of two keys", "[A]\nk=1\nk=2\n", "k", "v", "[A]\nk=v\nk=2\n"},
        {"the first of two sections", "[A]\n[B]\n[A]\nk=2\n", "k", "v", "[A]\nk=v\n[B]\n[A]\nk=2\n"},
        {"a comment of that name stays", "[A]\n;k=0\nk=1\n", "k", "v", "[A]\n;k=0\nk=v\n"},
        {"remove a key", "[A]\nk = 1\nj=2\n", "k", nullptr, "[A]\nj=2\n"},
        {"remove the only key", "[A]\nk=1", "k", nullptr, "[A]\n"},
        {"remove no key", "[A]\nj=1\n", "k", nullptr, "[A]\nj=1\n"},
        {"remove a section", "; c\n[a]\n; in\nk=1\n\n[B]\nx=1\n", nullptr, nullptr, "; c\n[B]\nx=1\n"},
        {"remove the last section", "[B]\nx=1\n[A]\nk=1", nullptr, nullptr, "[B]\nx=1\n"},
        {"remove no section", "[B]\n", nullptr, nullptr, "[B]\n"},
        {"the same value", "[A]\nk = v\n", "k", "v", "[A]\nk = v\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IniDocument document(row.before);
        bool changed = false;
        if (!row.key)
            changed = document.RemoveSection("A");
        else
            changed =
                row.value ? document.SetValue("A", row.key, row.value) : document.RemoveKey("A", row.key);
        EXPECT_EQ(document.Text(), row.after);
        EXPECT_EQ(changed, std::string(row.before) != row.after);
    }
}

// Whatever the text is cut to, it can be read and written, and what was written is found.
TEST(IniDocument, EveryPrefixCanBeEdited) {
    const std::string text = "; c\r\n[A] x\r\n k = \"v\" \r\n\r\n[b\n=x\n[B]\rj==1\r[A]\nk=2";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        SCOPED_TRACE(length);
        IniDocument document(text.substr(0, length));
        std::string_view value;
        document.SetValue("A", "k", "new");
        ASSERT_TRUE(document.Find("A", "k", value));
        EXPECT_EQ(value, "new");
        EXPECT_TRUE(document.RemoveKey("A", "k"));
        EXPECT_TRUE(document.RemoveSection("A"));
        document.SectionList();
    }
}

TEST(IniDocument, NamesThatCannotBeFoundAgain) {
    for (const char* name : {"", " ", "a\nb", "a\rb"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(IsIniSectionName(name));
        EXPECT_FALSE(IsIniKeyName(name));
    }
    EXPECT_TRUE(IsIniSectionName("a]b"));
    EXPECT_TRUE(IsIniSectionName(";a"));
    EXPECT_TRUE(IsIniSectionName("a=b"));
    EXPECT_TRUE(IsIniKeyName("my key.1"));
    for (const char* name : {"a=b", ";a", "[a]"}) EXPECT_FALSE(IsIniKeyName(name)) << name;
}

}  // namespace
}  // namespace brindle
