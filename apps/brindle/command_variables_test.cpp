#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;

class ToolVariables : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brindle_variables_XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string File(const std::string& name, const std::string& text) {
        const std::string path = m_folder / name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    std::filesystem::path m_folder;
};

TEST_F(ToolVariables, ResolvesInnermostFirst) {
    const std::string inner =
        File("inner.xml", R"(<Variables><variable name="a" value="1"/><variable name="via" value="{b}"/>)"
                          R"(<variable name="" value="x"/><variable name="twice" value="x"/>)"
                          R"(<variable name="twice" value="y"/><variable name="empty"/></Variables>)");
    const std::string outer =
        File("outer.xml", R"(<?xml version="1.0"?><Variables>)"
                          R"(<variable name="a" value="outer"/><variable name="b" value="2"/>)"
                          R"(<variable name="e" value="&#233;"/></Variables>)");
    const std::string empty = File("empty.xml", "<Variables/>");
    const auto row = [](const char* label, std::vector<std::string> arguments, const std::string& out,
                        const char* errorPart = "", int code = 0) {
        arguments.insert(arguments.begin(), {"variables", "resolve"});
        return ToolRow{label, std::move(arguments), out, errorPart, code, {}};
    };
    const std::vector<ToolRow> rows = {
        row("one file", {"{a}{b}", "--file", inner}, "1{b}\n"),
        row("two files behind one option", {"{a}{b}", "--file", inner, outer}, "12\n"),
        row("two options", {"{a}{b}", "--file", inner, "--file", outer}, "12\n"),
        row("the other way round", {"{a}{b}", "--file", outer, inner}, "outer2\n"),
        row("a value is resolved by the outer scope", {"{via}", "--file", inner, outer}, "2\n"),
        row("but not by its own", {"{via}", "--file", inner}, "{b}\n"),
        row("the text behind the files", {"--file", inner, outer, "{a}{b}"}, "12\n"),
        row("the text behind one file", {"--file", inner, "{a}"}, "1\n"),
        row("the text behind \"--\"", {"--file", inner, outer, "--", "{b}"}, "2\n"),
        row("the text between", {"--file", inner, "--file", outer, "{b}"}, "2\n"),
        row("no reference", {"plain", "--file", inner}, "plain\n"),
        row("the last of two of one name", {"{twice}[{empty}]", "--file", inner}, "y[]\n"),
        row("nothing answers", {"{nobody}", "--file", empty}, "{nobody}\n"),
        row("a stray } ends the text", {"{a}}x", "--file", inner}, "1\n"),
        row("a character of the code page", {"{e}\xC3\xA9", "--file", outer}, "\xC3\xA9\xC3\xA9\n"),
        row("an empty text", {"", "--file", inner}, "\n"),
        row("no file", {"{a}"}, "", "--file is missing", 2),
        row("no text", {"--file", inner}, "", "TEXT is missing", 2),
        row("two texts", {"a", "b", "--file", inner}, "", "brindle: b: one argument too many", 2),
    };
    for (const ToolRow& each : rows) CheckRow(each);
}

TEST_F(ToolVariables, FilesThatCannotBeRead) {
    const std::string good = File("good.xml", "<Variables/>");
    const std::string broken =
        File("broken.xml", "<Variables>\n  <variable name=\"a\" value=\"1\">\n</Variables>\n");
    const std::string other = File("other.xml", "<!-- a skin -->\n <skin/>");
    const std::string nested = File("nested.xml", "<site><Variables/></site>");
    const std::string nothing = File("nothing.xml", "");
    const std::string missing = m_folder / "missing.xml";
    struct Row {
        const char* label;
        std::string file;
        std::string place;
    };
    const std::vector<Row> rows = {
        {"not well-formed", broken, broken + ":3:"},
        {"another document", other, other + ":2:2: the document is no \"Variables\""},
        {"not at the root", nested, nested + ":1:1: the document is no \"Variables\""},
        {"an empty file", nothing, nothing},
        {"a missing file", missing, missing + ": "},
        {"a folder", m_folder.string(), m_folder.string() + ": "},
        {"an empty name", "", ": "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        for (const bool second : {false, true}) {
            std::vector<std::string> arguments{"variables", "resolve", "{a}", "--file"};
            if (second) arguments.push_back(good);
            arguments.push_back(row.file);
            const ToolResult result = RunTool({arguments, {}, {}, OutputTo::kPipe});
            EXPECT_EQ(result.out, "");  // nothing of the library's own
            EXPECT_THAT(result.err, ::testing::StartsWith("brindle: " + row.place));
            EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
            EXPECT_EQ(result.code, 2);
        }
    }
}

TEST_F(ToolVariables, DeepNestingNeedsNoStack) {
    const std::string file = File("some.xml", "<Variables/>");
    const std::string deep(100'000, '{');
    const ToolResult result =
        RunTool({{"variables", "resolve", deep + "}", "--file", file}, {}, {}, OutputTo::kPipe});
    EXPECT_EQ(result.out, deep + std::string(100'000, '}') + "\n");
    EXPECT_EQ(result.code, 0);
}

}  // namespace
}  // namespace brindle::testing
