// The line of every kind of record, as people read it.
#include "host/run_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/site.h"

namespace brindle::host {
namespace {

struct Row {
    const char* label;
    const char* record;
    const char* expected;  // behind the time and the object
};

constexpr std::size_t kColumns = 17;  // nine of the time, four of the object, two spaces behind each

std::string Shown(const char* json) {
    const Site site;
    const RunText text(site, [](TextStyle, std::string_view part) { return std::string(part); });
    RunRecord record = RunRecord::parse(json);
    record["t"] = 0;
    const std::string line = text.Line(record);
    EXPECT_TRUE(line.starts_with("    0.000        ")) << line;
    return line.substr(kColumns);
}

void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Shown(row.record), row.expected);
    }
}

TEST(RunTextLine, Events) {
    Check({
        {"a button",
         R"({"kind":"event","event":"button","device":"Cam\tera","address":"0001:01:01","toggle":true})",
         "button Cam era 0001:01:01 on"},
        {"toggled off", R"({"kind":"event","event":"button","toggle":false})", "button off"},
        {"a check box", R"({"kind":"event","event":"checkbox","checked":true})", "checkbox checked"},
        {"the same, empty", R"({"kind":"event","event":"checkbox","checked":false})", "checkbox unchecked"},
        {"a value", R"({"kind":"event","event":"meter","value":48.5})", "meter at 48.5"},
        {"a zone", R"({"kind":"event","event":"zone","zone":4})", "zone at 4"},
        {"all texts",
         R"({"kind":"event","event":"state","state":2,"masked":true,"header":"H","cause":"C","text":"T","user":"U",)"
         R"("key":"K","keyValue":"V\u007f","sent":true})",
         "state = 2 masked  H  C  T  U  K  V   (sent by an action)"},
        {"a reload", R"({"kind":"reload","file":"devices.ini","removed":2,"set":4,"added":1,"kept":3})",
         "reload  devices.ini, 3 kept, 1 added, 4 set, 2 removed"},
        {"a reload without numbers", R"({"kind":"reload","file":"skin.xml"})", "reload  skin.xml"},
        {"the end", R"({"kind":"end","why":"stopped","events":2})", "end  stopped, 2 events"},
    });
}

TEST(RunTextLine, Verdicts) {
    Check({
        {"disabled", R"({"kind":"verdict","trigger":"T","verdict":0,"disabled":true,"why":"w"})",
         "  -> T stays out (disabled): w"},
        {"ends", R"({"kind":"verdict","trigger":"T","verdict":1,"why":"w"})", "  -> T ends: w"},
        {"beyond what there is", R"({"kind":"verdict","trigger":"T","verdict":7,"why":"w"})",
         "  -> T fires: w"},
        {"values of a rule",
         R"({"kind":"verdict","trigger":"T","verdict":2,"why":"w",)"
         R"("values":[{"address":"0001:01:01","name":"State","value":3},{"name":"Colour"}]})",
         "  -> T fires: w [0001:01:01,State=3; Colour unknown]"},
        {"may unlock", R"({"kind":"unlock","allowed":true,"event":"button","trigger":"T","action":"A"})",
         "unlock? button  allowed by T -> A"},
        {"may not unlock", R"({"kind":"unlock","allowed":false,"event":"button"})",
         "unlock? button  refused: no action allows it"},
    });
}

TEST(RunTextLine, WhatActionsDid) {
    Check({
        {"a variable", R"({"kind":"variable","name":"n","value":"v","scope":"site"})",
         "     -> variable n = v (site)"},
        {"a command on time", R"({"kind":"command","line":"notepad x","by":"schedule","trigger":"T"})",
         "schedule T -> command  notepad x"},
        {"a repeated line", R"({"kind":"log","text":"again","by":"repeat","trigger":"T"})",
         "repeat T -> log      again"},
        {"a program that is not started", R"({"kind":"program","line":"x","dryRun":true})",
         "     -> program  x  (dry run)"},
        {"an event", R"({"kind":"send","event":"state","state":1})", "     -> send     state = 1"},
        {"a number for a text", R"({"kind":"log","text":5})", "     -> log      5"},
        {"a failure", R"({"kind":"failure","why":"no\nlist"})", "     -> failure  no list"},
        {"of an agent", R"({"kind":"failure","why":"no answer","what":"get","agent":"h","oid":"1.3"})",
         "     -> failure  snmp get h 1.3: no answer"},
        {"left out", R"({"kind":"skipped","action":"Log","why":"it is disabled"})",
         "     -> skipped  Log: it is disabled"},
    });
}

TEST(RunTextLine, RepeatsAndSchedules) {
    Check({
        {"a schedule begins", R"({"kind":"schedule","what":"added","action":"A","due":1500})",
         "     -> schedule A, next at 1.500"},
        {"a repeat begins", R"({"kind":"repeat","what":"added","action":"A","period":250,"due":1250})",
         "     -> repeat   A every 0.250 s, next at 1.250"},
        {"runs", R"({"kind":"repeat","what":"runs","action":"A","due":2000})",
         "     -> repeat   A, next at 2.000"},
        {"goes on", R"({"kind":"repeat","what":"kept","action":"A"})", "     -> repeat   A goes on"},
        {"ends", R"({"kind":"repeat","what":"ended","action":"A"})", "     -> repeat   A is over"},
    });
}

TEST(RunTextLine, Agents) {
    Check({
        {"a poll of a device without a name",
         R"({"kind":"snmp","what":"poll","address":"0001:01:01","values":{"Temp":"40","Fan":"ok"},"why":"timeout"})",
         "snmp poll 0001:01:01: Temp = 40, Fan = ok, timeout"},
        {"a poll without an answer", R"({"kind":"snmp","what":"poll","device":"Camera","why":"no answer"})",
         "snmp poll Camera: no answer"},
        {"an answer for a variable",
         R"({"kind":"snmp","what":"get","agent":"h","oid":"1.3","value":"5","name":"n","scope":"site","action":"A"})",
         "snmp get h 1.3 = 5 -> n (site)  for A"},
        {"a value that is not sent",
         R"({"kind":"snmp","what":"set","agent":"h","oid":"1.3","action":"A","sent":false})",
         "snmp set h 1.3  for A  (not sent)"},
    });
}

TEST(RunTextLine, LongTimesPushTheColumnsAndStylesFollowTheParts) {
    const Site site;
    const RunText text(site, [](TextStyle style, std::string_view part) {
        return "<" + std::to_string(static_cast<int>(style)) + std::string(part) + ">";
    });
    const auto record = RunRecord::parse(
        R"({"t":123456789012,"kind":"verdict","object":"\u00e9","trigger":"T","verdict":2,"why":"w"})");
    EXPECT_EQ(text.Line(record), "<1123456789.012>  <2\xC3\xA9   >    <4-> T fires><7: w>");
}

}  // namespace
}  // namespace brindle::host
