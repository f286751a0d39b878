// Schedules: arithmetic over days, months and changes of the zone's offset, and the trigger on them.
#include "host/schedule.h"

#include <brindle/framework/file_time.h>
#include <brindle/framework/local_time.h>
#include <brindle/platform/clock.h>
#include <gtest/gtest.h>

#include "brindle/platform/service.h"
#include "host/schedule_trigger.h"
#include "host/start_event.h"
#include "host/virtual_clock.h"

namespace brindle::host {
namespace {

// A clock that stands still in a zone that puts its clocks one hour forward at a moment.
class ZoneClock final : public Clock {
  public:
    std::int64_t now = 0;
    std::int64_t change = INT64_MAX;
    int before = 3600;
    int after = 7200;
    bool fails = false;

    std::uint64_t SystemTicks() override {
        return static_cast<std::uint64_t>(now + kUnixEpochSeconds) * kTicksPerSecond + 9'990'000;
    }
    std::uint64_t MonotonicMilliseconds() override { return 0; }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override {
        if (fails) return false;
        const int offset = unixSeconds < change ? before : after;
        out = BreakDownUtc(unixSeconds + offset);
        out.utcOffsetSeconds = offset;
        return true;
    }
    TimeZone StandardZone() override { return {"XYZ", before}; }
};

Schedule MakeSchedule(int every, const char* at, const char* days) {
    Schedule schedule;
    schedule.every = every;
    EXPECT_EQ(schedule.at.Parse(at), "");
    EXPECT_EQ(schedule.days.Parse(days), "");
    return schedule;
}

TEST(Schedule, NextTimes) {
    struct Row {
        const char* label;
        const char* now;
        int every;
        const char* at;
        const char* days;
        int seconds;
    };
    // 2024-01-01 is a Monday.
    const Row rows[] = {
        {"nothing", "2024-01-01 00:00:00", 0, "", "", 0},
        {"later today", "2024-01-01 05:59:50", 0, "06:00", "", 10},
        {"now is tomorrow", "2024-01-01 06:00:00", 0, "06:00:00", "", 86400},
        {"just missed", "2024-01-01 06:00:01", 0, "06:00:00", "", 86399},
        {"over midnight", "2024-01-01 23:59:59", 0, "00:00:00", "", 1},
        {"over the end of February", "2024-02-29 12:00:00", 0, "11:00:00", "", 82800},
        {"over the end of the year", "2024-12-31 23:00:00", 0, "01:00:00", "", 7200},
        {"Friday evening to Monday", "2024-01-05 20:00:00", 0, "06:00:00", "Mon-Fri", 2 * 86400 + 36000},
        {"same weekday next week", "2024-01-01 07:00:00", 0, "06:00:00", "Mon", 7 * 86400 - 3600},
        {"same weekday today", "2024-01-01 05:00:00", 0, "06:00:00", "Mon", 3600},
        {"every ten seconds", "2024-01-01 00:00:07", 10, "", "", 3},
        {"every ten seconds, just fired", "2024-01-01 00:00:10", 10, "", "", 10},
        {"every minute, but only on Tuesdays", "2024-01-01 23:58:30", 60, "", "Tue", 90},
        {"every minute, the day is over", "2024-01-01 23:59:30", 60, "", "Mon", 6 * 86400 + 30},
        {"the time of day wins", "2024-01-01 05:59:50", 3, "06:00:00", "", 10},
    };
    std::int64_t start = 0;
    ASSERT_TRUE(ParseMoment("2024-01-01 00:00:00", start));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::int64_t now = 0;
        ASSERT_TRUE(ParseMoment(row.now, now));
        VirtualClock clock(now);
        const ScopedService<Clock> installed(SetClock, clock);
        EXPECT_EQ(MakeSchedule(row.every, row.at, row.days).SecondsToNext(start), row.seconds);
    }
}

TEST(Schedule, KeepsTheLocalHourWhenTheZoneChanges) {
    ZoneClock clock;
    const ScopedService<Clock> installed(SetClock, clock);
    clock.now = 1'711'789'200;     // 2024-03-30 10:00:00 at +1
    clock.change = 1'711'846'800;  // 2024-03-31 01:00:00 UTC, clocks go forward
    const Schedule schedule = MakeSchedule(0, "10:00:00", "");
    EXPECT_EQ(schedule.SecondsToNext(0), 23 * 3600);
    clock.before = 7200;
    clock.after = 3600;
    clock.now = clock.change - 9 * 3600 - 7200;  // 16:00 at +2, the day before; clocks go back
    EXPECT_EQ(MakeSchedule(0, "16:00:00", "").SecondsToNext(0), 25 * 3600);
}

TEST(Schedule, AsksAgainTomorrowWhenLocalTimeIsUnknown) {
    ZoneClock clock;
    clock.fails = true;
    const ScopedService<Clock> installed(SetClock, clock);
    EXPECT_EQ(MakeSchedule(0, "10:00:00", "").SecondsToNext(0), 86400);
    EXPECT_EQ(MakeSchedule(5, "", "").SecondsToNext(0), 86400);
}

TEST(Schedule, AClockThatWentBackBeginsThePeriodAgain) {
    VirtualClock clock(1000);
    const ScopedService<Clock> installed(SetClock, clock);
    EXPECT_EQ(MakeSchedule(60, "", "").SecondsToNext(5000), 60);
}

TEST(TimeOfDay, ReadsAndWrites) {
    struct Row {
        const char* text;
        const char* written;  // null: cannot be read
    };
    const Row rows[] = {{"", ""},           {"08:30", "08:30:00"},    {" 23:59:59 ", "23:59:59"},
                        {"24:00", nullptr}, {"8:30", nullptr},        {"08:60", nullptr},
                        {"08", nullptr},    {"08:30:00:00", nullptr}, {"-1:00", nullptr},
                        {"ab:cd", nullptr}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        TimeOfDay time;
        EXPECT_EQ(time.Parse(row.text).empty(), row.written != nullptr);
        EXPECT_EQ(time.Text(), row.written ? row.written : "");
    }
}

TEST(Weekdays, ReadsAndWrites) {
    struct Row {
        const char* text;
        const char* written;  // null: cannot be read
    };
    const Row rows[] = {{"", ""},
                        {"mon", "Mon"},
                        {"Sun,Mon", "Mon,Sun"},
                        {"Fri-Mon", "Mon,Fri,Sat,Sun"},
                        {"Mon-Fri", "Mon,Tue,Wed,Thu,Fri"},
                        {"Monday", nullptr},
                        {"Mon-", nullptr},
                        {",", nullptr}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        Weekdays days;
        EXPECT_EQ(days.Parse(row.text).empty(), row.written != nullptr);
        EXPECT_EQ(days.Text(), row.written ? row.written : "");
    }
}

TEST(ScheduleTrigger, FiresOnceAtTheStartAndNeverEnds) {
    VirtualClock clock(VirtualClock::kDefaultStart);
    const ScopedService<Clock> installed(SetClock, clock);
    ScheduleTrigger trigger;
    for (const Attribute& attribute : trigger.Attributes())
        if (attribute.name == "Every") {
            EXPECT_EQ(attribute.parse("10"), "");
        }
    const CCommandEvent* other = new CPollEvent;
    EXPECT_EQ(trigger.Test(other), CCommandTrigger::kNotConcerned);
    CCommandEvent* start = new StartEvent;
    EXPECT_EQ(trigger.Test(start), CCommandTrigger::kFired);
    EXPECT_EQ(trigger.Test(start), CCommandTrigger::kNotConcerned) << "it runs already";
    EXPECT_TRUE(trigger.Retest(start));
    clock.MoveTo(10'300);
    EXPECT_EQ(trigger.GetNextTime(), 10) << "counted from whole seconds: a late timer does not add up";
    clock.MoveTo(13'000);
    EXPECT_EQ(trigger.GetNextTime(), 7);
    EXPECT_TRUE(trigger.Retest(start)) << "it goes on";
    CCommandTrigger* copy = trigger.Replicate();
    EXPECT_FALSE(copy->Retest(start)) << "not armed";
    EXPECT_EQ(copy->Test(start), CCommandTrigger::kFired) << "a copy has not begun";
    trigger.Init();
    EXPECT_EQ(trigger.Test(start), CCommandTrigger::kFired);
    EXPECT_EQ(trigger.GetText(1), "Time Based Trigger");
    CCommandEvent* replica = start->Replicate();
    EXPECT_TRUE(dynamic_cast<StartEvent*>(replica));
    replica->Release();
    delete copy;
    start->Release();
    other->Release();
}

TEST(ScheduleTrigger, ConflictsAreTold) {
    ScheduleTrigger trigger;
    ASSERT_EQ(trigger.Conflicts().size(), 1U);
    EXPECT_NE(trigger.Conflicts()[0].find("never fires"), std::string::npos);
    for (const Attribute& attribute : trigger.Attributes()) {
        if (attribute.name == "Every") attribute.parse("10");
        if (attribute.name == "At") attribute.parse("10:00");
    }
    ASSERT_EQ(trigger.Conflicts().size(), 1U);
    EXPECT_NE(trigger.Conflicts()[0].find("no effect"), std::string::npos);
}

}  // namespace
}  // namespace brindle::host
