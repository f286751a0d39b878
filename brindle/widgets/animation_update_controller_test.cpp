// The animation controller on a clock that stands still.
#include "brindle/widgets/animation_update_controller.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "brindle/platform/clock.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "brindle/widgets/animation_update_target.h"
#include "testing/layout.h"

namespace {

CAnimationUpdateController& Controller() {
    return CAnimationUpdateController::GetInstance();
}

// Writes its name down at each update.
class Target final : public CAnimationUpdateTarget {
  public:
    Target(std::string& updates, char name) : m_updates(updates), m_name(name) {}
    void DoUpdate(unsigned int now, std::uint64_t& nextDue) override {
        m_updates += m_name;
        lastNow = now;
        given = nextDue;
        if (after) nextDue = brindle::SystemMilliseconds() + *after;
        if (also) also();
    }

    std::optional<std::uint64_t> after;  // the next update, from now; nothing: none
    std::function<void()> also;
    unsigned int lastNow = 0;
    std::uint64_t given = 0;

  private:
    std::string& m_updates;
    char m_name;
};

class AnimationController : public ::testing::Test {
  protected:
    // The names of those updated.
    std::string Update() {
        m_updates.clear();
        Controller().DoUpdate();
        return m_updates;
    }
    // The wait, or "never".
    static std::string Wait() {
        unsigned int wait = 0;
        return Controller().NeedsUpdate(wait) ? std::to_string(wait) : "never";
    }
    ~AnimationController() override {
        for (Target* each : {&m_a, &m_b, &m_c}) Controller().Unregister(each);
        Controller().DoUpdate();  // nothing is due any more
    }

    brindle::FakeClock m_clock;
    brindle::ScopedService<brindle::Clock> m_installed{&brindle::SetClock, m_clock};
    std::string m_updates;
    Target m_a{m_updates, 'a'}, m_b{m_updates, 'b'}, m_c{m_updates, 'c'};
};

TEST_F(AnimationController, NothingIsDueWithoutTargets) {
    unsigned int wait = 5;
    EXPECT_FALSE(Controller().NeedsUpdate(wait));
    EXPECT_EQ(Update(), "");
    EXPECT_FALSE(Controller().IsRegistered(&m_a));
    Controller().Register(nullptr);
    Controller().Unregister(&m_a);
    EXPECT_FALSE(Controller().NeedsUpdate(wait));
}

TEST_F(AnimationController, ARegisteredTargetIsDueAtOnce) {
    Controller().Register(&m_a);
    EXPECT_TRUE(Controller().IsRegistered(&m_a));
    EXPECT_FALSE(Controller().IsRegistered(&m_b));
    EXPECT_EQ(Wait(), "0");
    EXPECT_EQ(Update(), "a");
    EXPECT_EQ(m_a.lastNow, static_cast<unsigned int>(brindle::SystemMilliseconds())) << "cut to 32 bits";
    EXPECT_EQ(m_a.given, ~std::uint64_t{0});
    EXPECT_EQ(Wait(), "never") << "it asked for no other update";
    EXPECT_EQ(Update(), "");
    EXPECT_TRUE(Controller().IsRegistered(&m_a)) << "but it stays";
    Controller().Register(&m_a);
    EXPECT_EQ(Update(), "a") << "due anew";
}

TEST_F(AnimationController, TargetsAreUpdatedWhenTheyAreDue) {
    m_a.after = 30;
    m_b.after = 50;
    Controller().Register(&m_a);
    Controller().Register(&m_b);
    EXPECT_EQ(Update(), "ab") << "in the order of registration";
    EXPECT_EQ(Wait(), "30");
    m_clock.AdvanceMilliseconds(29);
    EXPECT_EQ(Wait(), "1");
    EXPECT_EQ(Update(), "");
    EXPECT_EQ(Wait(), "1");
    m_clock.AdvanceMilliseconds(1);
    EXPECT_EQ(Wait(), "0");
    EXPECT_EQ(Update(), "a");
    EXPECT_EQ(Wait(), "20");
    m_clock.AdvanceMilliseconds(500);
    EXPECT_EQ(Wait(), "0") << "long overdue";
    EXPECT_EQ(Update(), "ab");
    EXPECT_EQ(Wait(), "30");
}

TEST_F(AnimationController, RegisteringTwiceKeepsOneEntry) {
    m_a.after = 100;
    Controller().Register(&m_a);
    Controller().Register(&m_a);
    EXPECT_EQ(Update(), "a");
    Controller().Register(&m_a);
    EXPECT_EQ(Wait(), "0") << "due now, not in 100";
    EXPECT_EQ(Update(), "a");
    Controller().Unregister(&m_a);
    EXPECT_FALSE(Controller().IsRegistered(&m_a));
    m_clock.AdvanceMilliseconds(1000);
    EXPECT_EQ(Update(), "");
}

TEST_F(AnimationController, UnregisteringLeavesTheEarliestTimeAsItWas) {
    Controller().Register(&m_a);
    Controller().Unregister(&m_a);
    EXPECT_EQ(Wait(), "0");
    EXPECT_EQ(Update(), "");
    EXPECT_EQ(Wait(), "never");
}

TEST_F(AnimationController, WaitsAreCutTo32Bits) {
    m_a.after = (std::uint64_t{1} << 32) + 7;
    Controller().Register(&m_a);
    Update();
    EXPECT_EQ(Wait(), "7");
    unsigned int wait = 1;
    m_a.after.reset();
    Controller().Register(&m_a);
    Update();
    EXPECT_FALSE(Controller().NeedsUpdate(wait));
    EXPECT_EQ(wait, static_cast<unsigned int>(~std::uint64_t{0} - brindle::SystemMilliseconds()));
}

TEST_F(AnimationController, WithinAnUpdate) {
    struct Row {
        const char* label;
        std::function<void()> doing;  // in the first update of a, while b is due as well
        const char* now;
        const char* wait;
        const char* later;  // 10 ms later
    };
    auto& c = Controller();
    const std::vector<Row> rows = {
        {"nothing", [] {}, "ab", "10", "ab"},
        {"unregisters itself", [&] { c.Unregister(&m_a); }, "ab", "10", "b"},
        {"unregisters the other", [&] { c.Unregister(&m_b); }, "a", "10", "a"},
        {"unregisters both", [&] { c.Unregister(&m_a), c.Unregister(&m_b); }, "a", "never", ""},
        {"registers a third, which waits", [&] { c.Register(&m_c); }, "ab", "0", "abc"},
        {"registers itself: due at once", [&] { c.Register(&m_a); }, "ab", "0", "ab"},
        {"leaves and comes back", [&] { c.Unregister(&m_a), c.Register(&m_a); }, "ab", "0", "ba"},
        {"updates: itself is not due, the other is", [&] { c.DoUpdate(); }, "ab", "10", "ab"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_a.after = m_b.after = 10;
        c.Register(&m_a);
        c.Register(&m_b);
        m_a.also = [&] {
            m_a.also = nullptr;
            row.doing();
        };
        EXPECT_EQ(Update(), row.now);
        EXPECT_EQ(Wait(), row.wait);
        m_clock.AdvanceMilliseconds(10);
        EXPECT_EQ(Update(), row.later);
        for (Target* each : {&m_a, &m_b, &m_c}) c.Unregister(each);
        Update();
    }
}

TEST_F(AnimationController, TargetsThatAreDestroyedLeave) {
    auto dying = std::make_unique<Target>(m_updates, 'x');
    Controller().Register(&m_a);
    Controller().Register(dying.get());
    m_a.also = [&] { dying.reset(); };
    EXPECT_EQ(Update(), "a") << "in an update of another";
    m_a.also = nullptr;

    dying = std::make_unique<Target>(m_updates, 'x');
    Controller().Register(dying.get());
    const CAnimationUpdateTarget* gone = dying.get();
    dying.reset();
    EXPECT_FALSE(Controller().IsRegistered(const_cast<CAnimationUpdateTarget*>(gone)));
    EXPECT_EQ(Update(), "");
}

// Destroys itself in its own update.
class Suicidal final : public CAnimationUpdateTarget {
  public:
    void DoUpdate(unsigned int, std::uint64_t& nextDue) override {
        std::uint64_t& due = nextDue;
        delete this;
        due = 0;  // the reference outlives the target
    }
};

TEST_F(AnimationController, ATargetMayDestroyItselfInItsUpdate) {
    Controller().Register(new Suicidal);
    Controller().Register(&m_a);
    EXPECT_EQ(Update(), "a");
    EXPECT_EQ(Wait(), "never");
}

TEST_F(AnimationController, CopiesAreNotRegistered) {
    Controller().Register(&m_a);
    {
        const Target copy = m_a;
        EXPECT_FALSE(Controller().IsRegistered(const_cast<Target*>(&copy)));
    }
    EXPECT_TRUE(Controller().IsRegistered(&m_a));
}

TEST_F(AnimationController, AClockThatIsSetMovesWhatIsDue) {
    m_a.after = 1000;
    Controller().Register(&m_a);
    Update();
    m_clock.SetUnixSeconds(brindle::UnixSeconds() - 3600);
    EXPECT_EQ(Wait(), "3601000");
}

TEST(AnimationTargetLayout, VirtualOperationsStandInSlotOrder) {
    EXPECT_EQ(brindle::testing::SlotOf(&CAnimationUpdateTarget::DoUpdate), 2u) << "behind the destructor";
}

}  // namespace
