// The order of virtual operations and of fields, against the compiler's own layout.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "brindle/address/events.h"
#include "testing/layout.h"

namespace brindle {

// Where the fields of an object lie, in their declared order.
struct LayoutProbe {
    static std::vector<const void*> Fields(const CAddressOv& a) {
        return {&a, &a.m_net, &a.m_unit, &a.m_port, &a.m_netDeferred, &a.m_unitDeferred, &a.m_portDeferred};
    }
    static std::vector<const void*> Fields(const CCommandEvent& e) {
        return {&e, &e.m_references, &e.m_type};
    }
    static std::vector<const void*> Fields(const CStateEvent& e) {
        return {&e,
                &e.m_address,
                &e.m_masked,
                &e.m_state,
                &e.m_stateDueToHeader,
                &e.m_stateDueToCauseHeader,
                &e.m_stateDueToString,
                &e.m_userString,
                &e.m_objStringK,
                &e.m_objStringV};
    }
    static const void* Value(const CMeterValueChangeEvent& e) { return &e.m_value; }
    static const void* Zone(const CMeterZoneChangeEvent& e) { return &e.m_zone; }
    static const void* ToggleState(const CButtonPressEvent& e) { return &e.m_toggleState; }

    // A field's width is its size in bytes.
    static_assert(sizeof(CAddressOv::m_net) == 4 && sizeof(CAddressOv::m_unit) == 4 &&
                  sizeof(CAddressOv::m_port) == 4 && sizeof(CAddressOv::m_netDeferred) == 1);
    static_assert(sizeof(CMeterValueChangeEvent::m_value) == 4 && sizeof(CMeterZoneChangeEvent::m_zone) == 4);
};

}  // namespace brindle

namespace {

using brindle::LayoutProbe;
using brindle::testing::SlotOf;

struct Slot {
    const char* label;
    std::size_t actual;
    std::size_t expected;
};

void ExpectSlots(const std::vector<Slot>& rows) {
    for (const Slot& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
}

void ExpectRising(const std::vector<const void*>& addresses) {
    for (std::size_t i = 1; i < addresses.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_LT(addresses[i - 1], addresses[i]);
    }
}

class BehindAddress : public CAddressOv {
  public:
    virtual void Next() {}
};

class BehindStateEvent : public CStateEvent {
  public:
    virtual void Next() {}
};

class BehindEvent : public CCommandEvent {
  public:
    virtual void Next() {}
};

CStateEvent* NewEvent() {
    return new CStateEvent(CAddressOv(), false, 0, "", "", "", "", "", "");
}

TEST(AddressLayout, VirtualOperationsStandInSlotOrder) {
    using A = CAddressOv;
    ExpectSlots({
        {"GetRuntimeClass", SlotOf(&A::GetRuntimeClass), 0},
        // the destructor: 1 and 2
        {"Serialize", SlotOf(&A::Serialize), 3},
        {"AssertValid", SlotOf(&A::AssertValid), 4},
        {"Dump", SlotOf(&A::Dump), 5},
        {"SetAddress", SlotOf(static_cast<int (A::*)(const A&)>(&A::SetAddress)), 6},
        {"GetString", SlotOf(&A::GetString), 7},
        {"IsAddressSame", SlotOf(&A::IsAddressSame), 8},
        {"GetDWord", SlotOf(&A::GetDWord), 9},
        {"GetNetString", SlotOf(&A::GetNetString), 10},
        {"GetUnitString", SlotOf(&A::GetUnitString), 11},
        {"GetPortString", SlotOf(&A::GetPortString), 12},
        {"GetFullAddressStruct",
         SlotOf(static_cast<void (A::*)(FullAddress_t&) const>(&A::GetFullAddressStruct)), 13},
        {"nothing behind them", SlotOf(&BehindAddress::Next), 14},
    });
}

TEST(AddressLayout, FieldsStandInTheirOrder) {
    const CAddressOv address;
    ExpectRising(LayoutProbe::Fields(address));
    EXPECT_EQ(sizeof(CAddressOv), sizeof(void*) + 3 * 4 + 4);
}

TEST(AddressLayout, TheRecordHasFourBytesInOrder) {
    EXPECT_EQ(sizeof(FullAddress_t), 4u);
    EXPECT_EQ(offsetof(FullAddress_t, net), 0u);
    EXPECT_EQ(offsetof(FullAddress_t, unit), 2u);
    EXPECT_EQ(offsetof(FullAddress_t, port), 3u);
}

TEST(EventLayout, VirtualOperationsStandInSlotOrder) {
    ExpectSlots({
        {"AddRef", SlotOf(&CCommandEvent::AddRef), 0},
        {"Release", SlotOf(&CCommandEvent::Release), 1},
        {"Replicate", SlotOf(&CCommandEvent::Replicate), 2},
        {"behind the destructor", SlotOf(&BehindEvent::Next), 5},
        {"state events add none", SlotOf(&BehindStateEvent::Next), 5},
        {"a replica by the base's slot", SlotOf(&CStateChangedEvent::Replicate), 2},
    });
}

TEST(EventLayout, FieldsStandInTheirOrder) {
    CStateEvent* const event = NewEvent();
    ExpectRising(LayoutProbe::Fields(static_cast<const CCommandEvent&>(*event)));
    ExpectRising(LayoutProbe::Fields(*event));
    event->Release();
}

TEST(EventLayout, ExtraFieldsFollowTheBase) {
    auto* const value = new CMeterValueChangeEvent(1, CAddressOv(), false, 0, "", "", "", "", "", "");
    auto* const zone = new CMeterZoneChangeEvent(1, CAddressOv(), false, 0, "", "", "", "", "", "");
    auto* const button = new CButtonPressEvent(CAddressOv(), false, 0, "", "", "", "", "", "");
    ExpectRising({LayoutProbe::Fields(*value).back(), LayoutProbe::Value(*value)});
    ExpectRising({LayoutProbe::Fields(*zone).back(), LayoutProbe::Zone(*zone)});
    ExpectRising({LayoutProbe::Fields(*button).back(), LayoutProbe::ToggleState(*button)});
    value->Release();
    zone->Release();
    button->Release();
}

}  // namespace
