// Timer passes over 1,000 behaviour lists of 100 repeats each: with nothing due, beside locking and visiting every
// list; with 1% due (one entry of every list), beside a scan of a plain array of due times plus the calls.
#include <benchmark/benchmark.h>

#include <memory>
#include <mutex>
#include <vector>

#include "brindle/address/state_changed_event.h"
#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/platform/clock.h"

namespace {

constexpr std::size_t kLists = 1000;
constexpr std::size_t kRepeats = 100;
constexpr std::uint64_t kStart = 13'000'000'000'000;

class StillClock final : public brindle::Clock {
  public:
    std::uint64_t SystemTicks() override { return now * 10'000; }
    std::uint64_t MonotonicMilliseconds() override { return now; }
    bool ToLocalTime(std::int64_t, brindle::LocalTime&) override { return false; }
    brindle::TimeZone StandardZone() override { return {}; }
    std::uint64_t now = kStart;
};

class OnceTrigger final : public CCommandTrigger {
  public:
    CStringA GetText(int) override { return "Once"; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent*) override { return kFired; }
    void Reserved23() override {}
};

class CountAction final : public CCommandAction {
  public:
    explicit CountAction(std::uint64_t& runs) : m_runs(runs) {}
    CStringA GetText(int) override { return "Count"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override { ++m_runs; }
    bool IsRepeat() const override { return true; }
    int GetRepeatTime() const override { return static_cast<int>(kRepeats); }  // milliseconds

  private:
    std::uint64_t& m_runs;
};

struct Station {
    Station() {
        brindle::SetClock(&clock);
        event = new CStateChangedEvent(CAddressOv(1, 2, 3), false, 1, "", "", "", "", "", "");
        for (std::size_t i = 0; i < kLists; ++i)
            lists.push_back(std::make_unique<CCommandBehaviourList>(CCommandTrigger::eHostSystem));
        // One entry of every list is due at every millisecond.
        for (std::size_t phase = 0; phase < kRepeats; ++phase) {
            for (auto& list : lists) list->AddRepeatAction(&trigger, event, &action, nullptr);
            ++clock.now;
        }
        for (std::size_t i = 0; i < kLists * kRepeats; ++i)
            plainDue.push_back(kStart + kRepeats + i % kRepeats);
        plainAction.assign(plainDue.size(), &action);
        clock.now = kStart + kRepeats - 1;
        plainNow = clock.now;
    }

    StillClock clock;
    std::uint64_t runs = 0;
    OnceTrigger trigger;
    CountAction action{runs};
    CCommandEvent* event = nullptr;
    std::vector<std::unique_ptr<CCommandBehaviourList>> lists;
    std::vector<std::uint64_t> plainDue;
    std::vector<CCommandAction*> plainAction;
    std::uint64_t plainNow = 0;
};

Station& TheStation() {
    static Station& station = *new Station;
    return station;
}

void NothingDue(benchmark::State& state) {
    const Station& station = TheStation();
    const std::uint64_t before = station.runs;
    for (auto _ : state) CCommandBehaviourList::CallOnTimer();
    if (station.runs != before) state.SkipWithError("something ran");
}

void NothingDueByVisiting(benchmark::State& state) {
    Station& station = TheStation();
    std::vector<std::recursive_mutex> locks(kLists);
    for (auto _ : state) {
        std::size_t due = 0;
        for (std::size_t list = 0; list < kLists; ++list) {
            const std::lock_guard guard(locks[list]);
            for (std::size_t i = 0; i < kRepeats; ++i) due += station.plainDue[list * kRepeats + i] <= kStart;
        }
        benchmark::DoNotOptimize(due);
    }
}

void OnePercentDue(benchmark::State& state) {
    Station& station = TheStation();
    const std::uint64_t before = station.runs;
    for (auto _ : state) {
        ++station.clock.now;
        CCommandBehaviourList::CallOnTimer();
    }
    if (station.runs - before != static_cast<std::uint64_t>(state.iterations()) * kLists)
        state.SkipWithError("not every due entry ran once");
}

void OnePercentDuePlainArray(benchmark::State& state) {
    Station& station = TheStation();
    for (auto _ : state) {
        const std::uint64_t now = ++station.plainNow;
        for (std::size_t i = 0; i < station.plainDue.size(); ++i) {
            if (station.plainDue[i] > now) continue;
            station.plainDue[i] = now + kRepeats;
            station.plainAction[i]->Fire(station.event);
        }
    }
}

BENCHMARK(NothingDue);
BENCHMARK(NothingDueByVisiting);
BENCHMARK(OnePercentDue);
BENCHMARK(OnePercentDuePlainArray);

}  // namespace
