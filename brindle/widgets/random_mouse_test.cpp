// 10,000 random events of the mouse on random layouts of every widget, while lists change and panels are scrolled. A
// small host routes them as hosts do: to the widget under the mouse, or to the one that is held. Nothing but what must
// always hold is checked; a failure names the seed of its layout.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/rectangle.h"
#include "brindle/widgets/text.h"
#include "brindle/widgets/widget_list.h"
#include "testing/scroll_panel_probe.h"

namespace brindle {
namespace {

using Probe = ScrollPanelLayoutProbe;

enum class PlacedBy { kHost, kList, kPanel };

class Watched;

// What happened in the event under way, and who is alive.
struct Journal {
    std::vector<Watched*> alive;
    std::vector<Watched*> down, up;  // told, from the outermost inwards
    std::vector<Watched*> held;      // told of the last down
};

// One of the widgets, that writes down what it is told.
class Watched {
  public:
    Watched(Journal& journal, PlacedBy placedBy) : m_journal(journal), m_placedBy(placedBy) {
        m_journal.alive.push_back(this);
    }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    virtual ~Watched() {
        for (auto* all : {&m_journal.alive, &m_journal.down, &m_journal.up, &m_journal.held})
            all->erase(std::remove(all->begin(), all->end(), this), all->end());
    }
    virtual OV::Widget& Self() = 0;
    virtual bool Over() const = 0;
    virtual bool Pressed() const = 0;

    // A panel does not ask where its contents are; everyone else does.
    void Down(CPoint point) {
        EXPECT_TRUE(m_placedBy == PlacedBy::kPanel || Self().GetBounds().PtInRect(point));
        EXPECT_FALSE(m_placedBy == PlacedBy::kList && Self().IsTransparent());
        m_journal.down.push_back(this);
    }
    void Up() { m_journal.up.push_back(this); }

    bool lostUp = false;  // its panel kept an up to itself, over the bar

  protected:
    Journal& m_journal;

  private:
    PlacedBy m_placedBy;
};

template <class Base>
class WatchedAs final : public Base, public Watched {
  public:
    template <class... Arguments>
    WatchedAs(Journal& journal, PlacedBy placedBy, Arguments... arguments)
        : Base(arguments...), Watched(journal, placedBy) {}
    OV::Widget& Self() override { return *this; }
    bool Over() const override { return this->m_mouseOver; }
    bool Pressed() const override { return this->m_pressed; }
    using Base::OnMouseDown, Base::OnMouseUp;
    bool OnMouseDown(CPoint point) override {
        Down(point);
        lostUp = false;
        return Base::OnMouseDown(point);
    }
    bool OnMouseUp(CPoint point) override {
        Up();
        LoseUps(point);
        return Base::OnMouseUp(point);
    }

  private:
    // Whether contents that heard of the down will not hear of this up.
    void LoseUps(CPoint point) {
        if constexpr (std::is_base_of_v<OV::ScrollPanel, Base>) {
            if (Probe::Captured(*this) != 0 || Probe::Hit(*this, point) == 0) return;
            const auto self = std::find(m_journal.held.begin(), m_journal.held.end(), this);
            std::for_each(self, m_journal.held.end(), [](Watched* each) { each->lostUp = true; });
        }
    }
};

using List = WatchedAs<OV::List>;
using Panel = WatchedAs<OV::ScrollPanel>;

class Station {
  public:
    explicit Station(unsigned seed) : m_random(seed) {
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column) {
                const int left = column * 120 + Below(10), top = row * 220 + Below(10);
                m_cells.push_back({left, top, left + 40 + Below(70), top + 10 + Below(200)});
                m_top.emplace_back(MakeTop(m_cells.back()));
            }
        for (int i = 0; i < kCells; ++i) Draw(i);
    }

    void Step() {
        m_journal.down.clear();
        m_journal.up.clear();
        if (Below(10) == 0) Change();
        if (Below(3) == 0) Draw(Below(kCells));
        const CPoint point = m_held && Below(3) > 0 ? Near(m_mouse) : Somewhere();
        if (Below(3) > 0) {
            Move(point);
        } else if (m_held) {
            Up(point);
        } else {
            Down(point);
        }
        CheckAlways();
    }

    int downs = 0, ups = 0, moves = 0, dragged = 0, scrolledLists = 0;

  private:
    static constexpr int kCells = 9;

    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    // Mostly on a widget, often on its bar, sometimes on its thumb.
    CPoint Somewhere() {
        if (Below(4) == 0) return {Below(360), Below(660)};
        const int chosen = Below(kCells);
        const CRect& cell = m_cells[static_cast<std::size_t>(chosen)];
        const auto* const panel = dynamic_cast<Panel*>(m_top[static_cast<std::size_t>(chosen)].get());
        if (panel && Below(3) == 0) {
            const CRect thumb = Probe::Parts(*panel)[2];
            return {(thumb.left + thumb.right) / 2, (thumb.top + thumb.bottom) / 2};
        }
        const int wide = Below(2) ? cell.Width() : std::min(cell.Width(), 20);
        return {cell.right - 1 - Below(wide), cell.top + Below(cell.Height())};
    }
    CPoint Near(CPoint p) { return {p.x - 3 + Below(7), p.y - 30 + Below(61)}; }

    OV::Widget* MakeLeaf(PlacedBy placedBy) {
        switch (Below(3)) {
            case 0:
                return new WatchedAs<OV::Text>(m_journal, placedBy);
            case 1:
                return new WatchedAs<OV::Rectangle>(m_journal, placedBy);
            default:
                return new WatchedAs<OV::Button>(m_journal, placedBy);
        }
    }
    OV::Widget* MakeList(PlacedBy placedBy, const CRect& cell, int depth) {
        auto* const list = new List(m_journal, placedBy);
        list->setOrientation(Below(4) ? OV::List::Vertical : OV::List::Horizontal);
        list->setSpacing(Below(12) - 4);
        for (int i = Below(12); i > 0; --i) {
            const bool nested = depth == 0 && Below(8) == 0;
            list->insertItem(nested ? MakeList(PlacedBy::kList, cell, 1) : MakeLeaf(PlacedBy::kList),
                             Below(2) == 0);
        }
        Fit(*list, cell);
        return list;
    }
    OV::Widget* MakeTop(const CRect& cell) {
        switch (Below(5)) {
            case 0:
                return Placed(MakeLeaf(PlacedBy::kHost), cell);
            case 1:
                return Placed(MakeList(PlacedBy::kHost, cell, 0), cell);
            case 2:
                return Placed(new Panel(m_journal, PlacedBy::kHost, MakeTallLeaf(cell)), cell);
            default:
                return Placed(new Panel(m_journal, PlacedBy::kHost, MakeList(PlacedBy::kPanel, cell, 0)),
                              cell);
        }
    }
    OV::Widget* MakeTallLeaf(const CRect& cell) {
        if (Below(5) == 0) return nullptr;
        OV::Widget* const leaf = MakeLeaf(PlacedBy::kPanel);
        leaf->SetBounds({cell.left, cell.top, cell.right, cell.top + Below(400)});
        return leaf;
    }
    static OV::Widget* Placed(OV::Widget* widget, const CRect& cell) {
        widget->SetBounds(cell);
        return widget;
    }
    void Fit(OV::List& list, const CRect& cell) {
        list.SetBounds({cell.left, cell.top, cell.right, cell.top});
        list.recalcPos(m_scale);
    }

    Watched* Hit(CPoint point) {
        for (std::size_t i = 0; i < m_top.size(); ++i)
            if (m_cells[i].PtInRect(point)) return dynamic_cast<Watched*>(m_top[i].get());
        return nullptr;
    }
    void Move(CPoint point) {
        ++moves;
        m_mouse = point;
        Watched* const target = m_held ? m_held : Hit(point);
        if (m_over && m_over != target) m_over->Self().OnMouseOut();
        m_over = target;
        if (!target) return;
        auto* const panel = dynamic_cast<Panel*>(target);
        const bool drags = panel && Probe::Captured(*panel) == OV::ScrollPanel::PartThumb;
        target->Self().OnMouseOver(point);
        if (drags) ++dragged;
        if (panel && Probe::Captured(*panel) != 0) CheckOffset(*panel);
    }
    void Down(CPoint point) {
        Move(point);
        m_held = Hit(point);
        m_journal.held.clear();
        if (!m_held) return;
        ++downs;
        m_held->Self().OnMouseDown(point);
        m_journal.held = m_journal.down;
        EXPECT_TRUE(m_held->Pressed());
        if (auto* const panel = dynamic_cast<Panel*>(m_held)) {
            EXPECT_EQ(m_journal.down.size() > 1, Probe::Captured(*panel) == 0 && panel->getContents());
            EXPECT_EQ(Probe::Captured(*panel), Probe::Hit(*panel, point));
        }
    }
    void Up(CPoint point) {
        ++ups;
        m_mouse = point;
        m_held->Self().OnMouseUp(point);
        const auto* const panel = dynamic_cast<Panel*>(m_held);
        EXPECT_TRUE(!panel || Probe::Captured(*panel) == 0);
        m_held = nullptr;
        for (Watched* each : m_journal.held)
            EXPECT_TRUE(each->lostUp || std::count(m_journal.up.begin(), m_journal.up.end(), each) == 1);
        EXPECT_TRUE(
            std::none_of(m_journal.up.begin(), m_journal.up.end(), [](Watched* w) { return w->Pressed(); }));
    }

    void Draw(int chosen) {
        const double scales[] = {0.5, 0.75, 1, 1, 1.5, 2};
        m_scale = scales[Below(6)];
        OV::Widget& widget = *m_top[static_cast<std::size_t>(chosen)];
        auto* const panel = dynamic_cast<Panel*>(&widget);
        OV::Widget* const contents = panel ? panel->getContents() : nullptr;
        const CRect before = contents ? contents->GetBounds() : CRect();
        RecordingSurface surface;
        CDC dc(surface);
        widget.Draw(&dc, m_scale);
        EXPECT_EQ(surface.Text().find("error"), std::string::npos);
        EXPECT_EQ(dc.SaveDC(), 1) << "every kept state came back";
        EXPECT_EQ(widget.GetBounds(), m_cells[static_cast<std::size_t>(chosen)]);
        if (!contents) return;
        EXPECT_EQ(contents->GetBounds(), before);
        CheckBar(*panel);
    }

    void Change() {
        const int chosen = Below(kCells);
        OV::Widget& changed = *m_top[static_cast<std::size_t>(chosen)];
        auto* const panel = dynamic_cast<Panel*>(&changed);
        OV::Widget* const inner = panel ? panel->getContents() : &changed;
        inner&& Below(3) == 0 ? inner->SetDisabled(!inner->IsDisabled()) : void();
        auto* const list = dynamic_cast<List*>(inner);
        if (!list) return;
        const CRect cell = changed.GetBounds();
        const int kind = Below(10);
        if (kind == 0) {
            list->clearItems();
        } else if (kind < 4 && list->getItemCount() > 0) {
            OV::Widget& item = *list->getItem(Below(list->getItemCount()));
            item.SetTransparent(!item.IsTransparent());
        } else {
            list->insertItem(MakeLeaf(PlacedBy::kList), Below(2) == 0);
        }
        Fit(*list, cell);
        changed.SetBounds(cell);
        Draw(chosen);
    }

    static int Range(const Panel& panel) {
        return panel.getContents()->GetBounds().Height() - panel.GetBounds().Height() / 2;
    }
    static void CheckOffset(const Panel& panel) {
        const int least = panel.getContents() ? std::min(0, -Range(panel)) : 0;
        EXPECT_GE(Probe::Offset(panel), least);
        EXPECT_LE(Probe::Offset(panel), 0);
    }
    // Where there is room for it, and the contents have not shrunk, the thumb is between the arrows.
    void CheckBar(const Panel& panel) {
        const CRect bounds = panel.GetBounds();
        const auto bar = static_cast<int>(20 * m_scale);
        if (bounds.Height() >= panel.getContents()->GetBounds().Height()) return;
        const std::vector<CRect> parts = Probe::Parts(panel);
        ASSERT_EQ(parts[0], (CRect{bounds.right - bar, bounds.top, bounds.right, bounds.top + bar}));
        ASSERT_EQ(parts[1], (CRect{bounds.right - bar, bounds.bottom - bar, bounds.right, bounds.bottom}));
        if (bounds.Height() < 3 * bar || Probe::Offset(panel) < -Range(panel)) return;
        ++scrolledLists;
        ASSERT_GE(parts[2].top, parts[0].bottom);
        ASSERT_LE(parts[2].bottom, parts[1].top);
        ASSERT_EQ(parts[2].top == parts[0].bottom,
                  Probe::Offset(panel) * std::int64_t{bounds.Height() - 3 * bar} > -Range(panel));
    }

    void CheckAlways() {
        for (const auto& each : m_top) {
            const auto* const watched = dynamic_cast<const Watched*>(each.get());
            EXPECT_EQ(watched->Over(), watched == m_over) << "the mouse is over one widget at most";
            EXPECT_EQ(watched->Pressed(), watched == m_held) << "and holds one at most";
        }
        for (Watched* each : m_journal.alive) {
            const auto& held = m_journal.held;
            const bool down = m_held && std::find(held.begin(), held.end(), each) != held.end();
            EXPECT_TRUE(!each->Pressed() || down || each->lostUp) << "what is pressed hears of an up";
        }
    }

    std::mt19937 m_random;
    Journal m_journal;
    double m_scale = 1;
    std::vector<CRect> m_cells;
    std::vector<std::unique_ptr<OV::Widget>> m_top;
    Watched* m_over = nullptr;
    Watched* m_held = nullptr;
    CPoint m_mouse;
};

TEST(RandomMouse, LeavesEveryLayoutInOrder) {
    constexpr unsigned kLayouts = 50, kEvents = 200;
    int downs = 0, ups = 0, moves = 0, dragged = 0, scrolled = 0;
    for (unsigned layout = 0; layout < kLayouts && !HasFailure(); ++layout) {
        const unsigned seed = 20'000 + layout;
        SCOPED_TRACE("seed " + std::to_string(seed));
        Station station(seed);
        for (unsigned event = 0; event < kEvents && !HasFailure(); ++event) {
            SCOPED_TRACE("event " + std::to_string(event));
            station.Step();
        }
        downs += station.downs;
        ups += station.ups;
        moves += station.moves;
        dragged += station.dragged;
        scrolled += station.scrolledLists;
    }
    std::printf("%d moves, %d downs, %d ups, %d of them drags; %d bars seen\n", moves, downs, ups, dragged,
                scrolled);
    EXPECT_GT(downs, 500) << "of use only when something is hit";
    EXPECT_GT(ups, 500);
    EXPECT_GT(dragged, 50);
    EXPECT_GT(scrolled, 500);
}

}  // namespace
}  // namespace brindle
