// Times as text: own rows, then the recorded answers of the real runtime.
#include "brindle/framework/time_text.h"

#include <gtest/gtest.h>

#include <string>

#include "brindle/framework/number_text.h"
#include "testing/vectors.h"

namespace {

using namespace brindle;

constexpr std::int64_t kMonday = 1672653600;   // 2023-01-02 10:00:00, a Monday
constexpr std::int64_t kLeapDay = 1709251199;  // 2024-02-29 23:59:59, a Thursday
constexpr std::int64_t kNewYear = 1609459200;  // 2021-01-01 00:00:00, a Friday

TEST(TimeText, Conversions) {
    struct Row {
        const char* format;
        std::int64_t seconds;
        const char* expected;
    };
    const Row rows[] = {
        {"%a %A", kMonday, "Mon Monday"},
        {"%b %B %h", kLeapDay, "Feb February Feb"},
        {"%c", kMonday, "Mon Jan  2 10:00:00 2023"},
        {"%#c", kMonday, "Monday, January 02, 2023 10:00:00"},
        {"%C %y %Y", kLeapDay, "20 24 2024"},
        {"%d %e", kMonday, "02  2"},
        {"%#d %#e", kMonday, "2 2"},
        {"%D", kLeapDay, "02/29/24"},
        {"%#D", kMonday, "1/2/23"},
        {"%F", kLeapDay, "2024-02-29"},
        {"%H %I", kLeapDay, "23 11"},
        {"%H %I %#I", kNewYear, "00 12 12"},
        {"%#H", kNewYear, "0"},
        {"%j %#j", kMonday, "002 2"},
        {"%m %M %S", kLeapDay, "02 59 59"},
        {"%p", kMonday, "AM"},
        {"%p", kLeapDay, "PM"},
        {"%r", kLeapDay, "11:59:59 PM"},
        {"%R %T", kLeapDay, "23:59 23:59:59"},
        {"%u %w", kMonday, "1 1"},
        {"%u %w", 1672531200, "7 0"},  // a Sunday
        {"%U %W", kMonday, "01 01"},
        {"%U %W", kNewYear, "00 00"},
        {"%V %g %G", kNewYear, "53 20 2020"},
        {"%V %G", 1672531200, "52 2022"},
        {"%V %G", 1735603200, "01 2025"},  // 2024-12-31
        {"%V %G", kLeapDay, "09 2024"},
        {"%x %X", kMonday, "01/02/23 10:00:00"},
        {"%#x", kMonday, "Monday, January 02, 2023"},
        {"%#X", kMonday, "10:00:00"},
        {"%n%t%%", kMonday, "\n\t%"},
        {"%Ey %Od", kMonday, "23 02"},
        {"%#Od", kMonday, "2"},
        {"", kMonday, ""},
        {"plain \xE9", kMonday, "plain \xE9"},
        {"%%d", kMonday, "%d"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.format);
        EXPECT_EQ(FormatTime(BreakDownUtc(row.seconds), row.format, 128), row.expected);
    }
}

TEST(TimeText, Zones) {
    LocalTime time = BreakDownUtc(kMonday);
    struct Row {
        int offset;
        const char* expected;
    };
    for (const Row& row : {Row{0, "+0000"}, Row{3600, "+0100"}, Row{-18000, "-0500"}, Row{19800, "+0530"},
                           Row{-12600, "-0330"}, Row{50400, "+1400"}}) {
        SCOPED_TRACE(row.offset);
        time.utcOffsetSeconds = row.offset;
        EXPECT_EQ(FormatTime(time, "%z", 128), row.expected);
    }
    EXPECT_EQ(FormatTime(time, "<%Z>", 128), "<>");
    EXPECT_EQ(FormatTime(time, "<%Z>", 128, "CEST"), "<CEST>");
}

TEST(TimeText, UnknownConversionsFailWhole) {
    for (const char* format : {"%", "a%", "%Q", "%Y%f", "%#", "%E", "%#O", "%-d", "%1"}) {
        SCOPED_TRACE(format);
        EXPECT_EQ(FormatTime(BreakDownUtc(kMonday), format, 128), "");
    }
}

TEST(TimeText, TheSizeCountsTheZero) {
    const LocalTime time = BreakDownUtc(kMonday);
    EXPECT_EQ(FormatTime(time, "%Y", 5), "2023");
    EXPECT_EQ(FormatTime(time, "%Y", 4), "");
    EXPECT_EQ(FormatTime(time, "%Y", 0), "");
    EXPECT_EQ(FormatTime(time, std::string(127, 'x'), 128).size(), 127u);
    EXPECT_EQ(FormatTime(time, std::string(128, 'x'), 128), "");
}

TEST(TimeText, FieldsOutOfRangeFail) {
    const auto broken = [](int LocalTime::*field, int value) {
        LocalTime time = BreakDownUtc(kMonday);
        time.*field = value;
        return FormatTime(time, "%a %B", 128);
    };
    struct Row {
        const char* label;
        int LocalTime::*field;
        int below, lowest, highest, above;
    };
    const Row rows[] = {
        {"year", &LocalTime::year, -1, 0, 9999, 10000},
        {"month", &LocalTime::month, 0, 1, 12, 13},
        {"day", &LocalTime::day, 0, 1, 31, 32},
        {"hour", &LocalTime::hour, -1, 0, 23, 24},
        {"minute", &LocalTime::minute, -1, 0, 59, 60},
        {"second", &LocalTime::second, -1, 0, 60, 61},
        {"weekday", &LocalTime::weekday, -1, 0, 6, 7},
        {"day of the year", &LocalTime::yearDay, -1, 0, 365, 366},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(broken(row.field, row.below), "");
        EXPECT_NE(broken(row.field, row.lowest), "");
        EXPECT_NE(broken(row.field, row.highest), "");
        EXPECT_EQ(broken(row.field, row.above), "");
    }
}

// Offset east of Greenwich of a zone text like "EST5EDT" or "IST-5:30", outside daylight saving.
int OffsetOf(const std::string& zone) {
    const std::string_view rest = std::string_view(zone).substr(3);
    const auto hours = ReadLong(rest, 10);
    int seconds = std::abs(hours.value) * 3600;
    if (hours.end < rest.size() && rest[hours.end] == ':')
        seconds += ReadInt(rest.substr(hours.end + 1)) * 60;
    return rest[0] == '-' ? seconds : -seconds;
}

TEST(TimeText, RecordedAnswers) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "strftime.json");
    int compared = 0;
    for (const auto& row : vectors.at("cases")) {
        const auto& answer = row.at("ucrt");
        if (answer.value("quirk", false)) continue;  // known to differ from the real runtime
        LocalTime time = BreakDownUtc(row.at("seconds").get<std::int64_t>());
        time.utcOffsetSeconds = OffsetOf(row.at("tz").get<std::string>());
        const std::string format = brindle::testing::BytesOf(row.at("format"));
        SCOPED_TRACE(format);
        const std::string text = FormatTime(time, format, row.at("size").get<std::size_t>());
        EXPECT_EQ(text, brindle::testing::BytesOf(answer.at("text")));
        EXPECT_EQ(text.size(), answer.at("result").get<std::size_t>());
        ++compared;
    }
    EXPECT_GT(compared, 190);
}

}  // namespace
