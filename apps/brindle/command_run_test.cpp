// brindle run and brindle check, as processes.
#include <sys/resource.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/brindle/tool_test_rows.h"
#include "host/written_site_test.h"

namespace brindle::testing {
namespace {

using host::WrittenSite;
using ::testing::HasSubstr;

const std::string kStudio = BRINDLE_SOURCE_FOLDER "/examples/sites/studio";
const std::string kExpected = kStudio + "/expected.jsonl";

ToolResult Brindle(std::vector<std::string> arguments, std::string input = {}) {
    return RunTool({std::move(arguments), std::move(input), {}, OutputTo::kPipe});
}

std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A small site whose one object logs its polls.
void WritePolls(const WrittenSite& site, const char* trigger = "<PollTrigger/>") {
    site.WriteObjects({"a"});
    site.WriteBehaviour("a", trigger, "<WriteLogAction Name='note' Text='polled'/>");
}

TEST(ToolRun, TheStationGivesItsExpectedLines) {
    const ToolResult result = Brindle({"run", kStudio, "--fast", "--expect", kExpected});
    EXPECT_EQ(result.code, 0) << result.out;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST(ToolRun, AChangedBehaviourIsADifference) {
    const WrittenSite copy;
    std::filesystem::copy(kStudio, copy.Folder(), std::filesystem::copy_options::recursive);
    const std::string file = copy.Path("behaviours/alarms.xml");
    std::string text = FileText(file);
    const std::size_t at = text.find("Period=\"3000\"");
    ASSERT_NE(at, std::string::npos);
    std::ofstream(file, std::ios::binary) << text.replace(at, 13, "Period=\"4000\"");
    const ToolResult result = Brindle({"run", copy.Folder(), "--fast", "--expect", kExpected});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr("\"period\":3000"));
    EXPECT_THAT(result.out, HasSubstr("\"period\":4000"));
    EXPECT_THAT(result.out, HasSubstr("  <- due, period"));
    EXPECT_THAT(result.err, HasSubstr("the run differs"));
}

TEST(ToolRun, AFastRunGivesTheSameBytesEveryTime) {
    for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
             {"--json"}, {"--trace"}, {"--json", "--trace", "--for", "3600"}}) {
        std::vector<std::string> arguments = {"run", kStudio, "--fast"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ToolResult first = Brindle(arguments);
        EXPECT_EQ(first.code, 0);
        EXPECT_GT(first.out.size(), 1000U);
        EXPECT_EQ(Brindle(arguments).out, first.out);
    }
}

TEST(ToolRun, EveryLineOfJsonIsAnObjectWithATimeAndAKind) {
    const ToolResult result = Brindle({"run", kStudio, "--fast", "--trace", "--json"});
    std::istringstream lines(result.out);
    std::string line;
    std::uint64_t last = 0;
    std::size_t count = 0;
    while (std::getline(lines, line)) {
        const auto record = nlohmann::json::parse(line, nullptr, false);
        ASSERT_TRUE(record.is_object()) << line;
        EXPECT_TRUE(record["kind"].is_string()) << line;
        ASSERT_TRUE(record["t"].is_number_unsigned()) << line;
        EXPECT_GE(record["t"].get<std::uint64_t>(), last) << line;
        last = record["t"];
        ++count;
    }
    EXPECT_GT(count, 100U);
}

TEST(ToolRun, EventsFromTheStandardInput) {
    const WrittenSite site;
    WritePolls(site);
    const std::string events = "{\"kind\":\"poll\",\"t\":1500}\nwhat\n{\"kind\":\"poll\",\"t\":2000}";
    const ToolResult fast = Brindle({"run", site.Folder(), "--events", "-", "--fast"}, events);
    EXPECT_EQ(fast.code, 0);
    EXPECT_EQ(fast.out,
              "    0.000        start  Test, 1 objects\n"
              "    1.500        poll\n"
              "    1.500  a       -> PollTrigger fires: polled\n"
              "    1.500  a          -> log      polled\n"
              "    2.000        poll\n"
              "    2.000  a       -> PollTrigger fires: polled\n"
              "    2.000  a          -> log      polled\n"
              "    2.000        end  the events have ended, 2 events\n");
    EXPECT_EQ(fast.err, "brindle: standard input:2: is not JSON\n");
    const ToolResult real =
        Brindle({"run", site.Folder(), "--events", "-", "--json"}, "{\"kind\":\"poll\"}\n");
    EXPECT_EQ(real.code, 0);
    EXPECT_THAT(real.out, HasSubstr("\"text\":\"polled\""));
    EXPECT_THAT(real.out, HasSubstr("\"kind\":\"end\""));
}

TEST(ToolRun, TerminalsShowWhatHappensInColours) {
    const WrittenSite site;
    WritePolls(site);
    ToolStart start{{"run", site.Folder(), "--events", "-", "--fast"},
                    "{\"kind\":\"poll\"}\n{\"kind\":\"unlock\",\"object\":\"a\"}\n",
                    {},
                    OutputTo::kTerminal};
    const ToolResult coloured = RunTool(start);
    EXPECT_EQ(coloured.code, 0) << coloured.out;
    for (const char* part : {"\x1b[2m    0.000\x1b[0m", "\x1b[36ma", "\x1b[1mpoll\x1b[0m", "\x1b[32m-> ",
                             "\x1b[34mlog", "\x1b[33mrefused: no action allows it\x1b[0m"})
        EXPECT_THAT(coloured.out, HasSubstr(part));
    start.environment = {{"NO_COLOR", "1"}};
    EXPECT_THAT(RunTool(start).out, ::testing::Not(HasSubstr("\x1b[")));
}

TEST(ToolRun, RealTimeEndsByItself) {
    const WrittenSite site;
    WritePolls(site, "<TimeBasedTrigger Every='1'/>");
    const ToolResult result = Brindle({"run", site.Folder(), "--for", "1", "--json"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("\"why\":\"the time is over\""));
}

TEST(ToolRun, AMillionEventsNeedNoMoreMemoryThanAFew) {
    const WrittenSite site;
    WritePolls(site, "<PollTrigger Every='1000'/><StateTrigger States='3'/>");
    const auto peakAfter = [&](int events) {
        // Through files: a started process begins with the size of the one that starts it.
        {
            std::ofstream file(site.Path("input.jsonl"));
            for (int i = 0; i < events; ++i)
                file
                    << (i % 2
                            ? "{\"kind\":\"poll\",\"note\":\"padding padding padding padding\"}\n"
                            : "{\"kind\":\"state\",\"object\":\"a\",\"state\":1,\"text\":\"all is well\"}\n");
        }
        const ToolResult result =
            RunShell("export ASAN_OPTIONS=quarantine_size_mb=1; brindle run '" + site.Folder() +
                     "' --events - --fast < '" + site.Path("input.jsonl") + "' | tail -n 1");
        EXPECT_THAT(result.out, HasSubstr(std::to_string(events) + " events"));
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        return usage.ru_maxrss;  // kilobytes, of the largest child so far
    };
    const long few = peakAfter(1'000);
    EXPECT_LT(peakAfter(100'000) - few, 8'192);
}

TEST(ToolRun, BadInputIsToldWithItsPlace) {
    const WrittenSite site;
    WritePolls(site);
    site.Write("bad.jsonl", "{}\nx\n");
    const std::string folder = site.Folder();
    const std::vector<ToolRow> rows = {
        {"no site", {"run", folder + "/none"}, "", "/none/site.ini: ", 2, {}},
        {"no recording", {"run", folder, "--events", folder + "/none"}, "", "/none: cannot be opened", 2, {}},
        {"a folder of events", {"run", folder, "--events", folder}, "", "is a folder", 2, {}},
        {"no expected lines", {"run", folder, "--fast", "--expect", folder + "/none"}, "", "/none: ", 2, {}},
        {"expected lines are no JSON",
         {"run", folder, "--fast", "--expect", folder + "/bad.jsonl"},
         "",
         "bad.jsonl:2: is not JSON",
         2,
         {}},
        {"negative time", {"run", folder, "--for", "-1"}, "", "\"-1\" is negative", 2, {}},
        {"no number", {"run", folder, "--for", "x"}, "", "--for", 2, {}},
        {"nothing", {"run"}, "", "SITE", 2, {}},
    };
    for (const ToolRow& row : rows) CheckRow(row);
    site.Write("behaviours/a.xml", "<BehaviourList>\n  <Behaviour>\n</BehaviourList>");
    CheckRow({"not well-formed", {"run", folder}, "", "behaviours/a.xml:3:", 2, {}});
}

TEST(ToolRun, TraceShowsTheValuesOfRules) {
    const WrittenSite site;
    WritePolls(site, "<RuleTrigger Name='lost' Rule='0001:01:01,State &gt; 2'/>");
    const std::string event = "{\"kind\":\"state\",\"address\":\"1:1:1\",\"state\":3}\n";
    const std::vector<std::string> run = {"run", site.Folder(), "--events", "-", "--fast"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), run.begin(), run.end());
        return Brindle(std::move(more), event).out;
    };
    EXPECT_THAT(with({"--trace"}), HasSubstr("-> lost fires: condition has begun [0001:01:01,State=3]\n"));
    EXPECT_THAT(with({}), HasSubstr("-> lost fires: condition has begun\n"));
    EXPECT_THAT(with({"--trace", "--json"}),
                HasSubstr(R"("verdict":2,"why":"condition has begun",)"
                          R"("values":[{"address":"0001:01:01","name":"State","value":"3"}]})"));
}

TEST(ToolRun, AWrongRuleIsAWarningAndTheRunGoesOn) {
    const WrittenSite site;
    WritePolls(site, "<RuleTrigger Name='r' Rule='State &gt;'/><PollTrigger/>");
    const ToolResult result =
        Brindle({"run", site.Folder(), "--events", "-", "--fast"}, "{\"kind\":\"poll\"}\n");
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("log      polled"));
    EXPECT_THAT(result.err, HasSubstr("behaviours/a.xml: object a, trigger r: the rule is never true: "));
    EXPECT_THAT(result.err, HasSubstr(" at column 7\n"));
}

TEST(ToolCheck, AWrongRuleIsToldWithItsColumn) {
    const WrittenSite site;
    WritePolls(site, "\n<RuleTrigger Rule='State &gt; 2 &amp; (Value'/>");
    const std::string place = site.Folder() + "/behaviours/a.xml:2:1: ";
    const std::vector<ToolRow> rows = {
        {"wrong",
         {"check", site.Folder()},
         place + "attribute \"Rule\": \"(\" without \")\" at column 13\n",
         "",
         1,
         {}},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolCheck, TheStationIsClean) {
    CheckRow({"studio", {"check", kStudio}, "", "", 0, {}});
}

TEST(ToolCheck, ExitCodes) {
    const WrittenSite site;
    WritePolls(site, "<PolTrigger/>");
    const std::string folder = site.Folder();
    const std::string problem = folder + "/behaviours/a.xml:1:40: trigger type \"PolTrigger\" is unknown\n";
    const std::vector<ToolRow> rows = {
        {"a problem in a site", {"check", folder}, problem, "", 1, {}},
        {"a problem in a file", {"check", folder + "/behaviours/a.xml"}, problem, "", 1, {}},
        {"no such path", {"check", folder + "/none.xml"}, "", "none.xml: ", 2, {}},
        {"both", {"check", folder, folder + "/none.xml"}, problem, "none.xml: ", 2, {}},
        {"nothing to check", {"check"}, "", "PATH", 2, {}},
        {"a clean file", {"check", folder + "/variables.xml"}, "", "", 0, {}},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

}  // namespace
}  // namespace brindle::testing
