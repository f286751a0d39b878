// The manners all commands share, on the built tool.
#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(Tool, ArgumentManners) {
    const std::vector<ToolRow> rows = {
        {"an option behind the text", {"address", "1:2:3", "--default", "4:5:6"}, "0001:02:03\n", "", 0},
        {"an option before the text", {"address", "--default", "4:5:6", "1:?:3"}, "0001:05:03\n", "", 0},
        {"a value behind \"=\"", {"address", "--default=4:5:6", "1:?:3"}, "0001:05:03\n", "", 0},
        {"of a repeated option the last wins",
         {"address", "--default", "4:5:6", "--default", "7:8:9", "1:?:3"},
         "0001:08:03\n",
         "",
         0},
        {"a flag may be repeated", {"format", "x", "--trace", "--trace"}, "x\n", "brindle: line", 0},
        {"a text that begins with \"-\"", {"format", "-x %c", "--caption", "C"}, "-x C\n", "", 0},
        {"a text that begins with \"--\"", {"format", "--nothing-known"}, "--nothing-known\n", "", 0},
        {"an unknown option with a value is text", {"format", "--know=1"}, "--know=1\n", "", 0},
        {"a longer name is no option", {"format", "--captions"}, "--captions\n", "", 0},
        {"a shorter name is no option", {"format", "--cap"}, "--cap\n", "", 0},
        {"\"-\" is a text", {"format", "-"}, "-\n", "", 0},
        {"a number is a text", {"format", "-5"}, "-5\n", "", 0},
        {"a list is a text", {"format", "[a,b]"}, "[a,b]\n", "", 0},
        {"a value that is a list", {"format", "%c", "--caption", "[a,b]"}, "[a,b]\n", "", 0},
        {"a command's name is a text", {"format", "address"}, "address\n", "", 0},
        {"an empty text is given", {"format", ""}, "\n", "", 0},
        {"behind \"--\" options are text", {"format", "--caption", "C", "--", "--help"}, "--help\n", "", 0},
        {"a second \"--\" is text", {"format", "--", "--"}, "--\n", "", 0},
        {"a value that looks like an option", {"format", "%c", "--caption", "--help"}, "--help\n", "", 0},
        {"a value that is \"--\"", {"format", "%c", "--caption", "--"}, "--\n", "", 0},
        {"an empty value is given", {"format", "[%c]", "--caption", ""}, "[]\n", "", 0},
        {"an empty value behind \"=\"", {"format", "[%c]", "--caption="}, "[]\n", "", 0},
        {"a value with \"=\"", {"format", "%c", "--caption=a=b"}, "a=b\n", "", 0},
        {"characters of the code page",
         {"format", "%c \xC3\xA9", "--caption", "\xE2\x82\xAC"},
         "\xE2\x82\xAC \xC3\xA9\n",
         "",
         0},
        {"bytes that are not UTF-8 pass", {"format", "\xE9"}, "\xC3\xA9\n", "", 0},
        {"the value is missing",
         {"address", "1:2:3", "--default"},
         "",
         "brindle: --default: its value is missing",
         2},
        {"a flag takes no value",
         {"address", "1:2:3", "--json=yes"},
         "",
         "brindle: --json: takes no value",
         2},
        {"the text is missing",
         {"address"},
         "",
         "brindle: address: TEXT is missing (brindle address --help)",
         2},
        {"one text too many", {"address", "1:2:3", "x"}, "", "brindle: x: one argument too many", 2},
        {"a mistyped option",
         {"address", "1:2:3", "--jsn"},
         "",
         "--jsn: one argument too many; did you mean --json?",
         2},
        {"a mistyped option that takes a value",
         {"format", "a", "--captoin", "C"},
         "",
         "brindle: --captoin: one argument too many; did you mean --caption?",
         2},
        {"an unknown command",
         {"frobnicate-everything"},
         "",
         "brindle: frobnicate-everything: no such command",
         2},
        {"a mistyped command", {"adress"}, "", "did you mean \"address\"?", 2},
        {"an unknown command beyond the code page", {"\xE2\x86\x92"}, "", "brindle: ?: no such command", 2},
        {"an unknown option of the tool", {"--frob", "info"}, "", "brindle: --frob: no such command", 2},
        {"an unknown second word", {"variables", "resolv"}, "", "did you mean \"resolve\"?", 2},
        {"a character without a byte in a text",
         {"format", "a\xE2\x86\x92"},
         "",
         "brindle: LINE: the character U+2192 has no byte in code page 1252",
         2},
        {"a character without a byte in a value",
         {"format", "a", "--caption", "\xF0\x9F\x98\x80"},
         "",
         "brindle: --caption: the character U+1F600 has no byte",
         2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(Tool, NumbersAreDecimalAndHave32Bits) {
    const std::vector<ToolRow> rows = {
        {"zero", {"format", "%i", "--status", "0"}, "0\n", "", 0},
        {"leading zeros are decimal", {"format", "%i", "--status", "010"}, "10\n", "", 0},
        {"the largest", {"format", "%i", "--status", "2147483647"}, "2147483647\n", "", 0},
        {"the smallest", {"format", "%i", "--status", "-2147483648"}, "-2147483648\n", "", 0},
        {"one more",
         {"format", "%i", "--status", "2147483648"},
         "",
         "--status: \"2147483648\" is beyond 32 bits",
         2},
        {"one less", {"format", "%i", "--status=-2147483649"}, "", "is beyond 32 bits", 2},
        {"empty", {"format", "%i", "--status", ""}, "", "--status: \"\" is no decimal number", 2},
        {"hexadecimal", {"format", "%i", "--status", "0x10"}, "", "\"0x10\" is no decimal number", 2},
        {"a plus sign", {"format", "%i", "--status", "+1"}, "", "\"+1\" is no decimal number", 2},
        {"a blank before", {"format", "%i", "--status", " 1"}, "", "\" 1\" is no decimal number", 2},
        {"a letter behind", {"format", "%i", "--status", "1a"}, "", "\"1a\" is no decimal number", 2},
        {"a number that is too long, with a letter behind",
         {"format", "%i", "--status", "99999999999a"},
         "",
         "is no decimal number",
         2},
        {"a comma", {"format", "%i", "--status", "1,5"}, "", "\"1,5\" is no decimal number", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(Tool, HelpEverywhere) {
    const std::vector<std::vector<std::string>> commands = {
        {}, {"run"}, {"check"}, {"address"}, {"format"}, {"variables"}, {"variables", "resolve"}, {"info"}};
    for (const std::vector<std::string>& command : commands) {
        std::vector<std::string> arguments = command;
        arguments.emplace_back("--help");
        std::string path = "brindle";
        for (const std::string& name : command) path += " " + name;
        SCOPED_TRACE(path);
        const ToolResult help = RunTool({arguments, {}, {}, OutputTo::kPipe});
        EXPECT_THAT(help.out, StartsWith(path + ": "));
        EXPECT_THAT(help.out, HasSubstr("--help, -h"));
        EXPECT_THAT(help.out, HasSubstr("\n  brindle "));
        EXPECT_THAT(help.out, Not(HasSubstr(" \n")));  // nothing trails
        EXPECT_EQ(help.err, "");
        EXPECT_EQ(help.code, 0);
        arguments.back() = "-h";
        EXPECT_EQ(RunTool({arguments, {}, {}, OutputTo::kPipe}).out, help.out);
    }
}

TEST(Tool, HelpGoesBeforeMistakes) {
    const ToolResult help =
        RunTool({{"format", "--status", "abc", "a", "b", "--help"}, {}, {}, OutputTo::kPipe});
    EXPECT_THAT(help.out, StartsWith("brindle format: "));
    EXPECT_EQ(help.code, 0);
}

TEST(Tool, WithoutArgumentsItSaysWhatItCanDo) {
    const ToolResult bare = RunTool({});
    EXPECT_EQ(bare.code, 0);
    EXPECT_EQ(bare.out, RunTool({{"--help"}, {}, {}, OutputTo::kPipe}).out);
    EXPECT_THAT(bare.out, HasSubstr("\nTry first\n"));
    for (const char* command :
         {"run SITE", "check PATH...", "address TEXT", "format LINE", "variables resolve", "info"})
        EXPECT_THAT(bare.out, HasSubstr("\n  " + std::string(command) + " "));
    EXPECT_THAT(RunTool({{"variables"}, {}, {}, OutputTo::kPipe}).out, HasSubstr("resolve TEXT"));
}

TEST(Tool, VersionIsOneLine) {
    const ToolResult version = RunTool({{"--version"}, {}, {}, OutputTo::kPipe});
    EXPECT_EQ(version.out, "brindle " BRINDLE_TOOL_VERSION "\n");
    EXPECT_EQ(version.code, 0);
}

TEST(Tool, OutputThatCannotBeWrittenIsAnError) {
    const std::vector<std::pair<OutputTo, const char*>> outputs = {
        {OutputTo::kFullDisk, "No space left"}, {OutputTo::kNowhere, "Bad file descriptor"}};
    for (const auto& [output, why] : outputs) {
        SCOPED_TRACE(why);
        for (const char* command : {"info", "--help", "--version"}) {
            const ToolResult result = RunTool({{command}, {}, {}, output});
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(result.err, "brindle: standard output: " + std::string(why) +
                                      (output == OutputTo::kFullDisk ? " on device\n" : "\n"));
            EXPECT_EQ(result.code, 2);
        }
        // Without a result there is nothing to lose.
        EXPECT_EQ(RunTool({{"address", "nowhere"}, {}, {}, output}).code, 1);
    }
}

TEST(Tool, ColoursOnlyOnATerminalThatWantsThem) {
    const std::string escape = "\x1b[";
    struct Row {
        const char* label;
        OutputTo output;
        std::vector<std::pair<std::string, std::string>> environment;
        bool coloured;
    };
    const std::vector<Row> rows = {
        {"a pipe", OutputTo::kPipe, {}, false},
        {"a terminal", OutputTo::kTerminal, {}, true},
        {"NO_COLOR", OutputTo::kTerminal, {{"NO_COLOR", "1"}}, false},
        {"an empty NO_COLOR says nothing", OutputTo::kTerminal, {{"NO_COLOR", ""}}, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ToolResult help = RunTool({{"--help"}, {}, row.environment, row.output});
        EXPECT_EQ(help.out.find(escape) != std::string::npos, row.coloured);
        const ToolResult error = RunTool({{"address", "x"}, {}, row.environment, row.output});
        const std::string& text = row.output == OutputTo::kTerminal ? error.out : error.err;
        EXPECT_EQ(text.find(escape) != std::string::npos, row.coloured);
        EXPECT_THAT(text, HasSubstr(" \"x\": no address"));
        EXPECT_EQ(error.code, 1);
    }
}

TEST(Tool, LocalesChangeNothing) {
    for (const char* locale : {"C", "de_DE.UTF-8", "nowhere.UTF-8"}) {
        SCOPED_TRACE(locale);
        const ToolResult result =
            RunTool({{"format", "%i %c", "--status", "1234567", "--caption", "\xC3\xA9"},
                     {},
                     {{"LC_ALL", locale}},
                     OutputTo::kPipe});
        EXPECT_EQ(result.out, "1234567 \xC3\xA9\n");
        EXPECT_EQ(result.code, 0);
    }
}

}  // namespace
}  // namespace brindle::testing
