#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

TEST(ToolRule, Evaluates) {
    const std::vector<ToolRow> rows = {
        {"two values",
         {"rule", "eval", "(LEVEL > 10) & STATUS = \"OK%\"", "--value", "LEVEL=12", "--value", "STATUS=OK 1"},
         "TRUE\n",
         "",
         0},
        {"addresses", {"rule", "eval", "0001:02:03 + 0001:01:01"}, "0002:03:04\n", "", 0},
        {"addresses are not cut", {"rule", "eval", "0001:FF:03 + 0000:01:00"}, "0001:100:03\n", "", 0},
        {"empty result", {"rule", "eval", "2 ^ 3"}, "\n", "", 0},
        {"false is an answer", {"rule", "eval", "1 > 2"}, "FALSE\n", "", 0},
        {"a name without a value", {"rule", "eval", "LEVEL"}, "LEVEL\n", "", 0},
        {"an empty value", {"rule", "eval", "LEVEL = \"\"", "--value", "LEVEL="}, "TRUE\n", "", 0},
        {"the first = splits", {"rule", "eval", "A", "--value", "A=b=c"}, "b=c\n", "", 0},
        {"the later of two values", {"rule", "eval", "A", "--value", "A=1", "--value", "A=2"}, "2\n", "", 0},
        {"a value at the address",
         {"rule", "eval", "1:2:3,LEVEL + 4:5:6,LEVEL", "--value", "1:2:3,LEVEL=1", "--value", "LEVEL=7"},
         "8\n",
         "",
         0},
        {"a value elsewhere", {"rule", "eval", "LEVEL", "--value", "1:2:3,LEVEL=1"}, "LEVEL\n", "", 0},
        {"a comma without an address", {"rule", "eval", "x,y", "--value", "x,y=5"}, "5\n", "", 0},
        {"upper case", {"rule", "eval", "level = \"ok\"", "--upper", "--value", "LEVEL=Ok"}, "TRUE\n", "", 0},
        {"rule that begins with a minus",
         {"rule", "eval", "-5"},
         "",
         "brindle: rule: an operand is missing at column 1\n",
         1},
        {"open parenthesis",
         {"rule", "eval", "(1"},
         "",
         "brindle: rule: \"(\" without \")\" at column 1\n",
         1},
        {"empty rule", {"rule", "eval", ""}, "", "brindle: rule: the rule is empty at column 1\n", 1},
        {"a value without =", {"rule", "eval", "1", "--value", "LEVEL"}, "", "--value", 2},
        {"no rule", {"rule", "eval"}, "", "RULE", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolRule, EvaluatesToJson) {
    const std::vector<ToolRow> rows = {
        {"truth",
         {"rule", "eval", "1 = 1", "--json"},
         R"({"type":"Bool","text":"TRUE","bool":true,"int":1,"double":1.0})"
         "\n",
         "",
         0},
        {"span",
         {"rule", "eval", "TIMESPAN(0,0,1,30)", "--json"},
         R"({"type":"TimeSpan","text":"90","bool":true,"int":90,"double":90.0})"
         "\n",
         "",
         0},
        {"text that reads as infinite",
         {"rule", "eval", "A", "--value", "A=inf", "--json"},
         R"({"type":"String","text":"inf","bool":true,"int":-2147483648,"double":"inf"})"
         "\n",
         "",
         0},
        {"not a number",
         {"rule", "eval", "A", "--value", "A=nan", "--json"},
         R"({"type":"String","text":"nan","bool":true,"int":-2147483648,"double":"nan"})"
         "\n",
         "",
         0},
        {"letters of the code page",
         {"rule", "eval", "A", "--value", "A=caf\xC3\xA9", "--json"},
         "{\"type\":\"String\",\"text\":\"caf\xC3\xA9\",\"bool\":true,\"int\":0,\"double\":0.0}\n",
         "",
         0},
        {"address",
         {"rule", "eval", "0001:02:03", "--json"},
         R"({"type":"Address","text":"0001:02:03","bool":true,"int":66051,"double":66051.0})"
         "\n",
         "",
         0},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolRule, Traces) {
    const ToolResult result =
        RunTool({{"rule", "eval", "!(LEVEL > 10) & 1:2:3,STATE = \"A%\"", "--trace", "--value", "LEVEL=12"},
                 "",
                 {},
                 OutputTo::kPipe});
    EXPECT_EQ(result.out, "FALSE\n");
    EXPECT_EQ(result.err,
              "brindle: token : LEVEL (name)\n"
              "brindle: token : 10 (Int)\n"
              "brindle: token : > (operator)\n"
              "brindle: token : ! (operator)\n"
              "brindle: token : 1:2:3,STATE (name)\n"
              "brindle: token : \"A%\" (String)\n"
              "brindle: token : = (operator)\n"
              "brindle: token : & (operator)\n"
              "brindle: rpn   : LEVEL 10 > ! 1:2:3,STATE A% = &\n"
              "brindle: value : LEVEL = 12 (Int), from --value LEVEL=12\n"
              "brindle: step  : 12 (Int) > 10 (Int) -> TRUE (Bool)\n"
              "brindle: step  : ! TRUE (Bool) -> FALSE (Bool)\n"
              "brindle: value : 1:2:3,STATE = \"1:2:3,STATE\" (String), no value given: the name itself\n"
              "brindle: step  : \"1:2:3,STATE\" (String) = \"A%\" (String) -> FALSE (Bool)\n"
              "brindle: step  : FALSE (Bool) & FALSE (Bool) -> FALSE (Bool)\n");
}

TEST(ToolRule, ReversePolish) {
    const std::vector<ToolRow> rows = {
        {"powers", {"rule", "rpn", "2 ^ 3 ^ 2"}, "2 3 2 ^ ^\n", "", 0},
        {"a missing operand converts", {"rule", "rpn", "-5"}, "5 -\n", "", 0},
        {"open parenthesis",
         {"rule", "rpn", "a + (1"},
         "",
         "brindle: rule: \"(\" without \")\" at column 5\n",
         1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolRule, Names) {
    const std::vector<ToolRow> rows = {
        {"json",
         {"rule", "names", "0001:02:03,level > 10", "--json"},
         "{\"addresses\":[\"0001:02:03\"],\"headers\":[\"LEVEL\"]}\n",
         "",
         0},
        {"lines",
         {"rule", "names", "0001:02:03,level > a + a"},
         "address  0001:02:03\nheader   LEVEL\nheader   A\n",
         "",
         0},
        {"none", {"rule", "names", "1 + 2"}, "", "", 0},
        {"none in json", {"rule", "names", "1 + 2", "--json"}, "{\"addresses\":[],\"headers\":[]}\n", "", 0},
        {"open parenthesis",
         {"rule", "names", "(a"},
         "",
         "brindle: rule: \"(\" without \")\" at column 1\n",
         1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolRule, ChecksFiles) {
    std::string name = (std::filesystem::temp_directory_path() / "brindle_rules_XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    const std::filesystem::path folder = name;
    const std::string good = (folder / "good.txt").string();
    const std::string bad = (folder / "bad.txt").string();
    std::ofstream(good) << "LEVEL > 10\r\n\r\n  \nA = \"x\"";
    std::ofstream(bad) << "LEVEL > 10\n\na == b\n(1\n";
    const std::vector<ToolRow> rows = {
        {"without problems", {"rule", "check", good}, "", "", 0},
        {"with problems",
         {"rule", "check", good, bad},
         bad + ":3:3: an operand is missing\n" + bad + ":4:1: \"(\" without \")\"\n",
         "",
         1},
        {"a file that is not there", {"rule", "check", (folder / "none.txt").string()}, "", "none.txt", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace brindle::testing
