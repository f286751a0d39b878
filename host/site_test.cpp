// Site files: what site.ini may say, what loading refuses, what checking reports, and expected lines.
#include "host/site.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include <brindle/address/events.h>

#include "host/expected_lines.h"
#include "host/register_types.h"
#include "host/site_check.h"
#include "host/text_check.h"
#include "host/written_site_test.h"

namespace brindle::host {
namespace {

std::string Joined(const Problems& problems, const std::string& folder) {
    std::string text;
    for (const Problem& problem : problems) {
        std::string place = problem.Place();
        if (place.starts_with(folder)) place.erase(0, folder.size() + 1);
        text += place + ": " + problem.text + "\n";
    }
    return text;
}

TEST(SitePlan, ReadsEveryKey) {
    const WrittenSite written;
    written.Write("site.ini",
                  "[Site]\nName=N\nStart=2024-05-06 05:59:50\nVariables=v.xml\nDevices=d.ini\nMacros=m.ini\n"
                  "Skin=s.xml\nMap=p.xml\nRecording=e.jsonl\n[Object a]\nHost=Meter\nAddress=1:2:?\n"
                  "Caption=A\nBehaviours=x\\b.xml\nVariables=o.xml\n[object  b ]\n");
    SitePlan plan;
    Problems problems;
    ASSERT_TRUE(ReadSitePlan(written.Folder(), plan, problems));
    EXPECT_EQ(Joined(problems, written.Folder()), "");
    EXPECT_EQ(plan.name, "N");
    EXPECT_EQ(plan.start, 1'714'975'190);
    EXPECT_EQ(plan.variables, written.Path("v.xml"));
    EXPECT_EQ(plan.devices, written.Path("d.ini"));
    EXPECT_EQ(plan.macros, written.Path("m.ini"));
    EXPECT_EQ(plan.skin, written.Path("s.xml"));
    EXPECT_EQ(plan.map, written.Path("p.xml"));
    EXPECT_EQ(plan.recording, written.Path("e.jsonl"));
    ASSERT_EQ(plan.objects.size(), 2U);
    EXPECT_EQ(plan.objects[0].host, eHostMeter);
    EXPECT_TRUE(plan.objects[0].address.IsPortDeferred());
    EXPECT_EQ(plan.objects[0].caption, "A");
    EXPECT_EQ(plan.objects[0].behaviours, written.Folder() + "/x\\b.xml");
    EXPECT_EQ(plan.objects[0].variables, written.Path("o.xml"));
    EXPECT_EQ(plan.objects[1].name, "b");
    EXPECT_EQ(plan.objects[1].caption, "b");
    EXPECT_EQ(plan.objects[1].behaviours, written.Path("behaviours/b.xml"));
}

TEST(SitePlan, ReportsWhatItDoesNotKnow) {
    const WrittenSite written;
    written.Write("site.ini",
                  "[Sit]\n[Site]\nNam=N\nStart=now\n[Object a]\nHost=x\nAddress=zz\nFoo=1\n[Object  a]\n");
    SitePlan plan;
    Problems problems;
    ASSERT_TRUE(ReadSitePlan(written.Folder(), plan, problems));
    EXPECT_EQ(Joined(problems, written.Folder()),
              "site.ini:1:1: section [Sit] is unknown\n"
              "site.ini:3:1: key \"Nam\" of [Site] is unknown\n"
              "site.ini:4:1: \"now\" is not a moment such as 2024-01-01 08:00:00\n"
              "site.ini:6:1: \"x\" is not MapObject, Button, Meter or System\n"
              "site.ini:7:1: \"zz\" is not an address such as 0001:02:03\n"
              "site.ini:8:1: key \"Foo\" of an object is unknown\n"
              "site.ini:9:1: object \"a\" comes twice\n");
    problems.clear();
    written.Write("site.ini", "");
    ASSERT_TRUE(ReadSitePlan(written.Folder(), plan, problems));
    EXPECT_EQ(problems.size(), 2U);
    EXPECT_FALSE(ReadSitePlan(written.Path("none"), plan, problems));
}

TEST(SitePlan, FlagsAreReadInAnyCase) {
    struct Row {
        const char* value;
        bool expected;
        const char* problem;
    };
    const WrittenSite written;
    bool SitePlan::*const flags[] = {&SitePlan::startPrograms, &SitePlan::checkArguments};
    const char* const keys[] = {"StartPrograms", "CheckArguments"};
    for (std::size_t i = 0; i < std::size(keys); ++i) {
        const bool usual = SitePlan().*flags[i];
        const Row rows[] = {{"true", true, ""},
                            {"On", true, ""},
                            {"1", true, ""},
                            {"FALSE", false, ""},
                            {"off", false, ""},
                            {"0", false, ""},
                            {"yes", usual, "site.ini:2:1: \"yes\" is not TRUE or FALSE\n"}};
        for (const Row& row : rows) {
            SCOPED_TRACE(std::string(keys[i]) + "=" + row.value);
            written.Write("site.ini", "[Site]\n" + std::string(keys[i]) + "=" + row.value + "\n[Object a]\n");
            SitePlan plan;
            Problems problems;
            ASSERT_TRUE(ReadSitePlan(written.Folder(), plan, problems));
            EXPECT_EQ(plan.*flags[i], row.expected);
            EXPECT_EQ(Joined(problems, written.Folder()), row.problem);
        }
    }
}

TEST(SitePlan, DrivesHaveOneLetter) {
    const WrittenSite written;
    written.Write("site.ini", "[Site]\n[Drives]\nD=disk\nDD=x\n1=x\nm=\n[Object a]\n");
    SitePlan plan;
    Problems problems;
    ASSERT_TRUE(ReadSitePlan(written.Folder(), plan, problems));
    EXPECT_EQ(Joined(problems, written.Folder()),
              "site.ini:4:1: \"DD\" is not the letter of a drive\n"
              "site.ini:5:1: \"1\" is not the letter of a drive\n");
    ASSERT_EQ(plan.drives.size(), 2U);
    EXPECT_EQ(plan.drives[0].letter, 'd');
    EXPECT_EQ(plan.drives[0].folder, written.Path("disk"));
    EXPECT_EQ(plan.drives[1].letter, 'm');
    EXPECT_EQ(plan.drives[1].folder, "");
}

TEST(LoadSite, RefusesWhatCannotBeRead) {
    struct Row {
        const char* label;
        const char* file;
        const char* text;  // null: removed
        const char* problem;
    };
    const Row rows[] = {
        {"no site.ini", "site.ini", nullptr, "site.ini: "},
        {"no devices", "devices.ini", nullptr, "devices.ini: "},
        {"bad device address", "devices.ini", "[x]\n", "devices.ini:1:1: [x] is not a full address"},
        {"open device address", "devices.ini", "[1:2:?]\n", "devices.ini:1:1: "},
        {"bad device state", "devices.ini", "[1:2:3]\nState=x\n", "devices.ini:2:1: \"x\" is not a state"},
        {"no variables", "variables.xml", nullptr, "variables.xml: "},
        {"variables of another kind", "variables.xml", "<x/>",
         "variables.xml: has no root element \"Variables\""},
        {"no behaviours", "behaviours/a.xml", nullptr, "behaviours/a.xml: "},
        {"behaviours not well-formed", "behaviours/a.xml", "<BehaviourList>\n<x>", "behaviours/a.xml:2:"},
        {"behaviours of another kind", "behaviours/a.xml", "<x/>", "behaviours/a.xml: has no root element"},
    };
    RegisterHostTypes();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const WrittenSite written;
        written.WriteObjects({"a"});
        written.WriteBehaviour("a", "", "");
        if (row.text)
            written.Write(row.file, row.text);
        else
            std::filesystem::remove(written.Path(row.file));
        Site site;
        Problems problems;
        EXPECT_FALSE(LoadSite(written.Folder(), site, problems));
        ASSERT_FALSE(problems.empty());
        EXPECT_TRUE(Joined(problems, written.Folder()).starts_with(row.problem))
            << Joined(problems, written.Folder());
    }
}

TEST(LoadSite, AlwaysHasASkin) {
    const struct {
        const char* label;
        const char* text;  // null: no file
        int thickness;
        const char* warning;
    } rows[] = {
        {"its own", "<skin><pressed><mark thickness='9'/></pressed></skin>", 9, ""},
        {"no file", nullptr, 2, "the built-in skin stands in"},
        {"broken", "<skin><pressed>", 2, "the built-in skin stands in"},
        {"no skin", "<other/>", 2, "the document is no \"skin\""},
    };
    RegisterHostTypes();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        WrittenSite written;
        written.Write("site.ini", "[Site]\nSkin=skin.xml\n[Object a]\n");
        written.Write("behaviours/a.xml", "<BehaviourList/>");
        if (row.text) written.Write("skin.xml", row.text);
        Site site;
        Problems problems;
        EXPECT_TRUE(LoadSite(written.Folder(), site, problems));
        int thickness = 0;
        EXPECT_TRUE(site.skin.GetExactProp("pressed", "mark", "thickness", thickness));
        EXPECT_EQ(thickness, row.thickness);
        ASSERT_EQ(site.warnings.size(), *row.warning ? 1u : 0u);
        if (*row.warning) {
            EXPECT_NE(site.warnings[0].text.find(row.warning), std::string::npos) << site.warnings[0].text;
        }
    }
}

TEST(LoadSite, SubscribesToTheDevicesOfTexts) {
    RegisterHostTypes();
    const WrittenSite written;
    written.WriteObjects({"a"});
    written.WriteBehaviour(
        "a", "",
        "<WriteLogAction Text='#0007:07:07,State# #Name#'/><WriteLogAction Text='#0008:08:08,a# #'/>");
    Site site;
    Problems problems;
    ASSERT_TRUE(LoadSite(written.Folder(), site, problems));
    EXPECT_TRUE(site.devices.Knows(0x00070707));
    EXPECT_FALSE(site.devices.Knows(0x00080808)) << "its \"#\" do not pair up";
    EXPECT_TRUE(site.devices.Knows(0x00010101));
    EXPECT_TRUE(site.Find("a"));
    EXPECT_FALSE(site.Find("A"));
}

TEST(CheckText, Problems) {
    struct Row {
        const char* text;
        const char* problem;  // empty: none
    };
    const Row rows[] = {
        {"plain", ""},
        {"%n%q%a%N%U%P%p%c%t%h%i%j%v%s%r", ""},
        {"%dd%%MM%", "the field \"%d\""},
        {"%dd% %MM% %yyyy% %ddd% %dddd% %MMM% %MMMM% %z% %H% %m% %s%", ""},
        {"100%% %x", "the field \"%x\""},
        {"100 % of %5", ""},
        {"%", ""},
        {"{known}", ""},
        {"{unknown}", "\"{unknown}\" is not resolved (searched: S)"},
        {"{a{known}}", "\"{a1}\" is not resolved"},
        {"{known} }", "without \"{\""},
        {"{known} {", "never closed"},
        {"{", ""},
        {"a#b", "no partner"},
        {"#0001:01:01,Model##Name#", ""},
        {"#0001:01:01,Other#", "has no field \"Other\""},
        {"#0002:01:01,Model#", "does not exist"},
        {"#::,Model#", ""},
        {"#::,Other#", "no device has the field"},
        {"#Other#", "no device has the field \"#Other#\""},
    };
    VariableManager scope;
    scope.addVariable(Variable("known", "1"));
    DeviceTable devices;
    Problems none;
    devices.Load(IniText("[0001:01:01]\nModel=x\n", "f", none), "f", none);
    TextSurroundings surroundings;
    surroundings.scope = &scope;
    surroundings.scopes = "S";
    surroundings.devices = &devices;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const auto problems = CheckText(row.text, surroundings);
        if (!*row.problem) {
            EXPECT_TRUE(problems.empty()) << problems[0];
            continue;
        }
        ASSERT_FALSE(problems.empty());
        EXPECT_NE(problems[0].find(row.problem), std::string::npos) << problems[0];
    }
    TextSurroundings nothing;
    EXPECT_EQ(CheckText("{x}", nothing).at(0), "\"{x}\" is not resolved (searched: no scope)");
    EXPECT_TRUE(CheckText("#Other#", nothing).empty()) << "devices are not known";
}

TEST(CheckPaths, FindsEveryProblemOfAList) {
    RegisterHostTypes();
    const WrittenSite written;
    written.Write(
        "b.xml",
        "<BehaviourList>\n<Other/>\n<Behaviour><ActionList/></Behaviour>\n"
        "<Behaviour><TriggerList/></Behaviour>\n<Behaviour><ActionList/><TriggerList/></Behaviour>\n"
        "<Behaviour><TriggerList>\n  <NoTrigger/>\n  <WriteLogAction/>\n"
        "  <StateTrigger States='x' Adress='1'><Enabled value='maybe'/></StateTrigger>\n"
        "  <TimeBasedTrigger/>\n</TriggerList><ActionList>\n  <NoAction/><StateTrigger/>\n"
        "  <WriteLogAction Text='{x} %k #'/>\n  <RunCommandAction/>\n"
        "  <WriteLogAction Template='TRUE' Text='%OBJFLD%'/>\n"
        "</ActionList><TriggerList/></Behaviour>\n</BehaviourList>");
    const CheckReport report = CheckPaths({written.Path("b.xml")});
    EXPECT_EQ(Joined(report.problems, written.Folder()),
              "b.xml:2:1: element \"Other\" is unknown here and has no effect\n"
              "b.xml:3:1: \"Behaviour\" has no \"TriggerList\", so its \"ActionList\" is not found either\n"
              "b.xml:4:1: \"Behaviour\" has no \"ActionList\": it does nothing\n"
              "b.xml:5:1: \"ActionList\" stands before \"TriggerList\" and is not found\n"
              "b.xml:7:3: trigger type \"NoTrigger\" is unknown\n"
              "b.xml:8:3: trigger type \"WriteLogAction\" is unknown: it is a type of action\n"
              "b.xml:9:39: attribute \"value\" of \"Enabled\" is not TRUE or FALSE\n"
              "b.xml:9:3: attribute \"States\": \"x\" is not a number or a range such as 3-5\n"
              "b.xml:9:3: attribute \"Adress\" is unknown and has no effect\n"
              "b.xml:10:3: neither \"Every\" nor \"At\" is given: it never fires\n"
              "b.xml:12:3: action type \"NoAction\" is unknown\n"
              "b.xml:12:14: action type \"StateTrigger\" is unknown: it is a type of trigger\n"
              "b.xml:13:3: attribute \"Text\": \"{x}\" is not resolved (searched: no scope)\n"
              "b.xml:13:3: attribute \"Text\": no formatter knows the field \"%k\"\n"
              "b.xml:13:3: attribute \"Text\": a \"#\" has no partner\n"
              "b.xml:14:3: attribute \"Command\" is missing: a text with fields\n"
              "b.xml:16:14: a second \"TriggerList\" is not read\n");
    EXPECT_TRUE(report.unopened.empty());
}

TEST(CheckPaths, MetersWhoseLimitsContradictEachOther) {
    RegisterHostTypes();
    const WrittenSite written;
    written.Write(
        "b.xml",
        "<BehaviourList><Behaviour><TriggerList>\n<MeterValueTrigger Hysteresis='-1'/>\n"
        "<MeterValueTrigger Above='1' Below='2'/>\n<MeterValueTrigger Above='2' Below='1' "
        "Hysteresis='0.5'/>\n"
        "</TriggerList><ActionList><WriteLogAction Text='x'/></ActionList></Behaviour></BehaviourList>");
    EXPECT_EQ(Joined(CheckPaths({written.Path("b.xml")}).problems, written.Folder()),
              "b.xml:2:1: \"Hysteresis\" is negative\n"
              "b.xml:2:1: \"Hysteresis\" has no effect without \"Above\" or \"Below\"\n"
              "b.xml:3:1: \"Below\" lies over \"Above\": every value meets the condition\n");
}

TEST(CheckPaths, FilesOfEveryKind) {
    RegisterHostTypes();
    const WrittenSite written;
    written.Write("v.xml",
                  "<Variables>\n<variable value='1'/>\n<variable name='a' value='1'/>\n<variable "
                  "name='a'/>\n<x/>\n</Variables>");
    written.Write("b.xml",
                  "<BehaviourList><Behaviour><TriggerList/><ActionList><WriteLogAction Text='{a}{b}'/>"
                  "<SetVariableAction Variable='b'/></ActionList></Behaviour></BehaviourList>");
    written.Write("e.jsonl", "\n{\"kind\":\"pol\"}\n");
    written.Write("bad.xml", "<BehaviourList>\n <a></b></BehaviourList>");
    written.Write("other.xml", "<html/>");
    const auto check = [&](std::initializer_list<const char*> names) {
        std::vector<std::string> paths;
        for (const char* name : names) paths.push_back(written.Path(name));
        return CheckPaths(paths);
    };
    EXPECT_EQ(Joined(check({"v.xml"}).problems, written.Folder()),
              "v.xml:2:1: attribute \"name\" is missing or empty: the variable has no effect\n"
              "v.xml:4:1: variable \"a\" comes twice: the last one counts\n"
              "v.xml:4:1: attribute \"value\" is missing\n"
              "v.xml:5:1: element \"x\" is unknown here and has no effect\n");
    EXPECT_EQ(check({"b.xml"}).problems.size(), 1U) << "b is set by the list itself";
    written.Write("v.xml", "<Variables><variable name='a' value='1'/></Variables>");
    EXPECT_TRUE(check({"b.xml", "v.xml"}).problems.empty());
    EXPECT_EQ(Joined(check({"e.jsonl"}).problems, written.Folder()),
              "e.jsonl:2: key \"kind\" is not a kind of event\n");
    EXPECT_TRUE(Joined(check({"bad.xml"}).problems, written.Folder()).starts_with("bad.xml:2:"));
    EXPECT_EQ(check({"other.xml"}).problems.size(), 1U);
    const CheckReport none = check({"none.xml", "v.xml"});
    EXPECT_EQ(none.unopened.size(), 1U);
    EXPECT_EQ(none.files, 1U);
}

TEST(CheckPaths, RulesOfTriggers) {
    struct Row {
        const char* rule;  // as XML
        const char* problem;
    };
    const Row rows[] = {
        {"0001:01:01,State &gt; 2 &amp; Model = &quot;C%&quot;", ""},
        {"State &gt; 2 &amp; (Value &gt; 1", "attribute \"Rule\": \"(\" without \")\" at column 13"},
        {"", "\"Rule\" is missing or empty: it never fires"},
        {"0001:01:01,Foo",
         "attribute \"Rule\": no device has the field \"0001:01:01,Foo\": it stands for itself (a "
         "text is written in quotes)"},
        {"Colour = Green",
         "attribute \"Rule\": no device has the field \"Green\": it stands for itself (a text is "
         "written in quotes)"},
        {"0001:01:02,Model = 1",
         "attribute \"Rule\": the device 0001:01:02 has no field \"Model\": it stands for "
         "itself (a text is written in quotes)"},
        {"0009:09:09,State = 1 | 0009:09:09,State = 2",
         "attribute \"Rule\": \"0009:09:09,State\" asks for a device that does not exist"},
        {"0009:?:09,State",
         "attribute \"Rule\": \"0009:?:09,State\" asks for a device without a full address"},
    };
    RegisterHostTypes();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        const WrittenSite written;
        written.WriteObjects({});
        written.Write("site.ini", "[Site]\nDevices=devices.ini\n[Object a]\nAddress=1:1:1\n");
        written.Write("devices.ini", "[1:1:1]\nModel=C3\n[1:1:2]\nName=x\n");
        written.WriteBehaviour("a", "\n <RuleTrigger Rule='" + std::string(row.rule) + "'/>",
                               "<WriteLogAction Text='x'/>");
        const std::string expected =
            *row.problem ? "behaviours/a.xml:2:2: " + std::string(row.problem) + "\n" : std::string();
        EXPECT_EQ(Joined(CheckPaths({written.Folder()}).problems, written.Folder()), expected);
    }
}

TEST(CheckPaths, RulesOfObjectsWithoutADevice) {
    RegisterHostTypes();
    const WrittenSite written;
    written.WriteObjects({});
    written.Write("site.ini", "[Site]\nDevices=devices.ini\n[Object a]\n[Object b]\nAddress=2:2:2\n");
    for (const char* name : {"a", "b"})
        written.WriteBehaviour(name, "<RuleTrigger Rule='State &gt; 2'/>", "<WriteLogAction Text='x'/>");
    EXPECT_EQ(
        Joined(CheckPaths({written.Folder()}).problems, written.Folder()),
        "behaviours/a.xml:1:40: attribute \"Rule\": \"State\" is a field of the object's own device, but the "
        "object has no full address\n"
        "behaviours/b.xml:1:40: attribute \"Rule\": \"State\" asks for the object's own device, which does "
        "not "
        "exist\n");
    EXPECT_TRUE(CheckPaths({written.Path("behaviours/a.xml")}).problems.empty())
        << "a list alone knows no devices";
}

TEST(CheckPaths, ASiteWithItsSurroundings) {
    RegisterHostTypes();
    const WrittenSite written;
    written.WriteObjects({"a", "b"});
    written.Write(
        "site.ini",
        "[Site]\nDevices=devices.ini\nVariables=variables.xml\nRecording=events.jsonl\nMacros=macros.ini\n"
        "[Object a]\nHost=System\n[Object b]\n");
    written.Write("macros.ini", "[SearchPath]\n[Other]\n");
    written.Write("events.jsonl", "{\"kind\":\"poll\",\"object\":\"c\"}");
    written.WriteBehaviour(
        "a", "<PollTrigger/>",
        "<SendStateAction State='1'/><WriteLogAction Text='{Who} {New} {No} #Model# #Foo#'/>");
    written.WriteBehaviour("b", "<PollTrigger/>", "<SetVariableAction Variable='New' Scope='SITE'/>");
    const std::string where = "behaviours/a.xml:1:";
    const std::string text = Joined(CheckPaths({written.Folder()}).problems, written.Folder());
    EXPECT_NE(text.find("macros.ini:2:1: section [Other] is unknown\n"), std::string::npos) << text;
    EXPECT_NE(text.find("the action cannot be used by an object of this kind\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\"{No}\" is not resolved (searched: object a, site)\n"), std::string::npos) << text;
    EXPECT_NE(text.find("no device has the field \"#Foo#\"\n"), std::string::npos) << text;
    EXPECT_NE(text.find("events.jsonl:1: the site has no object \"c\"\n"), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5) << text;
    EXPECT_EQ(CheckPaths({written.Path("behaviours")}).unopened.size(), 1U) << "a folder without site.ini";
}

TEST(ExpectedLines, ComparesValuesLineByLine) {
    struct Row {
        const char* label;
        const char* expected;
        std::vector<const char*> actual;
        const char* changes;  // mark and line number of each
    };
    const Row rows[] = {
        {"equal", "{\"a\":1,\"b\":2}\n{\"c\":1}\n", {R"({"b":2,"a":1.0})", R"({"c":1})"}, ""},
        {"blank lines do not count", "\n{\"a\":1}\n\n", {R"({"a":1})"}, ""},
        {"another value", "{\"a\":1}", {R"({"a":2})"}, "-1[a] +1[a] "},
        {"one more", "{\"a\":1}", {R"({"a":1})", R"({"a":2})"}, " 1 +2 "},
        {"one missing in the middle",
         "{\"a\":1}\n{\"a\":2}\n{\"a\":3}",
         {R"({"a":1})", R"({"a":3})"},
         " 1 -2  3 "},
        {"one moved",
         "{\"a\":1}\n{\"a\":2}\n{\"a\":3}",
         {R"({"a":2})", R"({"a":3})", R"({"a":1})"},
         "-1  2  3 +3 "},
        {"nothing came", "{\"a\":1}", {}, "-1 "},
        {"nothing expected", "", {R"({"a":1})"}, "+1 "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<ExpectedLine> expected;
        std::size_t line = 0;
        ASSERT_EQ(ReadExpected(row.expected, expected, line), "");
        std::vector<RunRecord> actual;
        for (const char* text : row.actual) actual.push_back(RunRecord::parse(text));
        std::string changes;
        for (const LineChange& change : CompareLines(expected, actual)) {
            changes += " -+"[change.what] + std::to_string(change.line);
            if (!change.keys.empty()) changes += "[" + change.keys[0] + "]";
            changes += ' ';
        }
        EXPECT_EQ(changes, row.changes);
    }
    std::vector<ExpectedLine> expected;
    std::size_t line = 0;
    EXPECT_EQ(ReadExpected("{}\nx\n", expected, line), "is not JSON");
    EXPECT_EQ(line, 2U);
}

TEST(DeviceTable, AnswersFromFilesAndEvents) {
    DeviceTable devices;
    Problems problems;
    devices.Load(IniText("[0001:02:03]\nName=N\nState=2\nModel=M\nValue=7\n", "f", problems), "f", problems);
    FullAddress_t at{1, 2, 3};
    FullAddress_t elsewhere{9, 9, 9};
    const auto field = [&](const char* name) { return devices.GetHashFieldValue(&at, name).str(); };
    EXPECT_EQ(devices.GetAddressStatus(&at), 2);
    EXPECT_EQ(devices.GetAddressStatus(&elsewhere), 0);
    EXPECT_EQ(devices.GetAddressStatus(nullptr), 0);
    EXPECT_EQ(field("model"), "M");
    EXPECT_EQ(field("Caption"), "N");
    EXPECT_EQ(field("Value"), "7");
    EXPECT_EQ(field("Colour"), "Yellow");
    EXPECT_EQ(field("None"), "");
    EXPECT_EQ(devices.GetHashFieldValue(&at, nullptr), "");
    EXPECT_EQ(devices.GetHashFieldValue(nullptr, "Name"), "");
    CStateEvent* event = new CStateChangedEvent(CAddressOv(1, 2, 3), true, 5, "h", "c", "t", "u", "", "");
    EXPECT_EQ(devices.Take(*event), DeviceTable::Change::kSomething);
    EXPECT_EQ(devices.Take(*event), DeviceTable::Change::kNothing);
    event->Release();
    EXPECT_EQ(field("State") + field("Masked") + field("Header") + field("Cause") + field("Text") +
                  field("User") + field("Colour"),
              "5TRUEhctuRed");
    for (CStateEvent* other : {static_cast<CStateEvent*>(new CMeterValueChangeEvent(
                                   1.5F, CAddressOv(1, 2, 3), false, 0, "", "", "", "", "", "")),
                               static_cast<CStateEvent*>(new CMeterZoneChangeEvent(
                                   4, CAddressOv(1, 2, 3), false, 0, "", "", "", "", "", "")),
                               static_cast<CStateEvent*>(new CCaptionChangedEvent(
                                   CAddressOv(1, 2, 3), false, 0, "", "", "new", "", "", ""))}) {
        devices.Take(*other);
        other->Release();
    }
    EXPECT_EQ(field("Value") + field("Zone") + field("Caption") + field("Name") + field("State"),
              "1.54newN5");
    CStateEvent* unknown = new CStateChangedEvent(CAddressOv(9, 9, 9), false, 1, "", "", "", "", "", "");
    EXPECT_EQ(devices.Take(*unknown), DeviceTable::Change::kSomething);
    EXPECT_EQ(devices.Take(*unknown), DeviceTable::Change::kSomething) << "it is not remembered";
    EXPECT_FALSE(devices.Knows(0x00090909));
    devices.Subscribe(0x00090909);
    devices.Take(*unknown);
    EXPECT_EQ(devices.GetAddressStatus(&elsewhere), 1);
    unknown->Release();
}

}  // namespace
}  // namespace brindle::host
