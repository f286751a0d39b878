#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

TEST(ToolFormat, FillsTheFields) {
    const std::vector<ToolRow> rows = {
        {"the first example",
         {"format", "%a %c 100%% %i", "--address", "0001:02:03", "--caption", "X", "--status", "2"},
         "0001:02:03 X 100% 2\n",
         "",
         0},
        {"nothing given",
         {"format", "%a %N %U %P %p %c %t %h %r %n %q %j %v"},
         "%a %N %U %P %p %c %t %h %r %n %q %j %v\n",
         "",
         0},
        {"the status is 0 when not given", {"format", "%i %s"}, "0 Black\n", "", 0},
        {"colours", {"format", "%s", "--status", "7"}, "Red\n", "", 0},
        {"parts of the address", {"format", "%N %U %P", "--address", "AB:C:D"}, "00AB 0C 0D\n", "", 0},
        {"open parts of the address are 0", {"format", "%a", "--address", "1:?:"}, "0001:00:00\n", "", 0},
        {"parts beyond their range are cut", {"format", "%a", "--address", "?:1FF:2"}, "0000:FF:02\n", "", 0},
        {"path, text, help, r, n, q",
         {"format", "%p %t %h %r %n %q", "--path", "P", "--text", "T", "--help-text", "H", "--r", "R", "--n",
          "3", "--q", "-4"},
         "P T H R 3 -4\n",
         "",
         0},
        {"-1 is the same as not given", {"format", "%n %q", "--n", "-1", "--q", "-1"}, "%n %q\n", "", 0},
        {"help hangs on the text", {"format", "%h", "--help-text", "H"}, "%h\n", "", 0},
        {"a text without help empties it", {"format", "[%h]", "--text", "T"}, "[]\n", "", 0},
        {"an empty caption is given", {"format", "[%c]", "--caption", ""}, "[]\n", "", 0},
        {"a relative path",
         {"format", ".\\tool.exe", "--path", "C:\\Schem"},
         "C:\\Schem\\.\\tool.exe\n",
         "",
         0},
        {"a relative path without --path", {"format", ".x"}, "\\.x\n", "", 0},
        {"a caption that holds a field", {"format", "%c", "--caption", "%t", "--text", "T"}, "T\n", "", 0},
        {"no address",
         {"format", "%a", "--address", "1:2"},
         "",
         "brindle: --address: \"1:2\" is no address",
         2},
        {"an empty address is given",
         {"format", "%a", "--address", ""},
         "",
         "--address: \"\" is no address",
         2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolFormat, AnswersFieldsAndStates) {
    const std::vector<ToolRow> rows = {
        {"no interface: fields stay", {"format", "#Name# %j", "--address", "1:2:3"}, "#Name# %j\n", "", 0},
        {"a field", {"format", "<#Name#>", "--field", "Name=On Air"}, "<On Air>\n", "", 0},
        {"an unknown field is nothing", {"format", "<#Other#>", "--field", "Name=N"}, "<>\n", "", 0},
        {"names are case-sensitive", {"format", "<#name#>", "--field", "Name=N"}, "<>\n", "", 0},
        {"the value begins behind the first \"=\"",
         {"format", "#a#", "--field", "a=b=c,d"},
         "b=c,d\n",
         "",
         0},
        {"an empty value is given", {"format", "<#a#>", "--field", "a=x", "--field", "a="}, "<>\n", "", 0},
        {"the empty name", {"format", "<##>", "--field", "=V"}, "<V>\n", "", 0},
        {"of two alike the later", {"format", "#a#", "--field", "a=1", "--field", "a=2"}, "2\n", "", 0},
        {"at the address of the call",
         {"format", "#a#", "--address", "1:2:3", "--field", "1:2:3,a=here", "--field", "a=else"},
         "here\n",
         "",
         0},
        {"elsewhere",
         {"format", "#a#", "--address", "1:2:4", "--field", "1:2:3,a=here", "--field", "a=else"},
         "else\n",
         "",
         0},
        {"at the address of the field", {"format", "#1:2:3,a#", "--field", "1:2:3,a=here"}, "here\n", "", 0},
        {"a partial address in the field",
         {"format", "#?:?:9,a#", "--address", "1:2:3", "--field", "1:2:9,a=nine"},
         "nine\n",
         "",
         0},
        {"an open part stands for every number",
         {"format", "#a#", "--address", "1:2:3", "--field", "1:?:?,a=net", "--field", "2:?:?,a=other"},
         "net\n",
         "",
         0},
        {"fewer open parts go before",
         {"format", "#a#", "--address", "1:2:3", "--field", "1:2:?,a=unit", "--field", "1:?:?,a=net",
          "--field", "a=all"},
         "unit\n",
         "",
         0},
        {"what is no address belongs to the name",
         {"format", "#zz,Name#", "--field", "zz,Name=V"},
         "V\n",
         "",
         0},
        {"a lone # stays", {"format", "a#b", "--field", "b=1"}, "a#b\n", "", 0},
        {"an unpaired # behind a field", {"format", "a#b#c#d", "--field", "b=1"}, "a1c#d\n", "", 0},
        {"an unpaired # behind a field with an address",
         {"format", "#1:2:3,b##", "--field", "b=1", "--trace"},
         "1#\n",
         "brindle: #",
         0},
        {"a # that a caption brings is no field",
         {"format", "%c", "--caption", "#a#", "--field", "a=1"},
         "#a#\n",
         "",
         0},
        {"unless the line has one", {"format", "%c#", "--caption", "#a", "--field", "a=1"}, "1\n", "", 0},
        {"a device's state",
         {"format", "%j %v", "--address", "1:2:3", "--device-status", "1:2:3=2"},
         "2 Yellow\n",
         "",
         0},
        {"an unknown state is 0",
         {"format", "%j %v", "--address", "1:2:4", "--device-status", "1:2:3=2"},
         "0 Black\n",
         "",
         0},
        {"a state registers the interface", {"format", "<#a#>", "--device-status", "1:2:3=2"}, "<>\n", "", 0},
        {"a field registers the interface",
         {"format", "%j", "--address", "1:2:3", "--field", "a=1"},
         "0\n",
         "",
         0},
        {"a negative state",
         {"format", "%j", "--address", "1:2:3", "--device-status", "::=-5"},
         "-5\n",
         "",
         0},
        {"a field without \"=\"",
         {"format", "x", "--field", "Name"},
         "",
         "brindle: --field: \"Name\" has no \"=\"",
         2},
        {"a state without \"=\"",
         {"format", "x", "--device-status", "1:2:3"},
         "",
         "--device-status: \"1:2:3\" has no \"=\"",
         2},
        {"a state without address",
         {"format", "x", "--device-status", "=1"},
         "",
         "--device-status: \"\" is no address",
         2},
        {"a state that is no number",
         {"format", "x", "--device-status", "1:2:3=on"},
         "",
         "--device-status: \"on\" is no decimal number",
         2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolFormat, ResolvesVariablesFirst) {
    const std::vector<ToolRow> rows = {
        {"no scope: references stay", {"format", "{Dir}"}, "{Dir}\n", "", 0},
        {"a variable", {"format", "{Dir}/clip.avi", "--set", "Dir=/media"}, "/media/clip.avi\n", "", 0},
        {"a variable that brings a field",
         {"format", "{F}", "--set", "F=%c", "--caption", "C"},
         "C\n",
         "",
         0},
        {"a caption that brings a reference",
         {"format", "%c", "--set", "a=1", "--caption", "{a}"},
         "{a}\n",
         "",
         0},
        {"nested references", {"format", "{a{b}}", "--set", "b=1", "--set", "a1=x"}, "x\n", "", 0},
        {"the last of one name", {"format", "{a}", "--set", "a=1", "--set", "a=2"}, "2\n", "", 0},
        {"an empty value", {"format", "[{a}]", "--set", "a="}, "[]\n", "", 0},
        {"no name", {"format", "x", "--set", "=1"}, "", "brindle: --set: \"=1\" has no name", 2},
        {"no \"=\"", {"format", "x", "--set", "a"}, "", "brindle: --set: \"a\" has no \"=\"", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolFormat, FillsDatesFromTheClock) {
    const ToolResult date =
        RunTool({{"format", "%yyyy%-%MM%-%dd% %H%:%m%:%s% %z%"}, {}, {{"TZ", "XYZ-3:30"}}, OutputTo::kPipe});
    EXPECT_THAT(date.out, MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} \\+0330\n"));
}

TEST(ToolFormat, TraceShowsEveryStage) {
    const ToolResult all =
        RunTool({{"format", ".{D}%c #Name# %j", "--trace", "--set", "D=/m/", "--caption", "#x", "--path", "P",
                  "--address", "1:2:3", "--field", "Name=On", "--device-status", "1:2:3=2"},
                 {},
                 {},
                 OutputTo::kPipe});
    EXPECT_EQ(all.out, "P\\./m/Name# 2\n");
    EXPECT_EQ(all.err,
              "brindle: line  : .{D}%c #Name# %j\n"
              "brindle: hook  : ./m/%c #Name# %j\n"
              "brindle:   asked: status at 0001:02:03: 2\n"
              "brindle: %     : ./m/#x #Name# 2\n"
              "brindle: path  : P\\./m/#x #Name# 2\n"
              "brindle:   asked: field \"x \" at 0001:02:03: nothing (not given)\n"
              "brindle: #     : P\\./m/Name# 2\n");
    EXPECT_EQ(all.code, 0);

    const ToolResult none = RunTool({{"format", "plain", "--trace"}, {}, {}, OutputTo::kPipe});
    EXPECT_EQ(none.out, "plain\n");
    EXPECT_EQ(none.err,
              "brindle: line  : plain\n"
              "brindle: hook  : plain  (no variables)\n"
              "brindle: %     : plain  (no \"%\")\n"
              "brindle: path  : plain  (does not begin with \".\")\n"
              "brindle: #     : plain  (no data interface)\n");
}

TEST(ToolFormat, TheLastStageIsTheResult) {
    const std::vector<std::string> lines = {"%%%c%t", "#a#%%#", ".#a#", "%c.", "%p#",
                                            "{v}%",   "#",      "%",    ".",   ""};
    for (const std::string& line : lines) {
        SCOPED_TRACE(line);
        const ToolResult result =
            RunTool({{"format", line, "--trace", "--caption", "#%t", "--text", ".#a#{v}", "--path", "#p%",
                      "--field", "a=%c#", "--set", "v=.%c#a#"},
                     {},
                     {},
                     OutputTo::kPipe});
        const std::size_t last = result.err.rfind("brindle: #     : ");
        ASSERT_NE(last, std::string::npos);
        std::string stage = result.err.substr(last + 17);
        stage = stage.substr(0, stage.find("  ("));
        if (stage.ends_with('\n')) stage.pop_back();
        EXPECT_EQ(stage + "\n", result.out);
    }
}

}  // namespace
}  // namespace brindle::testing
