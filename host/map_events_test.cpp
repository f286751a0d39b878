// Presses among the events of a recording.
#include "host/map_events.h"

#include <gtest/gtest.h>

#include <sstream>

namespace brindle::host {
namespace {

class StandingPace final : public RunPace {
  public:
    std::uint64_t Elapsed() override { return now; }
    void WaitUntil(std::uint64_t elapsed) override { now = elapsed; }
    bool IsReal() const noexcept override { return true; }
    std::uint64_t now = 0;
};

// The user of the next event, "!" for a problem, "-" for nothing yet.
std::string Next(MapEvents& events) {
    const auto item = events.Next({});
    if (!item) return "-";
    return item->what == EventItem::kProblem ? "!" : item->event.user.str();
}

TEST(MapEvents, ARecordedEventWaitsForItsTimeAndAPressDoesNot) {
    std::istringstream input(R"({"t":0,"kind":"button","object":"a","user":"first"}
{"t":100,"kind":"button","object":"a","user":"second"}
no event
{"kind":"button","object":"a","user":"without a time"}
{"t":200,"kind":"end"}
{"t":300,"kind":"button","object":"a","user":"behind the end"}
)");
    EventReader reader(input, "recording");
    StandingPace pace;
    MapEvents events(reader, pace);
    EXPECT_EQ(events.NextDue(), std::nullopt);
    EXPECT_EQ(Next(events), "first");
    EXPECT_EQ(Next(events), "-");
    EXPECT_EQ(events.NextDue(), 100u);
    EventLine press;
    press.user = "press";
    int woken = 0;
    events.SetWake([&woken] { ++woken; });
    events.Add(press);
    EXPECT_EQ(woken, 1);
    EXPECT_EQ(Next(events), "press");
    EXPECT_EQ(Next(events), "-");
    pace.now = 99;
    EXPECT_EQ(Next(events), "-");
    pace.now = 100;
    EXPECT_EQ(Next(events), "second");
    EXPECT_EQ(Next(events), "!");
    EXPECT_EQ(Next(events), "without a time");
    EXPECT_EQ(Next(events), "-");
    pace.now = 1'000;
    EXPECT_EQ(Next(events), "-") << "the end of a recording is not the end of the map";
    EXPECT_EQ(Next(events), "-");
    EXPECT_EQ(events.NextDue(), std::nullopt);
    events.Add(press);
    EXPECT_EQ(Next(events), "press");
}

TEST(MapEvents, ARecordingThatStopsEndsNothing) {
    std::istringstream input;
    EventReader reader(input, "recording");
    StandingPace pace;
    MapEvents events(reader, pace);
    EXPECT_EQ(Next(events), "-");
    EXPECT_EQ(Next(events), "-");
    EXPECT_EQ(events.NextDue(), std::nullopt);
}

}  // namespace
}  // namespace brindle::host
