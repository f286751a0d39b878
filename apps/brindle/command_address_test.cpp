#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

TEST(ToolAddress, PrintsTheCanonicalText) {
    const std::vector<ToolRow> rows = {
        {"short parts", {"address", "12:7:4"}, "0012:07:04\n", "", 0},
        {"letters in lower case", {"address", "ab:c:d"}, "00AB:0C:0D\n", "", 0},
        {"numbers are cut to their range", {"address", "1FFFF:1FF:1FF"}, "FFFF:FF:FF\n", "", 0},
        {"beside an open part they are not", {"address", "?:1FF:2"}, "0000:1FF:02\n", "", 0},
        {"an open unit", {"address", "12:?:4"}, "0012:00:04\n", "", 0},
        {"all parts open", {"address", "::"}, "0000:00:00\n", "", 0},
        {"text behind a comma", {"address", "??:01:02,extra"}, "0000:01:02\n", "", 0},
        {"text that begins with \"-\"", {"address", "-5:1:2"}, "FFFB:01:02\n", "", 0},
        {"too few parts", {"address", "1:2"}, "", "brindle: \"1:2\": no address", 1},
        {"no number", {"address", "x:1:2"}, "", "brindle: \"x:1:2\": no address", 1},
        {"nothing", {"address", ""}, "", "brindle: \"\": no address", 1},
        {"a misspelled option is text", {"address", "--jsn"}, "", "brindle: \"--jsn\": no address", 1},
        {"not even an address, as JSON", {"address", "1:2", "--json"}, "", "no address", 1},
        {"an open part from the default", {"address", "12:?:4", "--default", "1:7:1"}, "0012:07:04\n", "", 0},
        {"every part from the default", {"address", "::", "--default", "1:7:1"}, "0001:07:01\n", "", 0},
        {"a default that is not needed", {"address", "1:2:3", "--default", "7:7:7"}, "0001:02:03\n", "", 0},
        {"open parts of the default are 0",
         {"address", "?:?:4", "--default", "1:?:1"},
         "0001:00:04\n",
         "",
         0},
        {"a completed address has its range",
         {"address", "?:1FF:2", "--default", "1:1:1"},
         "0001:FF:02\n",
         "",
         0},
        {"a default that is no address",
         {"address", "1:2:3", "--default", "9"},
         "",
         "brindle: --default: \"9\" is no address",
         2},
        {"an empty default is given",
         {"address", "1:2:3", "--default", ""},
         "",
         "brindle: --default: \"\" is no address",
         2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolAddress, PrintsJson) {
    const std::vector<ToolRow> rows = {
        {"completed",
         {"address", "12:?:4", "--default", "1:7:1", "--json"},
         R"({"text":"0012:00:04","net":18,"unit":0,"port":4,"netDeferred":false,"unitDeferred":true,)"
         R"("portDeferred":false,"packed":1179652,"completed":"0012:07:04"})"
         "\n",
         "",
         0},
        {"without a default",
         {"address", "--json", "0012:03:04"},
         R"({"text":"0012:03:04","net":18,"unit":3,"port":4,"netDeferred":false,"unitDeferred":false,)"
         R"("portDeferred":false,"packed":1180420})"
         "\n",
         "",
         0},
        {"a part beyond its range spills into its neighbour",
         {"address", "?:1FF:2", "--json"},
         R"({"text":"0000:1FF:02","net":0,"unit":511,"port":2,"netDeferred":true,"unitDeferred":false,)"
         R"("portDeferred":false,"packed":130818})"
         "\n",
         "",
         0},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

}  // namespace
}  // namespace brindle::testing
