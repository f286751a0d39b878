// Whole runs of small sites on the virtual clock: what is delivered to whom, what actions do, when repeats and
// schedules come, how a run ends.
#include <gtest/gtest.h>

#include "host/played_site_test.h"
#include "host/register_types.h"
#include "host/run_text.h"
#include "host/site_runner.h"
#include "host/written_site_test.h"

namespace brindle::host {
namespace {

const char* const kLog = "<WriteLogAction Text='%a %c %i %t'/>";

TEST(Run, ActionTextsAreFilledFromTheEvent) {
    struct Row {
        const char* label;
        const char* text;
        const char* event;
        const char* expected;
    };
    const char* const state =
        R"({"kind":"state","address":"1:1:1","state":2,"header":"H","cause":"C","text":"T","user":"U"})";
    const Row rows[] = {
        {"address", "%a %N %U %P", state, "0001:01:01 0001 01 01"},
        {"caption", "%c", state, "Camera"},
        {"texts", "%t %h %r", state, "T U H"},
        {"state", "%i %s %j %v", state, "2 Yellow 2 Yellow"},
        {"meter value", "%r", R"({"kind":"meter","address":"1:1:1","value":48.2})", "48.2"},
        {"zone", "%n", R"({"kind":"zone","address":"1:1:1","zone":4})", "4"},
        {"toggle", "%n", R"({"kind":"button","object":"a","toggle":true})", "1"},
        {"no number", "%n %q", state, "%n %q"},
        {"no address", "%a %c", R"({"kind":"poll"})", "%a a"},
        {"new caption", "%c", R"({"kind":"caption","address":"1:1:1","text":"LIVE"})", "LIVE"},
        {"hash fields", "#Model#/#0001:01:01,State#/#0009:09:09,State#", state, "C3/2/0"},
        {"variables", "{Who} {object} {none}", state, "desk a {none}"},
        {"time", "%H%:%m%:%s% %dd%.%MM%.%yyyy%", state, "08:00:00 01.01.2024"},
        {"percent", "100%% %x", state, "100% %x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const WrittenSite written;
        written.WriteObjects({"a"});
        written.WriteBehaviour("a",
                               "<StateTrigger/><MeterValueTrigger/><MeterZoneTrigger/><ButtonTrigger/>"
                               "<PollTrigger/><CaptionTrigger/>",
                               "<WriteLogAction Text='" + std::string(row.text) + "'/>");
        EXPECT_EQ(RunEvents(written, row.event).lines.All("log", "text"), row.expected);
    }
}

TEST(Run, CommandsGetTheirFinishedLine) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<PollTrigger/>", "<RunCommandAction Command='.\\x.exe {Who}'/>");
    EXPECT_EQ(RunEvents(written, R"({"kind":"poll"})").lines.All("command", "line"),
              written.Folder() + "\\.\\x.exe desk");
}

TEST(Run, EventsGoToTheirObjectOrToAll) {
    const WrittenSite written;
    written.WriteObjects({"a", "b", "c"});
    written.WriteBehaviour("a", "<StateTrigger/><PollTrigger/>", "<WriteLogAction Text='a'/>");
    written.WriteBehaviour("b", "<PollTrigger/>", "<WriteLogAction Text='b'/>");
    written.WriteBehaviour("c", "<StateTrigger AnyChange='TRUE'/>", "<WriteLogAction Text='c'/>");
    const std::string state = R"({"kind":"state","address":"1:1:1","state":3})"
                              "\n";
    EXPECT_EQ(RunEvents(written, R"({"kind":"poll","object":"b"})").lines.All("log", "text"), "b");
    EXPECT_EQ(RunEvents(written, R"({"kind":"poll"})").lines.All("log", "text"), "a|b");
    EXPECT_EQ(RunEvents(written, state + state).lines.All("log", "text"), "a|c|c") << "the same report again";
    RunOptions trace;
    trace.trace = true;
    EXPECT_EQ(RunEvents(written, state + state, trace).lines.All("verdict", "object"), "a|a|b|c|a|a|c|c")
        << "after the start: lists that need no states get none, and the second report only goes where every "
           "report is wanted";
}

TEST(Run, OwnAddressTriggers) {
    const WrittenSite written;
    written.WriteObjects({"a", "b"});
    written.Write("site.ini",
                  "[Site]\nDevices=devices.ini\nVariables=variables.xml\n"
                  "[Object a]\nAddress=1:1:1\n[Object b]\nAddress=1:1:2\n");
    for (const char* name : {"a", "b"})
        written.WriteBehaviour(name, "<StateTrigger Own='TRUE'/>", "<WriteLogAction Text='{object} %a'/>");
    EXPECT_EQ(RunEvents(written, R"({"kind":"state","address":"1:1:2","state":3})").lines.All("log", "text"),
              "b 0001:01:02");
}

TEST(Run, RepeatsLastWhileTheConditionDoes) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<StateTrigger States='3'/>",
                           "<WriteLogAction Text='x' Repeat='TRUE' Period='1000'/>");
    const Played played = RunEvents(written, R"({"t":500,"kind":"state","address":"1:1:1","state":3}
{"t":2600,"kind":"state","address":"1:1:1","state":1}
{"t":9000,"kind":"end"})");
    EXPECT_EQ(played.lines.All("log", "t"), "500|1500|2500");
    EXPECT_EQ(played.lines.All("log", "by"), "event|repeat|repeat");
    EXPECT_EQ(played.lines.All("repeat", "what"), "added|cancelled");
    EXPECT_EQ(played.lines.All("repeat", "due"), "1500|");
    EXPECT_EQ(played.lines.All("end", "t"), "9000");
}

TEST(Run, ARepeatWithoutAPeriodDoesNotStopTime) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<PollTrigger/>", "<WriteLogAction Text='x' Repeat='TRUE' Period='0'/>");
    RunOptions options;
    options.limit = 250;
    EXPECT_EQ(RunEvents(written, R"({"t":0,"kind":"poll"})", options).lines.All("log", "t"), "0|0|100|200");
}

TEST(Run, SchedulesRunWithTheObjectsVariables) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<TimeBasedTrigger Every='10'/><TimeBasedTrigger At='08:00:25'/>",
                           "<WriteLogAction Text='{Who} {object}'/>");
    RunOptions options;
    options.limit = 40'000;
    const Played played = RunEvents(written, "", options);
    EXPECT_EQ(played.lines.All("log", "t"), "10000|20000|25000|30000|40000") << "the limit itself included";
    EXPECT_EQ(played.lines.All("log", "by"), "schedule|schedule|schedule|schedule|schedule");
    EXPECT_EQ(played.lines.All("log", "text"), "desk a|desk a|desk a|desk a|desk a");
    EXPECT_EQ(played.lines.All("schedule", "due"), "10000|25000");
    EXPECT_EQ(played.lines.All("end", "why"), "the time is over");
}

TEST(Run, VariablesGoToTheirScope) {
    struct Row {
        const char* attributes;
        const char* scope;
    };
    const Row rows[] = {{"Variable='Who'", "site"},
                        {"Variable='New'", "object"},
                        {"Variable='object'", "object"},
                        {"Variable='Who' Scope='OBJECT'", "object"},
                        {"Variable='New' Scope='SITE'", "site"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.attributes);
        const WrittenSite written;
        written.WriteObjects({"a"});
        written.WriteBehaviour("a", "<PollTrigger/>",
                               "<SetVariableAction Value='[{Who}]' " + std::string(row.attributes) + "/>");
        const Played played = RunEvents(written, R"({"kind":"poll"})");
        EXPECT_EQ(played.lines.All("variable", "scope"), row.scope);
        EXPECT_EQ(played.lines.All("variable", "value"), "[desk]");
        const std::string name = played.lines.All("variable", "name");
        CStringA value;
        VariableManager& scope =
            std::string(row.scope) == "site" ? played.site->scope : played.site->objects[0]->scope;
        EXPECT_TRUE(scope.getValue(name, value));
        EXPECT_EQ(value, "[desk]");
    }
}

TEST(Run, SentStatesAreQueuedNotNested) {
    const WrittenSite written;
    written.WriteObjects({"a", "b"});
    written.WriteBehaviour(
        "a", "<PollTrigger/>",
        "<SendStateAction Address='1:1:?' State='3' Text='{Who}'/><WriteLogAction Text='after'/>");
    written.WriteBehaviour("b", "<StateTrigger/>", kLog);
    const Played played = RunEvents(written, R"({"kind":"poll","address":"9:9:1"})");
    EXPECT_EQ(played.lines.All("log", "text"), "after|0001:01:01 Camera 3 desk");
    EXPECT_EQ(played.lines.All("send", "address"), "0001:01:01") << "open parts come from the event";
    EXPECT_EQ(played.lines.All("event", "sent"), "|true");
    const Played none = RunEvents(written, R"({"kind":"poll"})");
    EXPECT_NE(none.lines.All("failure", "why").find("completes the address"), std::string::npos);
}

TEST(Run, ActionsThatAnswerEachOtherAreStopped) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<StateTrigger AnyChange='TRUE'/>",
                           "<SendStateAction State='1'/><SendStateAction State='2'/>");
    const Played played = RunEvents(written, R"({"kind":"state","address":"1:1:1","state":1})");
    EXPECT_NE(played.lines.All("failure", "why").find("without end"), std::string::npos);
    EXPECT_EQ(played.lines.All("end", "events"), "1");
}

TEST(Run, ADryRunChangesNothing) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour(
        "a", "<PollTrigger/>",
        "<SetVariableAction Variable='Who' Value='x'/><SendStateAction Address='1:1:1' State='3'/>"
        "<RunCommandAction Command='c'/><WriteLogAction Text='{Who} #0001:01:01,State#'/>");
    RunOptions options;
    options.dryRun = true;
    const Played played = RunEvents(written, R"({"kind":"poll"})", options);
    for (const char* kind : {"variable", "send", "command", "log"})
        EXPECT_EQ(played.lines.All(kind, "dryRun"), "true") << kind;
    EXPECT_EQ(played.lines.All("log", "text"), "desk 1");
    EXPECT_EQ(played.lines.All("event", "event"), "poll");
}

TEST(Run, UnlockAsksAndSaysWhatAllowedIt) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour(
        "a", "<ButtonTrigger Name='key' User='boss'/>",
        "<WriteLogAction Name='plain' Text='x'/><WriteLogAction Name='opens' Unlock='TRUE' Text='y'/>");
    const Played played = RunEvents(written, R"({"kind":"unlock","object":"a","user":"guest"}
{"kind":"unlock","object":"a","user":"boss"})");
    EXPECT_EQ(played.lines.All("unlock", "allowed"), "false|true");
    EXPECT_EQ(played.lines.All("unlock", "trigger"), "|key");
    EXPECT_EQ(played.lines.All("unlock", "action"), "|opens");
    EXPECT_EQ(played.lines.All("log", "text"), "") << "asking runs nothing";
}

TEST(Run, TraceTellsAlsoWhatDidNotHappen) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour(
        "a",
        "<StateTrigger Name='s' States='3'/><StateTrigger Name='off'><Enabled value='FALSE'/></StateTrigger>",
        "<WriteLogAction Name='l' Text='x'><Enabled value='FALSE'/></WriteLogAction>"
        "<WriteLogAction Name='m' Text='x' Template='TRUE'/>");
    const std::string events = R"({"kind":"state","address":"1:1:1","state":1}
{"kind":"state","address":"1:1:1","state":3})";
    RunOptions options;
    options.trace = true;
    const Played traced = RunEvents(written, events, options);
    EXPECT_EQ(traced.lines.All("verdict", "verdict"), "0|0|0|2|2|0");
    EXPECT_EQ(traced.lines.All("verdict", "why"),
              "another kind of event|another kind of event|condition does not hold|condition has begun|"
              "condition has begun|condition still holds");
    EXPECT_EQ(traced.lines.All("verdict", "disabled"), "|true||true||true");
    EXPECT_EQ(traced.lines.All("skipped", "action"), "l|m");
    EXPECT_EQ(traced.lines.All("skipped", "why"), "disabled|template");
    const Played plain = RunEvents(written, events);
    EXPECT_EQ(plain.lines.All("verdict", "trigger"), "s");
    EXPECT_EQ(plain.lines.All("skipped", "why"), "");
}

// Two objects of devices 0001:01:01 and 0001:01:02, which is in no file.
void WriteRules(const WrittenSite& written, const std::string& rule) {
    written.WriteObjects({});
    written.Write("site.ini",
                  "[Site]\nDevices=devices.ini\nVariables=variables.xml\n"
                  "[Object a]\nAddress=1:1:1\n[Object b]\nAddress=1:1:2\n");
    for (const char* name : {"a", "b"})
        written.WriteBehaviour(name, "<RuleTrigger Name='r' Rule='" + rule + "'/>",
                               "<WriteLogAction Text='{object} #State#' Repeat='TRUE' Period='1000'/>");
}

TEST(Run, RulesAskTheObjectsOwnDevice) {
    const WrittenSite written;
    WriteRules(written, "State &gt; 2");
    const Played played = RunEvents(written, R"({"t":100,"kind":"state","address":"1:1:2","state":3}
{"t":200,"kind":"state","address":"1:1:1","state":3}
{"t":1150,"kind":"state","address":"1:1:2","state":1}
{"t":2000,"kind":"end"})");
    EXPECT_EQ(played.lines.All("verdict", "object"), "b|a|b");
    EXPECT_EQ(played.lines.All("verdict", "verdict"), "2|2|1");
    EXPECT_EQ(played.lines.All("log", "t"), "100|200|1100|1200") << "b's repeats end with its condition";
    EXPECT_EQ(played.lines.All("repeat", "what"), "added|added|cancelled");
    EXPECT_EQ(played.lines.All("verdict", "values"), "||") << "only with a trace";
}

TEST(Run, ARuleThatIsTrueAlreadyFiresAtTheStart) {
    const WrittenSite written;
    WriteRules(written, "0001:01:01,State = 1 &amp; 0001:01:07,State = 0");
    const Played played = RunEvents(written, R"({"t":100,"kind":"state","address":"1:1:7","state":3})");
    EXPECT_EQ(played.lines.All("verdict", "t"), "0|0|100|100") << "the address of a rule is subscribed to";
    EXPECT_EQ(played.lines.All("verdict", "verdict"), "2|2|1|1");
    EXPECT_EQ(played.lines.All("log", "t"), "0|0");
}

TEST(Run, ARepeatedReportReachesRules) {
    const WrittenSite written;
    WriteRules(written, "State &gt; 2");
    RunOptions trace;
    trace.trace = true;
    const std::string state = R"({"kind":"state","address":"1:1:1","state":1})"
                              "\n";
    EXPECT_EQ(RunEvents(written, state + state, trace).lines.All("verdict", "object"), "a|b|a|b|a|b");
}

TEST(Run, ATraceTellsTheValuesOfRules) {
    const WrittenSite written;
    WriteRules(written, "State &gt; 2 &amp; 0001:01:01,Model = &quot;C%&quot; &amp; Foo");
    RunOptions trace;
    trace.trace = true;
    const Played played = RunEvents(written, R"({"kind":"state","object":"b","state":3}
{"kind":"button","object":"b"})",
                                    trace);
    EXPECT_EQ(
        played.lines.All("verdict", "values"),
        R"([{"address":"0001:01:01","name":"State","value":"1"},)"
        R"({"address":"0001:01:01","name":"Model","value":"C3"},{"address":"0001:01:01","name":"Foo"}]|)"
        R"([{"address":"0001:01:02","name":"State","value":"0"},)"
        R"({"address":"0001:01:01","name":"Model","value":"C3"},{"address":"0001:01:02","name":"Foo"}]|)"
        R"([{"address":"0001:01:02","name":"State","value":"3"},)"
        R"({"address":"0001:01:01","name":"Model","value":"C3"},{"address":"0001:01:02","name":"Foo"}]|)");
    const RunText text(*played.site, [](TextStyle, std::string_view s) { return std::string(s); });
    std::string verdicts;
    for (const RunRecord& record : played.lines.records)
        if (record["kind"] == "verdict" && record["object"] == "b") verdicts += text.Line(record) + "\n";
    EXPECT_EQ(verdicts,
              "    0.000  b       -> r stays out: condition does not hold [0001:01:02,State=0; "
              "0001:01:01,Model=C3; 0001:01:02,Foo unknown]\n"
              "    0.000  b       -> r stays out: condition does not hold [0001:01:02,State=3; "
              "0001:01:01,Model=C3; 0001:01:02,Foo unknown]\n"
              "    0.000  b       -> r stays out: another kind of event\n");
}

TEST(Run, MaskActionsSayWhatTheyMask) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour(
        "a", "<PollTrigger/>",
        "<MaskUnitAction Name='u'>Mixer\nRouter</MaskUnitAction>"
        "<MaskHeaderAction><UnitList>Mixer\n\nRouter</UnitList><HeaderList>Power\nFan</HeaderList>"
        "</MaskHeaderAction>");
    const Played played = RunEvents(written, R"({"kind":"poll"})");
    EXPECT_EQ(played.lines.All("log", "text"), "masks Mixer, Router|masks Mixer, Router: Power, Fan");
}

TEST(Run, AWrongRuleIsWarnedOfOnce) {
    const WrittenSite written;
    WriteRules(written, "(State");
    const Played played = RunEvents(written, "{\"kind\":\"poll\"}\n{\"kind\":\"poll\"}");
    ASSERT_EQ(played.lines.warnings.size(), 2U) << "one for each object";
    EXPECT_EQ(played.lines.warnings[0],
              written.Path("behaviours/a.xml") +
                  ": object a, trigger r: the rule is never true: \"(\" without \")\" at column 1");
    EXPECT_EQ(played.lines.All("verdict", "verdict"), "");
}

TEST(Run, BadLinesAndUnknownObjectsAreWarnings) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<PollTrigger/>", kLog);
    const Played played =
        RunEvents(written, "nonsense\n{\"kind\":\"poll\",\"object\":\"x\"}\n{\"kind\":\"poll\"}");
    ASSERT_EQ(played.lines.warnings.size(), 2U);
    EXPECT_EQ(played.lines.warnings[0], "events:1: is not JSON");
    EXPECT_EQ(played.lines.warnings[1], "events:2: the site has no object \"x\"");
    EXPECT_EQ(played.lines.All("end", "events"), "1");
}

TEST(Run, TimesOfEventsNeverGoBack) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<PollTrigger/>", kLog);
    EXPECT_EQ(
        RunEvents(written, "{\"kind\":\"poll\",\"t\":50}\n{\"kind\":\"poll\",\"t\":20}\n{\"kind\":\"poll\"}")
            .lines.All("event", "t"),
        "50|50|50");
}

TEST(Run, EndsAtTheEndOfTheRecordingUnlessALimitSaysOtherwise) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<PollTrigger/>", kLog);
    const std::string events =
        "{\"kind\":\"poll\",\"t\":50}\n{\"kind\":\"end\",\"t\":70}\n{\"kind\":\"poll\",\"t\":90}";
    EXPECT_EQ(RunEvents(written, events).lines.All("end", "t"), "70");
    EXPECT_EQ(RunEvents(written, "{\"kind\":\"poll\",\"t\":50}").lines.All("end", "why"),
              "the events have ended");
    RunOptions options;
    options.limit = 80;
    EXPECT_EQ(RunEvents(written, events, options).lines.All("end", "t"), "80");
    EXPECT_EQ(RunEvents(written, events, options).lines.All("event", "t"), "50");
    options.limit = 1000;
    EXPECT_EQ(RunEvents(written, events, options).lines.All("event", "t"), "50|90")
        << "\"end\" does not count then";
    options.limit = 0;
    EXPECT_EQ(RunEvents(written, events, options).lines.All("end", "t"), "0");
}

TEST(Run, TheSameRunGivesTheSameLines) {
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour("a", "<TimeBasedTrigger Every='1'/><PollTrigger/>",
                           "<WriteLogAction Text='%H%%m%%s% %ddd%' Repeat='TRUE'/>");
    RunOptions options;
    options.limit = 60'000;
    const std::string first = RunEvents(written, "{\"kind\":\"poll\",\"t\":50}", options).lines.Dump();
    EXPECT_EQ(RunEvents(written, "{\"kind\":\"poll\",\"t\":50}", options).lines.Dump(), first);
    EXPECT_GT(first.size(), 1000U);
}

TEST(RunText, LinesForPeople) {
    const WrittenSite written;
    written.WriteObjects({"a", "longer"});
    written.WriteBehaviour("a", "<StateTrigger Name='Bad'/>",
                           "<WriteLogAction Text='x&#9;y' Repeat='TRUE' Period='1500'/>");
    written.WriteBehaviour("longer", "<PollTrigger/>", kLog);
    const Played played = RunEvents(written, R"({"kind":"state","address":"1:1:1","state":3,"text":"No"}
{"t":1500,"kind":"unlock","object":"a"})");
    const RunText text(*played.site, [](TextStyle, std::string_view s) { return std::string(s); });
    std::string all;
    for (const RunRecord& record : played.lines.records) all += text.Line(record) + "\n";
    EXPECT_EQ(all,
              "    0.000          start  Test, 2 objects\n"
              "    0.000          state Camera 0001:01:01 = 3  No\n"
              "    0.000  a         -> Bad fires: condition has begun\n"
              "    0.000  a            -> repeat   Text=\"x y\" Repeat=\"TRUE\" Period=\"1500\" every 1.500 "
              "s, next at 1.500\n"
              "    0.000  a            -> log      x y\n"
              "    1.500  a       repeat Bad -> log      x y\n"
              "    1.500  a       unlock? button off  refused: no action allows it\n"
              "    1.500          end  the events have ended, 2 events\n");
}

}  // namespace
}  // namespace brindle::host
