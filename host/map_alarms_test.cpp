// Alarms: when they begin, begin anew, end and go.
#include "host/map_alarms.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace brindle::host {
namespace {

// "DEVICE:STATE", with "-" behind an ended and "!" behind an unacknowledged one.
std::string Shown(const MapAlarms& alarms) {
    std::string text;
    for (const MapAlarm& entry : alarms.Entries())
        text += (text.empty() ? "" : " ") + std::to_string(entry.device) + ":" + std::to_string(entry.state) +
                (entry.active ? "" : "-") + (entry.acknowledged ? "" : "!");
    return text;
}

TEST(MapAlarms, LiveFromReportsAndAcknowledgements) {
    struct Row {
        const char* label;
        const char*
            steps;  // "DEVICE=STATE", "DEVICE=m" masked with state 3, "a1" acknowledges device 1, "a" all
        const char* shown;
    };
    const Row rows[] = {
        {"nothing", "", ""},
        {"below the limit", "1=1 1=0 1=-5", ""},
        {"an alarm", "1=2", "1:2!"},
        {"the newest first", "1=2 2=3", "2:3! 1:2!"},
        {"the same again", "1=2 2=3 1=2", "2:3! 1:2!"},
        {"a worse one begins anew", "1=2 2=3 a 1=3", "1:3! 2:3"},
        {"a better one goes on", "1=3 a 1=2", "1:2"},
        {"acknowledged", "1=3 a1", "1:3"},
        {"another is acknowledged", "1=3 2=3 a2", "2:3 1:3!"},
        {"ended and not acknowledged stays", "1=3 1=1", "1:3-!"},
        {"ended, then acknowledged goes", "1=3 1=1 a1", ""},
        {"acknowledged, then ended goes", "1=3 a1 1=1", ""},
        {"ended and begun again", "1=3 2=2 1=1 1=2", "1:2! 2:2!"},
        {"masking ends and acknowledges", "1=3 1=m", ""},
        {"masking one that has ended", "1=3 1=1 1=m", ""},
        {"masked is none", "1=m", ""},
        {"all are acknowledged, those that ended go", "1=3 2=3 3=2 2=0 a", "3:2 1:3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        MapAlarms alarms(2);
        std::istringstream steps(row.steps);
        for (std::string step; steps >> step;) {
            if (step == "a") {
                EXPECT_TRUE(alarms.AcknowledgeAll());
            } else if (step[0] == 'a') {
                EXPECT_TRUE(alarms.Acknowledge(static_cast<std::uint32_t>(std::stoul(step.substr(1)))));
            } else {
                const bool masked = step[2] == 'm';
                alarms.Take(static_cast<std::uint32_t>(step[0] - '0'), masked ? 3 : std::stoi(step.substr(2)),
                            masked);
            }
        }
        EXPECT_EQ(Shown(alarms), row.shown);
    }
}

TEST(MapAlarms, TellWhatChanged) {
    using Change = MapAlarms::Change;
    MapAlarms alarms(3);
    EXPECT_EQ(alarms.Take(1, 2, false), Change::kNone);
    EXPECT_EQ(alarms.Take(1, 3, false), Change::kBegan);
    EXPECT_EQ(alarms.Take(1, 3, false), Change::kNone);
    EXPECT_EQ(alarms.Take(1, 5, false), Change::kBegan);
    EXPECT_EQ(alarms.Take(1, 4, false), Change::kChanged);
    EXPECT_TRUE(alarms.IsUnacknowledged(1));
    EXPECT_FALSE(alarms.IsUnacknowledged(2));
    EXPECT_FALSE(alarms.Acknowledge(2));
    EXPECT_TRUE(alarms.Acknowledge(1));
    EXPECT_FALSE(alarms.Acknowledge(1));
    EXPECT_FALSE(alarms.AcknowledgeAll());
    EXPECT_EQ(alarms.Take(1, 0, false), Change::kChanged);
    EXPECT_EQ(alarms.Take(1, 0, false), Change::kNone);
    EXPECT_EQ(alarms.Take(1, 3, true), Change::kNone);
}

}  // namespace
}  // namespace brindle::host
