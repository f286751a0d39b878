// The base of the widgets.
#include "brindle/widgets/widget.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "testing/layout.h"

namespace brindle {

struct WidgetLayoutProbe {
    static std::vector<const void*> Fields(const OV::Widget& w) {
        return {&w, &w.m_bounds, &w.m_mouseOver, &w.m_pressed, &w.m_disabled, &w.m_transparent};
    }
    static bool MouseOver(const OV::Widget& w) { return w.m_mouseOver; }
    static bool Pressed(const OV::Widget& w) { return w.m_pressed; }
    static_assert(sizeof(OV::Widget::m_bounds) == 16);
};

}  // namespace brindle

namespace {

using Probe = brindle::WidgetLayoutProbe;
using brindle::testing::SlotOf;

class Plain : public OV::Widget {
  public:
    void Draw(CDC*, double) override {}
    virtual void Next() {}
};

// Counts what reaches the operations without a point.
class Counting final : public Plain {
  public:
    using Widget::OnMouseDown, Widget::OnMouseOver, Widget::OnMouseUp;
    void OnMouseOver() override { ++over; }
    void OnMouseDown() override { ++down; }
    void OnMouseUp() override { ++up; }
    int over = 0, down = 0, up = 0;
};

TEST(Widget, StartsEmptyAndUnflagged) {
    const Plain widget;
    EXPECT_EQ(widget.GetBounds(), CRect());
    EXPECT_FALSE(Probe::MouseOver(widget));
    EXPECT_FALSE(Probe::Pressed(widget));
    EXPECT_FALSE(widget.IsDisabled());
    EXPECT_FALSE(widget.IsTransparent());
}

TEST(Widget, BoundsAndFlagsAreReadAndWritten) {
    Plain widget;
    widget.SetBounds({4, 3, 2, 1});
    EXPECT_EQ(widget.GetBounds(), (CRect{4, 3, 2, 1})) << "as given, not normalised";
    widget.SetDisabled(true);
    EXPECT_TRUE(widget.IsDisabled());
    EXPECT_FALSE(widget.IsTransparent());
    widget.SetDisabled(false);
    widget.SetTransparent(true);
    EXPECT_FALSE(widget.IsDisabled());
    EXPECT_TRUE(widget.IsTransparent());
    const Plain copy = widget;
    EXPECT_EQ(copy.GetBounds(), widget.GetBounds());
    EXPECT_TRUE(copy.IsTransparent());
}

TEST(Widget, TheMouseSetsAndClearsItsFlags) {
    struct Row {
        const char* label;
        bool (*event)(OV::Widget&);
        bool over, pressed;
    };
    const std::vector<Row> rows = {
        {"over",
         [](OV::Widget& w) {
             return w.OnMouseOver({1, 2});
         },
         true, false},
        {"down outside the bounds",
         [](OV::Widget& w) {
             return w.OnMouseDown({1, 2});
         },
         true, true},
        {"out leaves pressed", [](OV::Widget& w) { return w.OnMouseOut(), false; }, false, true},
        {"up",
         [](OV::Widget& w) {
             return w.OnMouseUp({1, 2});
         },
         false, false},
        {"over without a point", [](OV::Widget& w) { return w.OnMouseOver(), false; }, true, false},
        {"down without a point", [](OV::Widget& w) { return w.OnMouseDown(), false; }, true, true},
        {"up without a point", [](OV::Widget& w) { return w.OnMouseUp(), false; }, true, false},
    };
    Plain widget;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_FALSE(row.event(widget));
        EXPECT_EQ(Probe::MouseOver(widget), row.over);
        EXPECT_EQ(Probe::Pressed(widget), row.pressed);
    }
}

TEST(Widget, PointsReachTheOperationsWithoutOne) {
    Counting widget;
    EXPECT_FALSE(widget.OnMouseOver(CPoint()));
    EXPECT_FALSE(widget.OnMouseDown(CPoint()));
    EXPECT_FALSE(widget.OnMouseUp(CPoint()));
    EXPECT_EQ(widget.over, 1);
    EXPECT_EQ(widget.down, 1);
    EXPECT_EQ(widget.up, 1);
}

TEST(Widget, LighterMovesChannelsTowardsWhite) {
    struct Row {
        const char* label;
        unsigned long colour;
        double factor;
        unsigned long expected;
    };
    const std::vector<Row> rows = {
        {"half of black is cut, not rounded", 0x000000, 0.5, 0x7F7F7F},
        {"1 is white", 0x0000FF, 1.0, 0xFFFFFF},
        {"0 is the colour", 0x123456, 0.0, 0x123456},
        {"each channel by itself", 0x0080FF, 0.5, 0x7FBFFF},
        {"negative darkens", 0x808080, -0.5, 0x404040},
        {"2 wraps", 0x000000, 2.0, 0xFEFEFE},
        {"1.2 of black", 0x000000, 1.2, 0x323232},
        {"1.2 of white", 0xFFFFFF, 1.2, 0xFFFFFF},
        {"below 0 wraps", 0x000000, -0.5, 0x818181},
        {"the top byte goes", 0xFF123456, 0.0, 0x123456},
        {"beyond 32 bits nothing is left", 0x000000, 1e10, 0x000000},
        {"no number", 0x000000, std::nan(""), 0x000000},
        {"infinite", 0x000000, -std::numeric_limits<double>::infinity(), 0x000000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(OV::Widget::Lighter(row.colour, row.factor), row.expected);
    }
}

TEST(WidgetLayout, VirtualOperationsStandInSlotOrder) {
    using W = OV::Widget;
    struct Slot {
        const char* label;
        std::size_t actual, expected;
    };
    const std::vector<Slot> rows = {
        // the destructor: 0 and 1
        {"Draw", SlotOf(&W::Draw), 2},
        {"OnMouseOver(point)", SlotOf(static_cast<bool (W::*)(CPoint)>(&W::OnMouseOver)), 3},
        {"OnMouseOver", SlotOf(static_cast<void (W::*)()>(&W::OnMouseOver)), 4},
        {"OnMouseOut", SlotOf(&W::OnMouseOut), 5},
        {"OnMouseDown(point)", SlotOf(static_cast<bool (W::*)(CPoint)>(&W::OnMouseDown)), 6},
        {"OnMouseDown", SlotOf(static_cast<void (W::*)()>(&W::OnMouseDown)), 7},
        {"OnMouseUp(point)", SlotOf(static_cast<bool (W::*)(CPoint)>(&W::OnMouseUp)), 8},
        {"OnMouseUp", SlotOf(static_cast<void (W::*)()>(&W::OnMouseUp)), 9},
        {"nothing behind them", SlotOf(&Plain::Next), 10},
    };
    for (const Slot& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
}

TEST(WidgetLayout, FieldsStandInTheirOrder) {
    const Plain widget;
    const std::vector<const void*> fields = Probe::Fields(widget);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
    EXPECT_LE(sizeof(OV::Widget), sizeof(void*) + 16 + 8);
}

}  // namespace
