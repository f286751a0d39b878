// OV::ScrollPanel: what is drawn where, what each part of the bar does, what the contents hear.
#include "brindle/widgets/scroll_panel.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/widget_list.h"
#include "testing/golden.h"
#include "testing/layout.h"
#include "testing/noting_widget.h"
#include "testing/scroll_panel_probe.h"

namespace brindle {
namespace {

using OV::ScrollPanel;
using Probe = ScrollPanelLayoutProbe;
using testing::NotingWidget;

// A panel of 100 by 200 at (10, 10) with contents of a height, named c.
class Scrolled {
  public:
    explicit Scrolled(int height = 300, CRect bounds = {10, 10, 110, 210})
        : contents(new NotingWidget("c", notes)), panel(contents) {
        panel.SetBounds(bounds);
        contents->SetBounds({10, 10, 110, 10 + height});
        contents->answer = true;
    }
    std::string Draw(double scale = 1) {
        RecordingSurface surface;
        CDC dc(surface);
        panel.Draw(&dc, scale);
        return surface.Text();
    }
    std::string Notes() { return std::exchange(notes, {}); }
    int Offset() const { return Probe::Offset(panel); }

    std::string notes;
    NotingWidget* contents;
    ScrollPanel panel;
};

constexpr CPoint kUp{100, 20}, kDown{100, 200}, kInside{50, 100};

TEST(ScrollPanel, StartsUnscrolledWithoutABar) {
    const ScrollPanel panel(nullptr);
    EXPECT_EQ(panel.getContents(), nullptr);
    EXPECT_EQ(Probe::Offset(panel), 0);
    EXPECT_EQ(Probe::Captured(panel), 0);
    EXPECT_EQ(Probe::Parts(panel), std::vector<CRect>(3));
    EXPECT_EQ(Probe::Hit(panel, {0, 0}), 0);
}

TEST(ScrollPanel, IsDrawnByItsRecipe) {
    struct Row {
        const char* label;
        int height, offset;
        double scale;
    };
    const std::vector<Row> rows = {
        {"lower than the panel: no bar, the full width", 150, 0, 1},
        {"as high as the panel: the same", 200, 0, 1},
        {"lower than the panel is not moved", 150, -40, 1},
        {"higher by one: a bar, and that much narrower", 201, 0, 1},
        {"scrolled", 300, -100, 1},
        {"half as large again", 300, -200, 1.5},
        {"the width of the bar is cut", 300, 0, 0.79},
    };
    std::string all;
    for (const Row& row : rows) {
        Scrolled scrolled(row.height);
        Probe::Scroll(scrolled.panel, row.offset);
        const CRect bounds = scrolled.contents->GetBounds();
        all += "# " + std::string(row.label) + "\n" + scrolled.Draw(row.scale);
        EXPECT_EQ(scrolled.contents->GetBounds(), bounds) << row.label << ": the bounds come back";
        EXPECT_EQ(Probe::Offset(scrolled.panel), row.offset) << row.label;
    }
    testing::ExpectGolden("scroll_panels.txt", all);
}

TEST(ScrollPanel, WithoutContentsOnlyTheClipIsMade) {
    Scrolled scrolled;
    scrolled.panel.setContents(nullptr);
    EXPECT_EQ(scrolled.Draw(), "save\nclip 10 10 110 210\nrestore\n");
    scrolled.panel.Draw(nullptr, 1);
    scrolled.panel.drawVerticalScrollbar(nullptr, 1);
    EXPECT_EQ(Probe::Parts(scrolled.panel), std::vector<CRect>(3));
}

TEST(ScrollPanel, TheHeldPartIsFlat) {
    Scrolled scrolled;
    const std::string before = scrolled.Draw();
    for (const CPoint point : {kUp, kDown, CPoint{100, 40}}) {
        scrolled.panel.OnMouseDown(point);
        Probe::Scroll(scrolled.panel, 0);
        EXPECT_NE(scrolled.Draw(), before) << point.y;
        scrolled.panel.OnMouseUp(point);
        EXPECT_EQ(scrolled.Draw(), before) << point.y;
    }
    scrolled.panel.OnMouseDown({100, 150});
    EXPECT_EQ(Probe::Captured(scrolled.panel), ScrollPanel::PartTrackBelow);
    EXPECT_EQ(scrolled.Draw(), before) << "the track looks the same";
}

TEST(ScrollPanel, PartsAreHitWhereTheyWereDrawn) {
    struct Row {
        const char* label;
        CPoint point;
        int part;
    };
    // The thumb is at 100 to 120.
    const std::vector<Row> rows = {
        {"left of the bar", {89, 100}, 0},
        {"the bar's first column", {90, 40}, ScrollPanel::PartTrackAbove},
        {"right of the bar", {110, 40}, 0},
        {"the up arrow", {90, 10}, ScrollPanel::PartUpArrow},
        {"its last line", {109, 29}, ScrollPanel::PartUpArrow},
        {"below it", {100, 30}, ScrollPanel::PartTrackAbove},
        {"above the thumb", {100, 99}, ScrollPanel::PartTrackAbove},
        {"the thumb", {100, 100}, ScrollPanel::PartThumb},
        {"its corner, outside the circle", {90, 119}, ScrollPanel::PartThumb},
        {"below the thumb", {100, 120}, ScrollPanel::PartTrackBelow},
        {"above the down arrow", {100, 189}, ScrollPanel::PartTrackBelow},
        {"the down arrow", {100, 190}, ScrollPanel::PartDownArrow},
        {"below the bar", {100, 210}, 0},
        {"above the bar", {100, 9}, 0},
    };
    Scrolled scrolled;
    Probe::Scroll(scrolled.panel, -100);
    for (const Row& row : rows)
        EXPECT_EQ(Probe::Hit(scrolled.panel, row.point), 0) << row.label << ", not drawn yet";
    scrolled.Draw();
    for (const Row& row : rows) EXPECT_EQ(Probe::Hit(scrolled.panel, row.point), row.part) << row.label;
    scrolled.contents->SetBounds({10, 10, 110, 60});
    scrolled.Draw();
    EXPECT_EQ(Probe::Hit(scrolled.panel, kUp), ScrollPanel::PartUpArrow) << "where it was drawn last";
}

TEST(ScrollPanel, ThePartsThatLieOverEachOtherHaveAnOrder) {
    Scrolled scrolled(120, {0, 0, 50, 40});  // too short for three parts
    scrolled.Draw();
    EXPECT_EQ(Probe::Parts(scrolled.panel),
              (std::vector<CRect>{{30, 0, 50, 20}, {30, 20, 50, 40}, {30, 20, 50, 40}}));
    EXPECT_EQ(Probe::Hit(scrolled.panel, {40, 25}), ScrollPanel::PartDownArrow) << "before the thumb";
    Probe::Scroll(scrolled.panel, -100);
    scrolled.Draw();
    EXPECT_EQ(Probe::Parts(scrolled.panel)[2], (CRect{30, 0, 50, 20}));
    EXPECT_EQ(Probe::Hit(scrolled.panel, {40, 15}), ScrollPanel::PartUpArrow);
}

TEST(ScrollPanel, ArrowsScrollByHalfAPanelAndStopAtTheEnds) {
    struct Row {
        const char* label;
        CPoint point;
        int offset;
    };
    const std::vector<Row> rows = {
        {"up at the top", kUp, 0},   {"down", kDown, -100},
        {"down again", kDown, -200}, {"no further: half a panel stays", kDown, -200},
        {"up", kUp, -100},           {"up again", kUp, 0},
    };
    Scrolled scrolled;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        scrolled.Draw();
        EXPECT_TRUE(scrolled.panel.OnMouseDown(row.point));
        EXPECT_EQ(scrolled.Offset(), row.offset);
        EXPECT_TRUE(scrolled.panel.OnMouseUp(row.point));
        EXPECT_EQ(scrolled.Offset(), row.offset);
    }
    EXPECT_EQ(scrolled.Notes(), "") << "the contents hear nothing of it";
}

TEST(ScrollPanel, HalfOfAnOddPanelIsCut) {
    Scrolled scrolled(300, {10, 10, 110, 211});
    scrolled.Draw();
    scrolled.panel.OnMouseDown({100, 200});
    EXPECT_EQ(scrolled.Offset(), -100);
}

TEST(ScrollPanel, TheTrackDoesNotPage) {
    Scrolled scrolled;
    scrolled.Draw();
    for (const CPoint point : {CPoint{100, 150}, CPoint{100, 30}}) {
        EXPECT_TRUE(scrolled.panel.OnMouseDown(point));
        EXPECT_TRUE(scrolled.panel.OnMouseOver(point));
        EXPECT_TRUE(scrolled.panel.OnMouseUp(point));
        EXPECT_EQ(scrolled.Offset(), 0);
    }
    EXPECT_EQ(scrolled.Notes(), "");
}

TEST(ScrollPanel, EachMovementOverAHeldArrowScrollsOn) {
    Scrolled scrolled(1000);
    scrolled.Draw();
    scrolled.panel.OnMouseDown(kDown);
    EXPECT_TRUE(scrolled.panel.OnMouseOver(kDown));
    EXPECT_TRUE(scrolled.panel.OnMouseOver(kInside)) << "wherever it is";
    EXPECT_EQ(scrolled.Offset(), -300);
    scrolled.panel.OnMouseUp(kInside);
    scrolled.Notes();
    EXPECT_TRUE(scrolled.panel.OnMouseOver(kInside)) << "the contents' answer";
    EXPECT_EQ(scrolled.Offset(), -300);
    EXPECT_EQ(scrolled.Notes(), "c over 50 100\n");
}

TEST(ScrollPanel, TheThumbFollowsTheMouse) {
    struct Row {
        const char* label;
        CRect panel;
        int height, y, offset;
    };
    // The way is 160 long; 10 above the mouse count in the upper part, 10 below it in the lower one.
    const CRect panel{10, 10, 110, 210}, low{10, 1010, 110, 1210};
    const std::vector<Row> rows = {
        {"above the panel", panel, 300, -50, 0},
        {"at the top of the way", panel, 300, 40, 0},
        {"1 / 160 of 200 is cut", panel, 300, 41, -1},
        {"in the upper half", panel, 300, 100, -75},
        {"the middle as a place, 110: still upper", panel, 300, 120, -100},
        {"beyond it: lower", panel, 300, 121, -126},
        {"near the end, cut", panel, 300, 170, -187},
        {"beyond the end", panel, 300, 189, -200},
        {"below the panel", panel, 300, 500, -200},
        {"far down, a distance is never beyond the middle as a place", low, 300, 1150, -137},
        {"other contents", panel, 777, 100, -253},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Scrolled scrolled(row.height, row.panel);
        scrolled.Draw();
        const CRect thumb = Probe::Parts(scrolled.panel)[2];
        EXPECT_TRUE(scrolled.panel.OnMouseDown({thumb.left, thumb.top}));
        EXPECT_EQ(Probe::Captured(scrolled.panel), ScrollPanel::PartThumb);
        EXPECT_TRUE(scrolled.panel.OnMouseOver({-500, row.y})) << "x does not matter";
        EXPECT_EQ(scrolled.Offset(), row.offset);
        EXPECT_TRUE(scrolled.panel.OnMouseUp({-500, row.y}));
        EXPECT_EQ(Probe::Captured(scrolled.panel), 0);
        EXPECT_EQ(scrolled.Notes(), "") << "the contents hear nothing of it";
    }
}

TEST(ScrollPanel, APanelWithoutWayForTheThumb) {
    Scrolled scrolled(120, {0, 0, 50, 40});
    scrolled.Draw();
    Probe::Scroll(scrolled.panel, -50);
    scrolled.Draw();  // the thumb is at 10 to 30, over the gap of none between the arrows
    for (const CPoint point : {CPoint{40, 19}, CPoint{40, 21}})
        EXPECT_NE(Probe::Hit(scrolled.panel, point), 2);
    Scrolled inner(300, {0, 0, 50, 60});
    inner.Draw();
    inner.panel.OnMouseDown({40, 25});
    ASSERT_EQ(Probe::Captured(inner.panel), ScrollPanel::PartThumb);
    inner.panel.SetBounds({0, 1000, 50, 1040});  // as high as the arrows that were drawn
    struct Row {
        const char* label;
        int y, offset;
    };
    for (const Row& row :
         std::vector<Row>{{"before", 1029, 0}, {"beyond", 1031, -280}, {"nothing of nothing", 1030, 0}}) {
        SCOPED_TRACE(row.label);
        inner.panel.OnMouseOver({40, row.y});
        EXPECT_EQ(inner.Offset(), row.offset);
    }
}

TEST(ScrollPanel, TheContentsHearOfTheRest) {
    struct Row {
        const char* label;
        std::function<bool(ScrollPanel&)> event;
        bool answer;
        const char* notes;
    };
    const auto down = [](CPoint p) { return [p](ScrollPanel& s) { return s.OnMouseDown(p); }; };
    const auto up = [](CPoint p) { return [p](ScrollPanel& s) { return s.OnMouseUp(p); }; };
    const auto over = [](CPoint p) { return [p](ScrollPanel& s) { return s.OnMouseOver(p); }; };
    const std::vector<Row> rows = {
        {"over", over(kInside), true, "c over 50 100\n"},
        {"over the bar too", over(kUp), true, "c over 100 20\n"},
        {"down", down(kInside), true, "c down 50 100\n"},
        {"over while down", over({51, 101}), true, "c over 51 101\n"},
        {"up elsewhere", up({1, 2}), true, "c up 1 2\n"},
        {"up without down", up(kInside), true, "c up 50 100\n"},
        {"down, and up over the bar", down(kInside), true, "c down 50 100\n"},
        {"is not told", up(kDown), true, ""},
        {"down on the bar", down(kUp), true, ""},
        {"and up over the contents is not told", up(kInside), true, ""},
        {"after that it is again", up(kInside), true, "c up 50 100\n"},
        {"out", [](ScrollPanel& s) { return s.OnMouseOut(), true; }, true, "c out\n"},
        {"without a point",
         [](ScrollPanel& s) { return s.OnMouseOver(), s.OnMouseDown(), s.OnMouseUp(), true; }, true, ""},
    };
    Scrolled scrolled;
    scrolled.Draw();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.event(scrolled.panel), row.answer);
        EXPECT_EQ(scrolled.Notes(), row.notes);
        EXPECT_EQ(scrolled.Offset(), 0);
    }
    scrolled.contents->answer = false;
    EXPECT_FALSE(scrolled.panel.OnMouseOver(kInside)) << "the contents answer";
    EXPECT_FALSE(scrolled.panel.OnMouseDown(kInside));
    EXPECT_TRUE(scrolled.panel.OnMouseUp(kInside)) << "up is always true";
}

TEST(ScrollPanel, WithoutContentsTheMouseIsTaken) {
    Scrolled scrolled;
    scrolled.Draw();
    scrolled.panel.setContents(nullptr);
    for (const CPoint point : {kInside, kUp, kDown, CPoint{100, 40}}) {
        EXPECT_TRUE(scrolled.panel.OnMouseDown(point));
        EXPECT_TRUE(scrolled.panel.OnMouseOver(point));
        EXPECT_TRUE(scrolled.panel.OnMouseUp(point));
        EXPECT_EQ(scrolled.Offset(), 0) << "nothing to scroll";
    }
    scrolled.panel.OnMouseOut();
}

TEST(ScrollPanel, ScrollingBringsAnOffsetBackWithinShorterContents) {
    Scrolled scrolled(1000);
    Probe::Scroll(scrolled.panel, -900);
    scrolled.contents->SetBounds({10, 10, 110, 310});
    scrolled.Draw();
    EXPECT_EQ(scrolled.Offset(), -900) << "drawing does not change it";
    scrolled.panel.OnMouseDown(kUp);
    EXPECT_EQ(scrolled.Offset(), -200);
    scrolled.contents->SetBounds({10, 10, 110, 60});  // less than half of the panel
    scrolled.panel.OnMouseOver(kUp);
    EXPECT_EQ(scrolled.Offset(), 0) << "never positive";
}

TEST(ScrollPanel, OwnsItsContents) {
    std::string notes;
    const auto make = [&](const char* name) {
        auto* const widget = new NotingWidget(name, notes);
        widget->noteEnd = true;
        return widget;
    };
    {
        ScrollPanel panel(make("a"));
        OV::Widget* const b = make("b");
        panel.setContents(b);
        EXPECT_EQ(std::exchange(notes, {}), "a gone\n");
        panel.setContents(b);
        EXPECT_EQ(notes, "") << "the same ones stay";
        OV::Widget* const released = panel.releaseContents();
        EXPECT_EQ(released, b);
        EXPECT_EQ(panel.getContents(), nullptr);
        EXPECT_EQ(panel.releaseContents(), nullptr);
        delete released;
        EXPECT_EQ(std::exchange(notes, {}), "b gone\n");
        panel.setContents(make("c"));
    }
    EXPECT_EQ(notes, "c gone\n");
}

TEST(ScrollPanel, ReplacedContentsAreScrolledAsFar) {
    Scrolled scrolled;
    scrolled.Draw();
    scrolled.panel.OnMouseDown(kDown);
    scrolled.panel.OnMouseUp(kDown);
    auto* const next = new NotingWidget("next", scrolled.notes);
    next->SetBounds({10, 10, 110, 510});
    scrolled.panel.setContents(next);
    EXPECT_NE(scrolled.Draw().find("text \"next\" at 10 -90"), std::string::npos);
}

TEST(ScrollPanel, CopiesHaveTheSettingsButNotTheContents) {
    Scrolled scrolled;
    scrolled.Draw();
    scrolled.panel.SetTransparent(true);
    scrolled.panel.OnMouseDown(kDown);
    ScrollPanel copy = scrolled.panel;
    EXPECT_EQ(copy.GetBounds(), scrolled.panel.GetBounds());
    EXPECT_TRUE(copy.IsTransparent());
    EXPECT_EQ(copy.getContents(), nullptr);
    EXPECT_EQ(Probe::Offset(copy), 0);
    EXPECT_EQ(Probe::Captured(copy), 0);
    EXPECT_EQ(Probe::Parts(copy), std::vector<CRect>(3));
    Scrolled other(500, {0, 0, 9, 9});
    Probe::Scroll(other.panel, -7);
    other.panel = scrolled.panel;
    EXPECT_EQ(other.panel.GetBounds(), scrolled.panel.GetBounds());
    EXPECT_TRUE(other.panel.IsTransparent());
    EXPECT_EQ(other.panel.getContents(), other.contents) << "one that is assigned to keeps its contents";
    EXPECT_EQ(other.Offset(), -7);
}

TEST(ScrollPanel, AListKeepsThePlacesItWasDrawnAt) {
    auto* const list = new OV::List;
    ScrollPanel panel(list);
    std::string notes;
    for (const char* name : {"a", "b", "c", "d", "e", "f"})
        list->insertItem(new NotingWidget(name, notes), false);
    panel.SetBounds({10, 10, 110, 130});
    list->SetBounds({10, 10, 110, 10});
    list->recalcPos(1);
    ASSERT_EQ(list->GetBounds(), (CRect{10, 10, 110, 260}));
    RecordingSurface surface;
    CDC dc(surface);
    panel.Draw(&dc, 1);
    EXPECT_EQ(list->getItem(0)->GetBounds(), (CRect{10, 10, 90, 50})) << "narrower by the bar";
    panel.OnMouseDown({100, 120});
    panel.OnMouseUp({100, 120});
    panel.Draw(&dc, 1);
    EXPECT_EQ(list->GetBounds(), (CRect{10, 10, 110, 260}));
    EXPECT_EQ(list->getItem(1)->GetBounds(), (CRect{10, -8, 90, 32})) << "60 higher";
    EXPECT_TRUE(panel.OnMouseDown({50, 12}));
    EXPECT_TRUE(panel.OnMouseUp({50, 12}));
    EXPECT_EQ(notes, "b down 50 12\nb up 50 12\n");
}

TEST(ScrollPanel, WhatThrowsWhileDrawnLeavesEverythingAsItWas) {
    Scrolled scrolled;
    scrolled.contents->whenDrawn = [] { throw std::runtime_error("no"); };
    RecordingSurface surface;
    CDC dc(surface);
    EXPECT_THROW(scrolled.panel.Draw(&dc, 1), std::runtime_error);
    EXPECT_EQ(scrolled.contents->GetBounds(), (CRect{10, 10, 110, 310}));
    EXPECT_EQ(surface.Text().substr(surface.Text().size() - 8), "restore\n");
}

// The operations without a point are the panel's own part of each event, and a bar can be drawn otherwise.
class OwnPart final : public ScrollPanel {
  public:
    using ScrollPanel::OnMouseDown, ScrollPanel::OnMouseOver, ScrollPanel::OnMouseUp,
        ScrollPanel::ScrollPanel;
    void OnMouseOver() override { told += "over "; }
    void OnMouseDown() override { told += "down "; }
    void OnMouseUp() override { told += "up "; }
    void drawVerticalScrollbar(CDC*, double scale) override {
        told += "bar " + std::to_string(std::lround(scale));
    }
    std::string told;
};

TEST(ScrollPanel, RunsItsOwnPartOfEachEvent) {
    std::string notes;
    auto* const contents = new NotingWidget("c", notes);
    contents->SetBounds({0, 0, 10, 10});
    OwnPart panel(contents);
    panel.OnMouseOver(CPoint());
    panel.OnMouseDown(CPoint());
    panel.OnMouseUp(CPoint());
    RecordingSurface surface;
    CDC dc(surface);
    panel.Draw(&dc, 3);
    EXPECT_EQ(panel.told, "over down up bar 3");
}

TEST(ScrollPanelLayout, VirtualOperationsStandInSlotOrder) {
    EXPECT_EQ(testing::SlotOf(static_cast<bool (ScrollPanel::*)(CPoint)>(&ScrollPanel::OnMouseOver)), 3u);
    EXPECT_EQ(testing::SlotOf(&ScrollPanel::OnMouseOut), 5u);
    EXPECT_EQ(testing::SlotOf(static_cast<bool (ScrollPanel::*)(CPoint)>(&ScrollPanel::OnMouseDown)), 6u);
    EXPECT_EQ(testing::SlotOf(static_cast<bool (ScrollPanel::*)(CPoint)>(&ScrollPanel::OnMouseUp)), 8u);
    EXPECT_EQ(testing::SlotOf(&ScrollPanel::drawVerticalScrollbar), 10u) << "behind the base's";
}

TEST(ScrollPanelLayout, FieldsStandInTheirOrder) {
    const ScrollPanel panel(nullptr);
    const std::vector<const void*> fields = Probe::Fields(panel);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
    const int parts[] = {ScrollPanel::PartNone,       ScrollPanel::PartUpArrow,
                         ScrollPanel::PartThumb,      ScrollPanel::PartDownArrow,
                         ScrollPanel::PartTrackAbove, ScrollPanel::PartTrackBelow};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(parts[i], i);
}

}  // namespace
}  // namespace brindle
