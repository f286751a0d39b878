#include <nlohmann/json.hpp>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

TEST(ToolInfo, TellsWhatAReportNeeds) {
    const ToolResult info = RunTool({{"info"}, {}, {{"TZ", "UTC-5:30"}}, OutputTo::kPipe});
    EXPECT_EQ(info.code, 0);
    EXPECT_EQ(info.err, "");
    for (const char* part :
         {"brindle ", BRINDLE_TOOL_VERSION, "\nbackend ", "libxml2 2.", "CLI11 2.", "nlohmann-json 3.",
          "UTC+05:30\n", "1252\n", "16777216 bytes\n", "256 levels\n", "4096 attributes\n"})
        EXPECT_THAT(info.out, HasSubstr(part));
}

TEST(ToolInfo, PrintsJson) {
    const ToolResult info = RunTool({{"info", "--json"}, {}, {{"TZ", "XYZ3"}}, OutputTo::kPipe});
    EXPECT_EQ(std::count(info.out.begin(), info.out.end(), '\n'), 1);
    const nlohmann::json json = nlohmann::json::parse(info.out);
    EXPECT_EQ(json["version"], BRINDLE_TOOL_VERSION);
    EXPECT_EQ(json["codePage"], 1252);
    EXPECT_EQ(json["utcOffset"], "-03:00");
    EXPECT_EQ(json["backend"], "linux");
    EXPECT_THAT(json["compiler"].get<std::string>(), MatchesRegex("(g\\+\\+|clang) [0-9].*"));
    bool xml = false;
    for (const nlohmann::json& service : json["services"])
        if (service["service"] == "XML") {
            xml = true;
            EXPECT_EQ(service["library"], "libxml2");
            EXPECT_THAT(service["version"].get<std::string>(), MatchesRegex("2\\.[0-9]+\\.[0-9]+.*"));
        }
    EXPECT_TRUE(xml);
    EXPECT_EQ(json["limits"][0]["value"], 16777216);
    std::string names;
    for (const nlohmann::json& limit : json["limits"]) names += limit["name"].get<std::string>() + "; ";
    for (const char* name : {"XML document", "variables resolved", "fields expanded", "INI file"})
        EXPECT_THAT(names, ::testing::HasSubstr(name));
}

}  // namespace
}  // namespace brindle::testing
