// Times of Orvane::Utils, in several zones of the clock, and against the recorded answers of the real runtime.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "brindle/util/utils.h"
#include "testing/vectors.h"

namespace Orvane {
namespace {

using brindle::FakeClock;

constexpr std::int64_t kMonday = 1672653600;  // 2023-01-02 10:00:00 UTC

class UtilsTime : public ::testing::Test {
  protected:
    FakeClock m_clock;

  private:
    brindle::ScopedService<brindle::Clock> m_installed{&brindle::SetClock, m_clock};
};

TEST_F(UtilsTime, FileTimeToUnixTime) {
    struct Row {
        const char* label;
        std::uint64_t ticks;
        std::int64_t expected;
    };
    const Row rows[] = {
        {"1601", 0, -11644473600},
        {"the epoch", 116444736000000000, 0},
        {"cut, not rounded", 116444736009999999, 0},
        {"one second", 116444736010000000, 1},
        {"cut towards zero before it", 116444735990000001, 0},
        {"one second before", 116444735990000000, -1},
        {"2023", 133171272000000000, 1672653600},
        {"the last", std::numeric_limits<std::uint64_t>::max(), 1833029933770},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const FILETIME time = brindle::TicksToFileTime(row.ticks);
        EXPECT_EQ(Utils::FileTimeToUnixTime(&time), row.expected);
    }
}

TEST_F(UtilsTime, LocalTimeInSeveralZones) {
    struct Row {
        std::int64_t now;
        int offset;
        unsigned long expected;
    };
    const Row rows[] = {
        {kMonday, 0, kMonday},
        {kMonday, 7200, kMonday + 7200},
        {kMonday, -18000, kMonday - 18000},
        {kMonday, 19800, kMonday + 19800},
        {4294967295, 3600, 3599},  // cut to 32 bits
        {0, -3600, 4294963696},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.offset);
        m_clock.SetUnixSeconds(row.now);
        m_clock.SetUtcOffset(row.offset);
        EXPECT_EQ(Utils::GetLocalTime32(), row.expected);
    }
    m_clock.FailLocalTime(true);
    EXPECT_THROW(Utils::GetLocalTime32(), std::invalid_argument);
    EXPECT_THROW(Utils::ResolveTimebasedPath("%Y"), std::invalid_argument);
    EXPECT_EQ(Utils::ResolveTimebasedPath("100%"), "100%");
}

TEST_F(UtilsTime, TimeString) {
    struct Row {
        const char* label;
        unsigned long t;
        const char* format;
        std::string expected;
    };
    const std::string most(127, 'x');
    const std::string tooLong(128, 'x');
    const Row rows[] = {
        {"null format", kMonday, nullptr, "Mon Jan 02 10:00:00 2023"},
        {"empty format", kMonday, "", ""},
        {"the beginning", 0, "%Y-%m-%d %H:%M:%S", "1970-01-01 00:00:00"},
        {"the last of 32 bits", 4294967295, "%Y-%m-%d %H:%M:%S", "2106-02-07 06:28:15"},
        {"127 characters", kMonday, most.c_str(), most},
        {"128 characters", kMonday, tooLong.c_str(), ""},
        {"unknown conversion", kMonday, "%Q", ""},
        {"words of the C locale", kMonday, "%A %B %p", "Monday January AM"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Utils::GetTimeString32(row.t, row.format), row.expected);
    }
    EXPECT_THROW(Utils::GetTimeString32(4294967296, "%Y"), std::invalid_argument);
}

TEST_F(UtilsTime, TimeStringKeepsTheLocalZoneOfUtcFields) {
    m_clock.SetUtcOffset(7200);
    m_clock.SetDaylightSaving(3600);
    m_clock.SetZoneName("CET");
    EXPECT_EQ(Utils::GetTimeString32(kMonday, "%H %z %Z"), "10 +0100 CET");
    m_clock.SetUtcOffset(-12600);
    m_clock.SetDaylightSaving(0);
    m_clock.SetZoneName("NST");
    EXPECT_EQ(Utils::GetTimeString32(kMonday, "%H %z %Z"), "10 -0330 NST");
}

TEST_F(UtilsTime, TimeStringRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "strftime.json");
    int compared = 0;
    for (const nlohmann::json& row : vectors["cases"]) {
        const nlohmann::json& expected = row["ucrt"];
        const std::int64_t seconds = row["seconds"];
        const std::string format = brindle::testing::BytesOf(row["format"]);
        // Named, and so shortened, zones are marked; a zone's offset outside daylight saving is in its name.
        const std::string zone = row["tz"];
        if (expected.contains("quirk") || expected.contains("unsure") || row["size"] != 128) continue;
        if (seconds < 0 || format.find_first_of("#eFgGhnrRtTuV") != std::string::npos) continue;
        const int offset = zone == "EST5EDT"     ? -18000
                           : zone == "CET-1CEST" ? 3600
                           : zone == "IST-5:30"  ? 19800
                                                 : 0;
        m_clock.SetUtcOffset(offset);
        ++compared;
        EXPECT_EQ(Utils::GetTimeString32(static_cast<unsigned long>(seconds), format.c_str()),
                  brindle::testing::BytesOf(expected["text"]))
            << row.dump();
    }
    EXPECT_GT(compared, 100);
}

TEST_F(UtilsTime, ParseDateTimeString) {
    struct Row {
        const char* text;
        bool read;
        std::int64_t expected;
    };
    constexpr std::int64_t kMarch1 = 1709287200;  // 2024-03-01 10:00:00
    const Row rows[] = {
        {"2024-03-01T10:00:00Z", true, kMarch1},
        {"2024-02-30T10:00:00Z", true, kMarch1},  // the date is normalised
        {"2024-02-10 10:00:00", false, 7},
        {"2024-03-01T10:00:00", true, kMarch1},  // all six are read
        {"2024-03-01T10:00:00 and more", true, kMarch1},
        {" 2024- 3- 1T 10: 0: 0", true, kMarch1},  // blanks before a number
        {"2024 -03-01T10:00:00Z", false, 7},
        {"2024-03-01T10:00", false, 7},
        {"2024-03-01T10:00:", false, 7},
        {"2024-03-01T10:00:x", false, 7},
        {"2024-03-01t10:00:00Z", false, 7},
        {"", false, 7},
        {"2023-15-01T10:00:00Z", true, kMarch1},  // month 15 is March of the next year
        {"2025--9-01T10:00:00Z", true, kMarch1},  // month -9 is March of the year before
        {"2024-03-00T34:00:00Z", true, kMarch1},
        {"2024-03-01T09:59:60Z", true, kMarch1},
        {"2024-03-01T11:-60:00Z", true, kMarch1},
        {"1970-01-01T00:00:00Z", true, 0},
        {"1969-12-31T23:59:59Z", true, -1},  // no such time
        {"1960-01-01T00:00:00Z", true, -1},
        {"3000-12-31T23:59:59Z", true, 32535215999},
        {"3001-01-01T00:00:00Z", true, -1},
        {"99999999999-01-01T00:00:00Z", true, -1},
        {"-2147483648-2147483647-2147483647T2147483647:2147483647:2147483647Z", true, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        std::int64_t t = 7;
        EXPECT_EQ(Utils::ParseDateTimeString(row.text, t), row.read);
        EXPECT_EQ(t, row.expected);
    }
}

TEST_F(UtilsTime, ParseDateTimeStringIsLocalWithoutDaylightSaving) {
    struct Row {
        int offset;
        int daylightSaving;
        std::int64_t expected;
    };
    constexpr std::int64_t kNoon = 1720008000;  // 2024-07-03 12:00:00 UTC
    const Row rows[] = {
        {0, 0, kNoon}, {3600, 0, kNoon - 3600}, {7200, 3600, kNoon - 3600}, {-14400, 3600, kNoon + 18000}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.offset);
        m_clock.SetUtcOffset(row.offset);
        m_clock.SetDaylightSaving(row.daylightSaving);
        std::int64_t t = 0;
        EXPECT_TRUE(Utils::ParseDateTimeString("2024-07-03T12:00:00Z", t));
        EXPECT_EQ(t, row.expected);
    }
}

TEST_F(UtilsTime, ResolveTimebasedPath) {
    m_clock.SetUnixSeconds(kMonday);
    m_clock.SetUtcOffset(3600);
    m_clock.SetZoneName("CET");
    const std::string longPath = std::string(120, 'x') + "%Y%m%d";
    struct Row {
        const char* label;
        std::string path;
        std::string expected;
    };
    const Row rows[] = {
        {"worked example", "log\\%Y%m%d.txt", "log\\20230102.txt"},
        {"percent at a point", "log\\100%.txt", "log\\100%.txt"},
        {"percent at the end", "log%", "log%"},
        {"double percent at the end: kept as it is", "100%%", "100%%"},
        {"double percent before a conversion letter", "%%Y", "%Y"},
        {"double percent before another letter", "%%q", "%%q"},
        {"no percent", "log.txt", "log.txt"},
        {"empty", "", ""},
        {"one of many is none", "%Y %Q %m", "%Y %Q %m"},
        {"local time", "%H:%M %z %Z", "11:00 +0100 CET"},
        {"every conversion", "%a%A%b%B%c%C%d%D%H%I%j%m%M%p%S%U%w%W%x%X%y%Y",
         "MonMondayJanJanuaryMon Jan  2 11:00:00 2023200201/02/2311110020100AM000110101/02/2311:00:00232023"},
        {"too long", longPath, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Utils::ResolveTimebasedPath(row.path), row.expected);
    }
}

TEST_F(UtilsTime, OnlyTheListedConversionsMakeAPath) {
    const std::string listed = "aAbBcCdDHIjmMpSUwWxXyYzZ";
    for (int c = 1; c < 256; ++c) {
        const std::string path = std::string("%") + static_cast<char>(c) + "a";
        SCOPED_TRACE(c);
        if (c == '%' || listed.find(static_cast<char>(c)) != std::string::npos)
            EXPECT_NE(Utils::ResolveTimebasedPath(path), path);
        else
            EXPECT_EQ(Utils::ResolveTimebasedPath(path), path);
    }
}

}  // namespace
}  // namespace Orvane
