// UI timers in Qt's loop: the contract on a clock that stands still, and real time.
#include "brindle/platform/qt/ui_timer_qt.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>
#include <atomic>
#include <memory>

#include "brindle/platform/clock.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/qt/qt_services.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "brindle/platform/service.h"
#include "brindle/platform/timer_queue.h"
#include "testing/ui_timer_contract.h"

namespace brindle {
namespace {

constexpr int kLongest = 60'000;  // milliseconds for anything to happen

class QtWorld final : public testing::TimerWorld {
  public:
    QtWorld() { testing::NeedQtApplication(); }
    UiTimer& Service() override { return QtUiTimer(); }
    int Advance(std::uint64_t milliseconds) override {
        m_clock.AdvanceMilliseconds(milliseconds);
        RearmQtTimers();
        const QDeadlineTimer deadline(kLongest);
        do {
            QCoreApplication::processEvents();
        } while (IsDue() && !deadline.hasExpired());
        EXPECT_FALSE(IsDue());
        return 0;
    }

  private:
    bool IsDue() {
        const TimerQueue* timers = ThreadTimers();
        const auto next = timers ? timers->NextDue() : std::nullopt;
        return next && *next <= m_clock.MonotonicMilliseconds();
    }
    FakeClock m_clock;
    ScopedService<Clock> m_installed{&SetClock, m_clock};
};

std::unique_ptr<testing::TimerWorld> MakeQtWorld() {
    return std::make_unique<QtWorld>();
}

// Runs the loop until that many ticks were written down, each with a blank.
bool RunUntil(const std::string& ticks, std::size_t length) {
    const QDeadlineTimer deadline(kLongest);
    QObject waker;
    waker.startTimer(1000);  // looks at the deadline when nothing else happens
    while (ticks.size() < length && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return ticks.size() >= length;
}

TEST(QtUiTimer, TicksByItselfInRealTime) {
    testing::NeedQtApplication();
    std::string ticks;
    testing::TickTarget target(ticks);
    const std::uint64_t begin = CurrentClock().MonotonicMilliseconds();
    ASSERT_TRUE(QtUiTimer().Start(target, 7, 20));
    EXPECT_TRUE(RunUntil(ticks, 5)) << "three ticks";
    EXPECT_GE(CurrentClock().MonotonicMilliseconds() - begin, 60u);
    QtUiTimer().StopAll(target);
}

TEST(QtUiTimer, TicksInALoopInsideATick) {
    testing::NeedQtApplication();
    std::string ticks;
    testing::TickTarget target(ticks);
    bool inside = false, nested = false;
    target.also = [&](std::uint64_t) {
        if (std::exchange(inside, true)) return;
        nested = RunUntil(ticks, 5);
    };
    ASSERT_TRUE(QtUiTimer().Start(target, 1, 1));
    EXPECT_TRUE(RunUntil(ticks, 5));
    EXPECT_TRUE(nested) << "as under a modal dialog";
    QtUiTimer().StopAll(target);
}

TEST(QtUiTimer, EverythingMayEndInALoopInsideATick) {
    testing::NeedQtApplication();
    std::string ticks;
    testing::TickTarget target(ticks);
    target.also = [&](std::uint64_t id) {
        if (id == 1) {
            RunUntil(ticks, 3);
        } else {
            QtUiTimer().StopAll(target);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    };
    ASSERT_TRUE(QtUiTimer().Start(target, 1, 1));
    ASSERT_TRUE(QtUiTimer().Start(target, 2, 2));
    EXPECT_TRUE(RunUntil(ticks, 3));
    EXPECT_EQ(ThreadTimers(), nullptr);
    const std::string after = ticks;
    ASSERT_TRUE(QtUiTimer().Start(target, 3, 1)) << "and another begins";
    EXPECT_TRUE(RunUntil(ticks, after.size() + 2));
    EXPECT_EQ(ThreadTimers(), nullptr);
}

TEST(QtUiTimer, LeavesNothingInTheLoopWhenNothingTicks) {
    testing::NeedQtApplication();
    std::string ticks;
    testing::TickTarget target(ticks);
    ASSERT_TRUE(QtUiTimer().Start(target, 1, 1));
    QtUiTimer().Stop(target, 1);
    ASSERT_TRUE(QtUiTimer().Start(target, 1, 3'000'000'000)) << "longer than a timer of Qt's";
    QtUiTimer().Stop(target, 1);
    EXPECT_EQ(ThreadTimers(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    EXPECT_EQ(ticks, "");
}

TEST(QtUiTimer, AThreadsTimersTickInItsOwnLoop) {
    testing::NeedQtApplication();
    std::string ticks;
    std::atomic<bool> enough{
        false};  // hands over what the thread wrote, also for those who do not see into Qt
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        QEventLoop loop;
        testing::TickTarget target(ticks);
        target.also = [&](std::uint64_t) {
            if (ticks.size() < 3) return;
            enough = QThread::currentThread() != QCoreApplication::instance()->thread();
            QtUiTimer().StopAll(target);
            loop.quit();
        };
        QtUiTimer().Start(target, 1, 1);
        loop.exec();
    }));
    thread->start();
    ASSERT_TRUE(thread->wait(QDeadlineTimer(kLongest)));
    EXPECT_TRUE(enough);
}

TEST(QtUiTimer, IsInstalledWithTheOtherServices) {
    InstallQtServices();
    EXPECT_EQ(&CurrentUiTimer(), &QtUiTimer());
    SetUiTimer(nullptr);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Qt, UiTimerContract, ::testing::Values(&MakeQtWorld));
}

}  // namespace brindle
