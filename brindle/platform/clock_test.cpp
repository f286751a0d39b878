// The clock's contract, over the system's clock and the fake one.
#include "brindle/platform/clock.h"

#include <gtest/gtest.h>

#include <time.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "brindle/framework/file_time.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

class ClockContract : public ::testing::TestWithParam<bool> {
  protected:
    Clock& clock() { return GetParam() ? BackendClock() : static_cast<Clock&>(m_fake); }

  private:
    FakeClock m_fake;
};

INSTANTIATE_TEST_SUITE_P(Clocks, ClockContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(ClockContract, SystemTimeIsAfterTheYear2019) {
    EXPECT_GE(clock().SystemTicks() / kTicksPerSecond, 1'577'836'800u + 11'644'473'600u);
}

TEST_P(ClockContract, MonotonicTimeNeverGoesBack) {
    std::uint64_t last = clock().MonotonicMilliseconds();
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t now = clock().MonotonicMilliseconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST_P(ClockContract, LocalTimeIsUtcPlusItsOffset) {
    for (const std::int64_t seconds :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{951'782'400}, std::int64_t{1'772'332'506},
          std::int64_t{1'785'000'000}, std::int64_t{4'102'444'799}}) {
        SCOPED_TRACE(seconds);
        LocalTime local;
        ASSERT_TRUE(clock().ToLocalTime(seconds, local));
        const LocalTime utc = BreakDownUtc(seconds + local.utcOffsetSeconds);
        EXPECT_EQ(local.year, utc.year);
        EXPECT_EQ(local.month, utc.month);
        EXPECT_EQ(local.day, utc.day);
        EXPECT_EQ(local.hour, utc.hour);
        EXPECT_EQ(local.minute, utc.minute);
        EXPECT_EQ(local.second, utc.second);
        EXPECT_EQ(local.weekday, utc.weekday);
        EXPECT_EQ(local.yearDay, utc.yearDay);
    }
}

TEST_P(ClockContract, LocalTimeFailureLeavesTheOutput) {
    LocalTime local;
    local.year = 7;
    EXPECT_FALSE(clock().ToLocalTime(std::numeric_limits<std::int64_t>::max() / 2, local));
    EXPECT_FALSE(clock().ToLocalTime(std::numeric_limits<std::int64_t>::min() / 2, local));
    EXPECT_EQ(local.year, 7);
}

TEST_P(ClockContract, StandardZoneIsAnOffsetOfLocalTime) {
    const TimeZone zone = clock().StandardZone();
    EXPECT_FALSE(zone.name.empty());
    EXPECT_LE(std::abs(zone.utcOffsetSeconds), 26 * 3600);
    EXPECT_EQ(zone.utcOffsetSeconds, clock().StandardZone().utcOffsetSeconds);
}

TEST(Clock, SlotFallsBackToTheSystem) {
    FakeClock fake;
    EXPECT_EQ(SetClock(&fake), nullptr);
    EXPECT_EQ(&CurrentClock(), &fake);
    fake.SetUnixSeconds(1'772'332'506);
    EXPECT_EQ(UnixSeconds(), 1'772'332'506);
    EXPECT_EQ(SystemMilliseconds(), (1'772'332'506u + 11'644'473'600u) * 1000);
    fake.AdvanceMilliseconds(1999);
    EXPECT_EQ(UnixSeconds(), 1'772'332'507);
    EXPECT_EQ(SystemMilliseconds(), (1'772'332'506u + 11'644'473'600u) * 1000 + 1999);
    EXPECT_EQ(fake.MonotonicMilliseconds(), 1999u);
    EXPECT_EQ(SetClock(nullptr), &fake);
    EXPECT_EQ(&CurrentClock(), &BackendClock());
}

TEST(Clock, FakeHasAnOffsetAndCanFail) {
    FakeClock fake;
    fake.SetUtcOffset(-3600);
    LocalTime local;
    EXPECT_TRUE(fake.ToLocalTime(0, local));
    EXPECT_EQ(local.year, 1969);
    EXPECT_EQ(local.hour, 23);
    EXPECT_EQ(local.utcOffsetSeconds, -3600);
    fake.SetDaylightSaving(3600);
    fake.SetZoneName("XYZ");
    EXPECT_EQ(fake.StandardZone().utcOffsetSeconds, -7200);
    EXPECT_EQ(fake.StandardZone().name, "XYZ");
    fake.FailLocalTime(true);
    EXPECT_FALSE(fake.ToLocalTime(0, local));
}

// A change of the zone takes effect at once: nothing is remembered between calls.
TEST(Clock, SystemClockFollowsTheZone) {
    const char* before = std::getenv("TZ");
    const std::string kept = before ? before : "";
    const auto offsetIn = [](const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
        LocalTime local;
        EXPECT_TRUE(BackendClock().ToLocalTime(1'785'000'000, local));
        return local.utcOffsetSeconds;
    };
    EXPECT_EQ(offsetIn("UTC0"), 0);
    EXPECT_EQ(offsetIn("ABC-5:30"), 19'800);
    EXPECT_EQ(offsetIn("CET-1CEST,M3.5.0,M10.5.0/3"), 7200);

    struct Row {
        const char* zone;
        const char* name;
        int offset;
    };
    const Row rows[] = {
        {"UTC0", "UTC", 0},
        {"ABC-5:30", "ABC", 19'800},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "CET", 3600},  // on either side of the change the same
        {"CET-1CEST,M10.5.0,M3.5.0/3", "CET", 3600},
        {"EST5EDT,M3.2.0,M11.1.0", "EST", -18'000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.zone);
        setenv("TZ", row.zone, 1);
        tzset();
        const TimeZone zone = BackendClock().StandardZone();
        EXPECT_EQ(zone.name, row.name);
        EXPECT_EQ(zone.utcOffsetSeconds, row.offset);
    }
    before ? setenv("TZ", kept.c_str(), 1) : unsetenv("TZ");
    tzset();
}

}  // namespace
}  // namespace brindle
