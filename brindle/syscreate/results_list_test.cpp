// Results lists: those of texts with fields, reading them back as alarm records, and which texts are dynamic.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/library/host_text.h"
#include "testing/syscreate_kit.h"

namespace {

using namespace brindle::testing;

TEST(SysCreateResults, OneForEachFieldOfAText) {
    const auto caption = [](const char* header) {
        return std::string("<Result Type=\"2\" ID=\"0\" Unit=\"U&amp;\" Header=\"") + header + "\"/>";
    };
    const struct {
        const char* label;
        const char* text;
        std::string results;
    } rows[] = {{"empty", "", ""},
                {"no field", "plain", ""},
                {"one", "#Name#", caption("Name")},
                {"two with text around", "a #N1# b #N2# c", caption("N1") + caption("N2")},
                {"one after the other", "#a##b#", caption("a") + caption("b")},
                {"an empty name", "##", caption("")},
                {"an unpaired one ends it", "#a#b#c", caption("a")},
                {"only an unpaired one", "a#b", ""},
                {"with an address", "#0001:02:03,Level#", caption("0001:02:03,Level")},
                {"escaped", "#<a & \"b\">#", caption("&lt;a &amp; &quot;b&quot;&gt;")},
                {"bytes of the code page", "#\xFC \x80#", caption("\xFC \x80")}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        EXPECT_EQ(create.CreateResultsForStringsOfFields("U&", row.text), ResultsList(row.results));
        EXPECT_EQ(create.ResultInfo(), ResultsList(row.results));
    }
}

TEST(SysCreateResults, TheirNumberIsLimited) {
    std::string text;
    for (std::size_t i = 0; i < SysCreate::kMaxResults; ++i) text += "##";
    SysCreate create;
    EXPECT_GT(create.CreateResultsForStringsOfFields("u", text).GetLength(), 40'000'000);
    EXPECT_EQ(create.CreateResultsForStringsOfFields("u", text + "##"), ResultsList(""));
}

// The texts declare no encoding: as UTF-8, which is what a document without one is in, they can be read by anyone.
TEST(SysCreateResults, AsUtf8AnybodyReadsThem) {
    SysCreate create;
    const CStringA results = create.CreateResultsForStringsOfFields("\xFC", "#\x80#");
    const std::string utf8 = brindle::TextToSystem(results.view());
    EXPECT_NE(utf8.find("Unit=\"\xC3\xBC\" Header=\"\xE2\x82\xAC\""), std::string::npos) << utf8;
    EXPECT_EQ(utf8.find("encoding"), std::string::npos);
    const std::string folder = ::testing::TempDir();
    std::FILE* file = std::fopen((folder + "/results.xml").c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fwrite(utf8.data(), 1, utf8.size(), file);
    std::fclose(file);
    XMLReader reader;
    CStringA unused, unit, header;
    ASSERT_TRUE(reader.Load((folder + "/results.xml").c_str(), unused));
    ASSERT_TRUE(reader.EnterSection("ResultsList", true));
    ASSERT_TRUE(reader.EnterSection("Result", true));
    reader.ReadAttribute("Unit", unit);
    reader.ReadAttribute("Header", header);
    EXPECT_EQ(unit, "\xFC");
    EXPECT_EQ(header, "\x80");
}

// Every field set to something no result writes.
SvirtAlarmTrigData Preset() {
    SvirtAlarmTrigData record;
    record.stateCode = record.stateMode = record.stateValue = 11;
    record.captionCode = record.captionMode = record.captionValue = 22;
    record.maskCode = record.maskMode = record.maskValue = 33;
    record.stateField = record.captionField = record.maskField = "before";
    record.unit = record.header = "before";
    record.stateUsed = record.captionUsed = record.maskUsed = true;
    record.type = 44;
    return record;
}

std::string Text(const SvirtAlarmTrigData& r) {
    const auto block = [](int code, int mode, int value, const CStringA& field) {
        return std::to_string(code) + " " + std::to_string(mode) + " " + std::to_string(value) + " " +
               field.str();
    };
    return "state " + block(r.stateCode, r.stateMode, r.stateValue, r.stateField) + ", caption " +
           block(r.captionCode, r.captionMode, r.captionValue, r.captionField) + ", mask " +
           block(r.maskCode, r.maskMode, r.maskValue, r.maskField) + ", " + r.unit.str() + "/" +
           r.header.str() + (r.stateUsed || r.captionUsed || r.maskUsed ? ", used" : "") + ", type " +
           std::to_string(r.type);
}

TEST(SysCreateAlarms, OneRecordForEachResult) {
    const struct {
        const char* label;
        const char* result;
        const char* expected;
    } rows[] = {
        {"state", "<Result Type='1' ID='0' Unit='U' Header='H'/>",
         "state 4 2 6 State, caption 22 22 22 before, mask 33 33 33 before, U/H, type 1"},
        {"caption", "<Result Type='2' ID='0' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 4 8 -518 Caption, mask 33 33 33 before, U/H, type 2"},
        {"mask", "<Result Type='3' ID='0' Unit='U' Header='*' Mask='1'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 4 2 -999 Mask, U/*, type 3"},
        {"no type", "<Result ID='0' Objval='V' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 33 33 33 before, U/H, type 44"},
        {"an empty type", "<Result Type='' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 33 33 33 before, U/H, type 44"},
        {"another type", "<Result Type='4' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 33 33 33 before, U/H, type 4"},
        {"a type that is no number", "<Result Type='abc' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 33 33 33 before, U/H, type 0"},
        {"a negative type", "<Result Type='-1' Unit='U' Header='H'/>",
         "state 11 11 11 before, caption 22 22 22 before, mask 33 33 33 before, U/H, type -1"},
        {"neither unit nor header", "<Result Type='2'/>",
         "state 11 11 11 before, caption 4 8 -518 Caption, mask 33 33 33 before, /, type 2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        ASSERT_TRUE(create.CreateVirtualAlarmTriggerList(ResultsList(row.result)));
        SvirtAlarmTrigData record = Preset();
        ASSERT_TRUE(create.GetNextVirtualAlarmTrigger(record));
        EXPECT_EQ(Text(record), row.expected);
        record = Preset();
        EXPECT_FALSE(create.GetNextVirtualAlarmTrigger(record));
        EXPECT_FALSE(record.stateUsed || record.captionUsed || record.maskUsed) << "cleared at every call";
        EXPECT_EQ(record.unit, "before");
        EXPECT_FALSE(create.GetNextVirtualAlarmTrigger(record));
    }
}

TEST(SysCreateAlarms, AResultWithoutTypeDoesNotRepeatTheLastBlock) {
    SysCreate create;
    ASSERT_TRUE(
        create.CreateVirtualAlarmTriggerList(ResultsList("<Result Type='1'/><x/>t<Result Unit='U'/>")));
    SvirtAlarmTrigData record;
    ASSERT_TRUE(create.GetNextVirtualAlarmTrigger(record));
    EXPECT_EQ(record.stateField, "State");
    record.stateField = "mine";
    ASSERT_TRUE(create.GetNextVirtualAlarmTrigger(record));
    EXPECT_EQ(record.unit, "U");
    EXPECT_EQ(record.stateField, "mine");
}

TEST(SysCreateAlarms, WhatIsNoResultsListIsRefused) {
    const struct {
        const char* label;
        std::string text;
        bool good;
    } rows[] = {{"empty list", ResultsList(""), true},
                {"no text", "", false},
                {"not well-formed", "<ResultsList>", false},
                {"another root", "<Result Type='1'/>", false},
                {"not at the root", "<x><ResultsList/></x>", false},
                {"too long", "<ResultsList>" + std::string(17u << 20, ' ') + "</ResultsList>", false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        SvirtAlarmTrigData record;
        EXPECT_FALSE(create.GetNextVirtualAlarmTrigger(record)) << "nothing was loaded yet";
        ASSERT_TRUE(
            create.CreateVirtualAlarmTriggerList(ResultsList("<Result Type='1'/><Result Type='2'/>")));
        ASSERT_TRUE(create.GetNextVirtualAlarmTrigger(record));
        EXPECT_EQ(create.CreateVirtualAlarmTriggerList(row.text), row.good);
        EXPECT_FALSE(create.GetNextVirtualAlarmTrigger(record)) << "nothing is left of the one before";
        ASSERT_TRUE(create.CreateVirtualAlarmTriggerList(ResultsList("<Result Type='3'/>")));
        EXPECT_TRUE(create.GetNextVirtualAlarmTrigger(record));
        EXPECT_EQ(record.type, 3);
    }
}

TEST(SysCreateAlarms, ReadsWhatAnExpansionReports) {
    const CStringArray fields = Texts({"F1", "F2"});
    const CStringArray values = Texts({"V1", "V2"});
    SysCreate create;
    create.ExpandXML(Template("<GetSNMPAction data='%OBJFLD%'/><MaskUnitAction>Tx1</MaskUnitAction>"),
                     &fields, &values);
    ASSERT_TRUE(create.CreateVirtualAlarmTriggerList(create.ResultInfo()));
    SysCreate copy(create);
    std::string seen;
    SvirtAlarmTrigData record;
    for (; copy.GetNextVirtualAlarmTrigger(record); record = {})
        seen += record.unit.str() + "/" + record.header.str() + "/" + std::to_string(record.type) + " ";
    EXPECT_EQ(seen, "unit of F1/header of V1/0 unit of F2/header of V2/0 Tx1/*/3 ");
}

TEST(SysCreateAlarms, EveryPrefixOfAListIsHarmless) {
    const std::string whole = ResultsList("<Result Type='1' Unit='U' Header='H'/><Result/>");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SysCreate create;
        SvirtAlarmTrigData record;
        EXPECT_FALSE(create.CreateVirtualAlarmTriggerList(whole.substr(0, length))) << length;
        EXPECT_FALSE(create.GetNextVirtualAlarmTrigger(record));
    }
}

TEST(SysCreateDynamic, TextsThatNeedFormatting) {
    std::vector<std::pair<std::string, bool>> rows;
    for (const char* field :
         {"%a",     "%N",   "%U",   "%P",    "%p",     "%c",    "%t",     "%i",  "%j",  "%s",  "%r",
          "%yyyy%", "%MM%", "%dd%", "%ddd%", "%dddd%", "%MMM%", "%MMMM%", "%z%", "%H%", "%m%", "%s%"}) {
        rows.emplace_back(field, true);
        rows.emplace_back("before " + std::string(field) + " behind", true);
    }
    for (const char* plain : {"",   "plain", "%h only", "%h",    "%v", "%n",    "%q", "%", "%A",  "%u",  "%m",
                              "%H", "%z",    "%d%",     "%yyyy", "#",  "a # b", "{",  "}", "} {", "100%"})
        rows.emplace_back(plain, false);
    for (const char* dynamic : {"{x}", "{}", "}{}", "##", "a #x# b", "#a,b#", "%%a"})
        rows.emplace_back(dynamic, true);
    const SysCreate create;
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(create.ContainsDynamicField(CStringA(text)), expected) << text;
}

}  // namespace
