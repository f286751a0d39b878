// OV::List: where items are placed, what is drawn, where the mouse goes.
#include "brindle/widgets/widget_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/rectangle.h"
#include "testing/golden.h"
#include "testing/layout.h"
#include "testing/noting_widget.h"

namespace brindle {

struct ListLayoutProbe {
    static std::vector<const void*> Fields(const OV::List& l) {
        return {&l,           &l.m_pressedItem,      &l.m_items,        &l.m_orientation,
                &l.m_spacing, &l.m_backgroundColour, &l.m_stretchItems, &l.m_itemExtent};
    }
    static void StopStretching(OV::List& l) { l.m_stretchItems = false; }
    static_assert(sizeof(OV::List::m_spacing) == 4 && sizeof(OV::List::m_orientation) == 4);
};

namespace {

using OV::List;
using testing::NotingWidget;

constexpr int kMax = 2147483647;

// A list of noting items named a, b, c ...
class Noted {
  public:
    explicit Noted(int items, CRect bounds = {10, 10, 110, 20}) {
        list.SetBounds(bounds);
        for (int i = 0; i < items; ++i) {
            auto* const item = new NotingWidget(std::string(1, static_cast<char>('a' + i)), notes);
            list.insertItem(item, false);
        }
    }
    NotingWidget& Item(int i) { return static_cast<NotingWidget&>(*list.getItem(i)); }
    std::string Notes() { return std::exchange(notes, {}); }

    std::string notes;
    List list;
};

std::string Text(const CRect& r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + "-" + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

std::string Places(const List& list) {
    std::string text;
    for (int i = 0; i < list.getItemCount(); ++i) text += Text(list.getItem(i)->GetBounds()) + " ";
    return text + "in " + Text(list.GetBounds());
}

std::string Drawn(List& list, double scale = 1) {
    RecordingSurface surface;
    CDC dc(surface);
    list.Draw(&dc, scale);
    return surface.Text();
}

TEST(WidgetList, StartsAsAnEmptyColumn) {
    const List list;
    EXPECT_EQ(list.getItemCount(), 0);
    EXPECT_EQ(list.getOrientation(), 1);
    EXPECT_EQ(list.getItem(0), nullptr);
    EXPECT_EQ(list.getItemAt({0, 0}), nullptr);
    EXPECT_EQ(list.GetBounds(), CRect());
}

TEST(WidgetList, ItemsStandInTheirOrder) {
    Noted noted(2);
    noted.list.insertItem(new NotingWidget("front", noted.notes), true);
    noted.list.insertItem(nullptr, true);
    noted.list.insertItem(nullptr, false);
    ASSERT_EQ(noted.list.getItemCount(), 3) << "null is left out";
    for (int i = 0; i < 3; ++i) noted.list.getItem(i)->OnMouseOut();
    EXPECT_EQ(noted.Notes(), "front out\na out\nb out\n");
    for (const int i : {-1, 3, kMax, -kMax - 1}) EXPECT_EQ(noted.list.getItem(i), nullptr) << i;
}

TEST(WidgetList, RecalcPosPlacesTheItemsAndFitsAroundThem) {
    struct Row {
        const char* label;
        int items;
        std::function<void(Noted&)> set;
        double scale;
        const char* expected;
    };
    const auto nothing = [](Noted&) {};
    const auto row = [](Noted& n) { n.list.setOrientation(List::Horizontal); };
    const auto ownWidths = [](Noted& n) {
        ListLayoutProbe::StopStretching(n.list);
        n.Item(0).SetBounds({0, 0, 30, 5});
        n.Item(1).SetBounds({7, 7, 58, 5});
    };
    const std::vector<Row> rows = {
        {"a column", 3, nothing, 1, "10,10-110,50 10,52-110,92 10,94-110,134 in 10,10-110,134"},
        {"half as large again", 3, nothing, 1.5,
         "10,10-110,70 10,73-110,133 10,136-110,196 in 10,10-110,196"},
        {"extents and gaps are cut", 2, nothing, 0.74, "10,10-110,39 10,40-110,69 in 10,10-110,69"},
        {"another gap", 2, [](Noted& n) { n.list.setSpacing(7); }, 1,
         "10,10-110,50 10,57-110,97 in 10,10-110,97"},
        {"a negative gap is cut towards zero", 2, [](Noted& n) { n.list.setSpacing(-7); }, 0.5,
         "10,10-110,30 10,27-110,47 in 10,10-110,47"},
        {"a row: each as wide as the list", 3, row, 1,
         "10,10-110,50 112,10-212,50 214,10-314,50 in 10,10-314,50"},
        {"any other orientation is a row", 2,
         [](Noted& n) { n.list.setOrientation(static_cast<List::Orientation>(7)); }, 1,
         "10,10-110,50 112,10-212,50 in 10,10-212,50"},
        {"transparent items take no place", 3, [](Noted& n) { n.Item(1).SetTransparent(true); }, 1,
         "10,10-110,50 0,0-0,0 10,52-110,92 in 10,10-110,92"},
        {"no items", 0, nothing, 1, "in 0,0-0,0"},
        {"only transparent ones", 1, [](Noted& n) { n.Item(0).SetTransparent(true); }, 1,
         "0,0-0,0 in 0,0-0,0"},
        {"items of no width hold nothing", 1,
         [](Noted& n) {
             n.list.SetBounds({10, 10, 10, 90});
         },
         1, "10,10-10,50 in 0,0-0,0"},
        {"a reversed list", 1,
         [](Noted& n) {
             n.list.SetBounds({110, 10, 10, 90});
         },
         1, "110,10-10,50 in 0,0-0,0"},
        {"scale 0", 2, nothing, 0, "10,10-110,10 10,10-110,10 in 0,0-0,0"},
        {"a scale that is no number", 1, nothing, std::nan(""), "10,10-110,10 in 0,0-0,0"},
        {"own widths are scaled", 2, ownWidths, 1.5, "10,10-55,70 10,73-86,133 in 10,10-86,133"},
        {"beyond 32 bits coordinates wrap", 2, [](Noted& n) { n.list.setSpacing(kMax); }, 1,
         "10,10-110,50 10,-2147483599-110,-2147483559 in 10,-2147483599-110,50"},
    };
    for (const Row& each : rows) {
        SCOPED_TRACE(each.label);
        Noted noted(each.items);
        each.set(noted);
        noted.list.recalcPos(each.scale);
        EXPECT_EQ(Places(noted.list), each.expected);
    }
}

TEST(WidgetList, PlacingAgainCompoundsWhatIsScaledOrFollowsTheList) {
    Noted row(2);
    row.list.setOrientation(List::Horizontal);
    row.list.recalcPos(1);
    row.list.recalcPos(1);
    EXPECT_EQ(Places(row.list), "10,10-212,50 214,10-416,50 in 10,10-416,50");
    Noted own(1);
    ListLayoutProbe::StopStretching(own.list);
    own.Item(0).SetBounds({0, 0, 30, 5});
    own.list.recalcPos(1.5);
    own.list.recalcPos(1.5);
    EXPECT_EQ(Places(own.list), "10,10-77,70 in 10,10-77,70");
}

TEST(WidgetList, IsDrawnByItsRecipe) {
    struct Row {
        const char* label;
        int items;
        std::function<void(Noted&)> set;
        double scale;
    };
    const std::vector<Row> rows = {
        {"empty", 0, [](Noted&) {}, 1},
        {"items that meet the list, placed anew", 3,
         [](Noted& n) {
             n.list.SetBounds({10, 10, 110, 60});
         },
         1},
        {"an item that begins where the list ends does not", 2,
         [](Noted& n) {
             n.list.SetBounds({10, 10, 110, 52});
         },
         1},
        {"one more line and it does", 2,
         [](Noted& n) {
             n.list.SetBounds({10, 10, 110, 53});
         },
         1},
        {"the background is painted for a transparent list too", 1,
         [](Noted& n) { n.list.SetTransparent(true), n.list.setBackgroundColor(0xFF102030); }, 1},
        {"transparent items are not drawn", 2,
         [](Noted& n) {
             n.Item(0).SetTransparent(true), n.list.SetBounds({0, 0, 50, 50});
         },
         1},
        {"scaled", 2,
         [](Noted& n) {
             n.list.SetBounds({0, 0, 50, 70});
         },
         1.5},
        {"a row: the second lies outside", 2, [](Noted& n) { n.list.setOrientation(List::Horizontal); }, 1},
        {"a row: the second begins inside", 2,
         [](Noted& n) { n.list.setOrientation(List::Horizontal), n.list.setSpacing(-60); }, 1},
        {"a reversed list shows no items", 1,
         [](Noted& n) {
             n.list.SetBounds({110, 60, 10, 10});
         },
         1},
    };
    std::string all;
    for (const Row& row : rows) {
        Noted noted(row.items);
        row.set(noted);
        const CRect bounds = noted.list.GetBounds();
        all += "# " + std::string(row.label) + "\n" + Drawn(noted.list, row.scale);
        EXPECT_EQ(noted.list.GetBounds(), bounds) << row.label << ": drawing does not resize the list";
        EXPECT_EQ(noted.notes, "") << row.label;
    }
    testing::ExpectGolden("lists.txt", all);
}

TEST(WidgetList, DrawingPlacesTheItems) {
    Noted noted(2);
    Drawn(noted.list, 1.5);
    EXPECT_EQ(Places(noted.list), "10,10-110,70 10,73-110,133 in 10,10-110,20");
    noted.list.Draw(nullptr, 1);
    EXPECT_EQ(Places(noted.list), "10,10-110,70 10,73-110,133 in 10,10-110,20")
        << "no context: nothing happens";
}

TEST(WidgetList, FindsTheFirstItemAtAPoint) {
    Noted noted(3);
    noted.list.recalcPos(1);
    noted.Item(2).SetBounds({0, 0, 200, 200});  // covers the others, and all around
    noted.Item(1).SetTransparent(true);
    struct Row {
        const char* label;
        CPoint point;
        int item;  // -1: none
    };
    const std::vector<Row> rows = {
        {"left and top are inside", {10, 10}, 0},
        {"the last point", {109, 49}, 0},
        {"right is outside", {110, 20}, 2},
        {"bottom is outside", {50, 50}, 2},
        {"a transparent one is not found", {50, 60}, 2},
        {"outside the list", {5, 150}, 2},
        {"nothing there", {200, 20}, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(noted.list.getItemAt(row.point), noted.list.getItem(row.item));
    }
}

TEST(WidgetList, RoutesTheMouse) {
    struct Row {
        const char* label;
        std::function<bool(List&)> event;
        bool answer;
        const char* notes;
    };
    const auto down = [](CPoint p) { return [p](List& l) { return l.OnMouseDown(p); }; };
    const auto up = [](CPoint p) { return [p](List& l) { return l.OnMouseUp(p); }; };
    const std::vector<Row> rows = {
        {"up before any down", up({50, 20}), true, ""},
        {"over is not told",
         [](List& l) {
             return l.OnMouseOver({50, 20});
         },
         false, ""},
        {"out neither", [](List& l) { return l.OnMouseOut(), false; }, false, ""},
        {"down on the first", down({50, 20}), true, "a down 50 20\n"},
        {"up elsewhere goes to it", up({50, 60}), true, "a up 50 60\n"},
        {"and another one too", up({900, -5}), true, "a up 900 -5\n"},
        {"down on the second", down({50, 60}), true, "b down 50 60\n"},
        {"down in the gap", down({50, 50}), true, ""},
        {"up after it reaches none", up({50, 60}), true, ""},
        {"down outside", down({500, 500}), true, ""},
        {"down without a point", [](List& l) { return l.OnMouseDown(), false; }, false, ""},
        {"up without a point", [](List& l) { return l.OnMouseUp(), false; }, false, ""},
    };
    Noted noted(2);
    noted.list.recalcPos(1);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.event(noted.list), row.answer);
        EXPECT_EQ(noted.Notes(), row.notes);
    }
}

// The operations without a point are the list's own part of each event.
class OwnPart final : public List {
  public:
    using List::OnMouseDown, List::OnMouseOver, List::OnMouseUp;
    void OnMouseOver() override { told += "over "; }
    void OnMouseDown() override { told += "down "; }
    void OnMouseUp() override { told += "up "; }
    std::string told;
};

TEST(WidgetList, RunsItsOwnPartOfEachEvent) {
    OwnPart list;
    list.OnMouseOver(CPoint());
    list.OnMouseDown(CPoint());
    list.OnMouseUp(CPoint());
    EXPECT_EQ(list.told, "over down up ");
}

TEST(WidgetList, ItemsEndWithTheListOrByClearing) {
    std::string notes;
    {
        Noted noted(2);
        noted.Item(0).noteEnd = noted.Item(1).noteEnd = true;
        noted.list.recalcPos(1);
        noted.list.OnMouseDown({50, 20});
        noted.Notes();
        noted.list.clearItems();
        EXPECT_EQ(noted.Notes(), "a gone\nb gone\n");
        EXPECT_EQ(noted.list.getItemCount(), 0);
        noted.list.OnMouseUp({50, 20});  // the pressed item is gone
        auto* const last = new NotingWidget("last", notes);
        last->noteEnd = true;
        noted.list.insertItem(last, false);
    }
    EXPECT_EQ(notes, "last gone\n");
}

TEST(WidgetList, AnItemMayChangeTheListItIsIn) {
    Noted noted(2);
    noted.list.recalcPos(1);
    noted.Item(0).whenPressed = [&] {
        for (int i = 0; i < 100; ++i) noted.list.insertItem(new NotingWidget("new", noted.notes), true);
    };
    noted.list.OnMouseDown({50, 20});
    noted.list.OnMouseUp({50, 20});
    EXPECT_EQ(noted.Notes(), "a down 50 20\na up 50 20\n");
    noted.list.clearItems();
    NotingWidget* const clearing = new NotingWidget("c", noted.notes);
    clearing->SetBounds({0, 0, 9, 9});
    clearing->whenDrawn = [&] { noted.list.insertItem(new NotingWidget("late", noted.notes), false); };
    noted.list.insertItem(clearing, false);
    noted.list.SetBounds({0, 0, 9, 9});
    EXPECT_NE(Drawn(noted.list).find("text \"c\""), std::string::npos);
    EXPECT_EQ(noted.list.getItemCount(), 2);
}

// An item that has its list cleared when it is pressed, itself among the items: a page button.
class Clearing final : public OV::Widget {
  public:
    explicit Clearing(List& list) : m_list(list) {}
    void Draw(CDC*, double) override {}
    using Widget::OnMouseDown;
    bool OnMouseDown(CPoint) override {
        m_list.clearItems();
        return true;
    }

  private:
    List& m_list;
};

TEST(WidgetList, AnItemMayClearTheListItIsIn) {
    List list;
    list.insertItem(new Clearing(list), false);
    list.SetBounds({0, 0, 50, 50});
    list.recalcPos(1);
    EXPECT_TRUE(list.OnMouseDown({5, 5}));
    EXPECT_EQ(list.getItemCount(), 0);
    EXPECT_TRUE(list.OnMouseUp({5, 5})) << "the pressed item is forgotten";
}

TEST(WidgetList, CopiesHaveTheSettingsButNotTheItems) {
    Noted noted(2);
    noted.list.setOrientation(List::Horizontal);
    noted.list.setSpacing(9);
    noted.list.setBackgroundColor(0x123456);
    noted.list.SetDisabled(true);
    ListLayoutProbe::StopStretching(noted.list);
    noted.list.OnMouseDown({50, 20});
    List copy = noted.list;
    Noted other(1);
    other.list.recalcPos(1);
    other.list.OnMouseDown({50, 20});
    other.Notes();
    other.list = noted.list;
    EXPECT_EQ(copy.getItemCount(), 0);
    EXPECT_EQ(other.list.getItemCount(), 1) << "the items of one that is assigned to stay";
    other.list.OnMouseUp({1, 2});
    EXPECT_EQ(other.Notes(), "a up 1 2\n") << "and so does the pressed one";
    copy.OnMouseUp({1, 2});
    EXPECT_EQ(noted.Notes(), "") << "items hear of their own list only";
    for (const List* each : {&copy, &other.list}) {
        EXPECT_EQ(each->GetBounds(), noted.list.GetBounds());
        EXPECT_EQ(each->getOrientation(), List::Horizontal);
        EXPECT_TRUE(each->IsDisabled());
    }
    for (int i = 0; i < 2; ++i) {
        copy.insertItem(new OV::Rectangle, false);
        copy.getItem(i)->SetBounds({0, 0, 20, 20});
    }
    copy.recalcPos(1);
    EXPECT_EQ(Places(copy), "10,10-30,50 39,10-59,50 in 10,10-59,50") << "own widths, a row, gaps of 9";
    EXPECT_NE(Drawn(copy).find("solid #FF563412"), std::string::npos);
    copy = *&copy;
    EXPECT_EQ(copy.getItemCount(), 2);
}

TEST(WidgetListLayout, OverridesTakeTheBasesSlots) {
    EXPECT_EQ(testing::SlotOf(static_cast<bool (List::*)(CPoint)>(&List::OnMouseOver)), 3u);
    EXPECT_EQ(testing::SlotOf(&List::OnMouseOut), 5u);
    EXPECT_EQ(testing::SlotOf(static_cast<bool (List::*)(CPoint)>(&List::OnMouseDown)), 6u);
    EXPECT_EQ(testing::SlotOf(static_cast<bool (List::*)(CPoint)>(&List::OnMouseUp)), 8u);
}

TEST(WidgetListLayout, FieldsStandInTheirOrder) {
    const List list;
    const std::vector<const void*> fields = ListLayoutProbe::Fields(list);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
}

}  // namespace
}  // namespace brindle
