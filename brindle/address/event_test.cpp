// The event family: counting, fields, replication and copies.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <type_traits>

#include "brindle/address/events.h"
#include "brindle/framework/number_text.h"

namespace {

static_assert(!std::is_destructible_v<CCommandEvent>, "events end by Release only");
static_assert(!std::is_destructible_v<CStateEvent> && !std::is_destructible_v<CStateChangedEvent> &&
              !std::is_destructible_v<CPollEvent>);
static_assert(!std::is_default_constructible_v<CStateEvent>);
static_assert(!std::is_default_constructible_v<CStateChangedEvent>);

class CountsDeaths : public CCommandEvent {
  public:
    explicit CountsDeaths(int& deaths) : m_deaths(deaths) {}

  protected:
    ~CountsDeaths() override { ++m_deaths; }

  private:
    int& m_deaths;
};

TEST(Event, CountsReferencesAndDiesWithTheLast) {
    int deaths = 0;
    const CCommandEvent* const event = new CountsDeaths(deaths);
    EXPECT_EQ(event->AddRef(), 2);
    EXPECT_EQ(event->AddRef(), 3);
    EXPECT_EQ(event->Release(), 2);
    EXPECT_EQ(event->Release(), 1);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(event->Release(), 0);
    EXPECT_EQ(deaths, 1);
}

TEST(Event, FreshEventDiesAtOnce) {
    int deaths = 0;
    EXPECT_EQ((new CountsDeaths(deaths))->Release(), 0);
    EXPECT_EQ(deaths, 1);
}

TEST(Event, BaseHasATypeAndNoReplica) {
    auto* const plain = new CCommandEvent;
    EXPECT_EQ(plain->type(), -1);
    EXPECT_EQ(plain->Replicate(), nullptr);
    plain->setType(9);
    EXPECT_EQ(plain->type(), 9);
    plain->Release();
    auto* const typed = new CCommandEvent(4);
    EXPECT_EQ(typed->type(), 4);
    EXPECT_EQ(typed->Release(), 0);
}

// Everything a state event holds, as one text.
std::string Shown(const CStateEvent& event) {
    CAddressOv address = event.GetAddress();
    std::string out = std::to_string(event.type()) + " " + address.GetString().str();
    if (address.IsDeferred()) out += "?";
    out += event.IsMasked() ? " masked " : " open ";
    out += std::to_string(event.GetState());
    for (const CStringA& text :
         {event.GetStateDueToHeader(), event.GetStateDueToCauseHeader(), event.GetStateDueToString(),
          event.GetUserString(), event.GetObjStringK(), event.GetObjStringV()})
        out += " " + text.str();
    if (const auto* const button = dynamic_cast<const CButtonPressEvent*>(&event))
        out += button->toggleState() ? " toggled" : " plain";
    if (const auto* const meter = dynamic_cast<const CMeterValueChangeEvent*>(&event))
        out += " value " + brindle::PrintDouble(meter->GetValue(), 'f', 6);
    if (const auto* const meter = dynamic_cast<const CMeterZoneChangeEvent*>(&event))
        out += " zone " + std::to_string(meter->GetZone());
    return out;
}

template <class Event, class... Extra>
CStateEvent* New(Extra... extra) {
    return new Event(extra..., CAddressOv("12:?:4"), true, 7, "h", "c", "s", "u", "k", "v");
}

CStateEvent* NewToggled() {
    auto* const event = new CButtonPressEvent(CAddressOv("12:?:4"), true, 7, "h", "c", "s", "u", "k", "v");
    event->setToggleState(true);
    return event;
}

struct Kind {
    const char* label;
    std::function<CStateEvent*()> make;
    const char* shown;
};

const Kind kKinds[] = {
    {"state", [] { return New<CStateEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v"},
    {"button", [] { return New<CButtonPressEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v plain"},
    {"button, toggled", NewToggled, "-1 0012:00:04? masked 7 h c s u k v toggled"},
    {"caption", [] { return New<CCaptionChangedEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v"},
    {"checked", [] { return New<CCheckBoxCheckedPressEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v"},
    {"unchecked", [] { return New<CCheckBoxUnCheckedPressEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v"},
    {"meter value", [] { return New<CMeterValueChangeEvent>(2.5F); },
     "-1 0012:00:04? masked 7 h c s u k v value 2.500000"},
    {"meter zone", [] { return New<CMeterZoneChangeEvent>(3); },
     "-1 0012:00:04? masked 7 h c s u k v zone 3"},
    {"poll", [] { return New<CPollEvent>(); }, "-1 0012:00:04? masked 7 h c s u k v"},
    {"state changed", [] { return New<CStateChangedEvent>(); }, "1 0012:00:04? masked 7 h c s u k v"},
};

TEST(StateEvents, FieldsFillInOrder) {
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.label);
        CStateEvent* const event = kind.make();
        EXPECT_EQ(Shown(*event), kind.shown);
        EXPECT_EQ(event->Release(), 0) << "born with count 1";
    }
}

TEST(StateEvents, ReplicaIsOfTheSameClassWithItsOwnCount) {
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.label);
        CStateEvent* const event = kind.make();
        event->AddRef();
        CCommandEvent* const replica = event->Replicate();
        ASSERT_NE(replica, nullptr);
        EXPECT_EQ(typeid(*replica), typeid(*event));
        EXPECT_EQ(Shown(dynamic_cast<const CStateEvent&>(*replica)), kind.shown);
        EXPECT_EQ(replica->Release(), 0) << "born with count 1";
        EXPECT_EQ(event->Release(), 1);
        event->Release();
    }
}

TEST(StateEvents, KeptATypeSetLaterIsNotReplicated) {
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.label);
        CStateEvent* const event = kind.make();
        const int own = event->type();
        event->setType(5);
        EXPECT_EQ(event->type(), 5);
        CCommandEvent* const replica = event->Replicate();
        EXPECT_EQ(replica->type(), own);
        replica->Release();
        event->Release();
    }
    EXPECT_EQ(CStateChangedEvent::staticType(), 1);
}

TEST(StateEvents, CopiesCarryEveryFieldTheCountIncluded) {
    auto* const source = static_cast<CStateChangedEvent*>(New<CStateChangedEvent>());
    source->setType(5);
    source->AddRef();
    auto* const copy = new CStateChangedEvent(*source);
    EXPECT_EQ(Shown(*copy), "5 0012:00:04? masked 7 h c s u k v");
    EXPECT_EQ(copy->Release(), 1) << "the source's count of 2 was copied";
    EXPECT_EQ(copy->Release(), 0);

    auto* const assigned = new CStateChangedEvent(CAddressOv(), false, 0, "", "", "", "", "", "");
    *assigned = *source;
    EXPECT_EQ(Shown(*assigned), "5 0012:00:04? masked 7 h c s u k v");
    EXPECT_EQ(assigned->Release(), 1);
    EXPECT_EQ(assigned->Release(), 0);
    source->Release();
    source->Release();
}

TEST(StateEvents, CopiesOfTheBaseCarryCountAndType) {
    auto* const source = new CCommandEvent(4);
    source->AddRef();
    auto* const copy = new CCommandEvent(*source);
    EXPECT_EQ(copy->type(), 4);
    EXPECT_EQ(copy->Release(), 1);
    EXPECT_EQ(copy->Release(), 0);
    source->Release();
    source->Release();
}

TEST(StateEvents, TheAddressIsCutOnItsWayIn) {
    auto* const event = new CStateEvent(CAddressOv(0x12345u, 0x1FFu, 2u), false, 0, "", "", "", "", "", "");
    EXPECT_EQ(event->GetAddress(), CAddressOv(0x2345u, 0xFFu, 2u));
    event->Release();
}

TEST(StateEvents, GettersReturnCopies) {
    CStateEvent* const event = New<CStateEvent>();
    CStringA text = event->GetUserString();
    text += "changed";
    EXPECT_EQ(event->GetUserString(), "u");
    event->Release();
}

TEST(StateEvents, TheToggleStateCanBeSetBothWays) {
    auto* const button = static_cast<CButtonPressEvent*>(NewToggled());
    EXPECT_TRUE(button->toggleState());
    button->setToggleState(false);
    EXPECT_FALSE(button->toggleState());
    button->Release();
}

class OpenStateEvent : public CStateEvent {};
class OpenStateChangedEvent : public CStateChangedEvent {};

TEST(StateEvents, DefaultConstructed) {
    struct Row {
        const char* label;
        CStateEvent* event;
        const char* shown;
    };
    for (const Row& row : {Row{"state", new OpenStateEvent, "-1 0000:00:00? open 0      "},
                           Row{"state changed", new OpenStateChangedEvent, "1 0000:00:00? open 0      "},
                           Row{"poll", new CPollEvent, "-1 0000:00:00? open 0      "}}) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Shown(*row.event), row.shown);
        EXPECT_TRUE(row.event->GetAddress().IsNetDeferred() && row.event->GetAddress().IsUnitDeferred() &&
                    row.event->GetAddress().IsPortDeferred());
        EXPECT_EQ(row.event->Release(), 0);
    }
}

}  // namespace
