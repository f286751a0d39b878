// OV::List: a column or a row of widgets, each as high as the next and a gap apart, on a background; the mouse goes on
// to the item under it. The list owns its items. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>

#include "brindle/framework/export.h"
#include "brindle/widgets/widget.h"

namespace brindle {
struct ListLayoutProbe;
}

namespace OV {

class BRINDLE_API List : public Widget {
  public:
    // Any other number is a row too.
    enum Orientation : int { Horizontal = 0, Vertical = 1 };

    // An empty column: gaps of 2 and items 40 high before scaling, as wide as the list, on 0x505050.
    List();
    // Bounds, flags and settings; items have one owner, so a copy starts without any, and one that is assigned to
    // keeps its own.
    List(const List& other);
    List& operator=(const List& other);
    ~List() override;

    // The number is the scale of gaps and heights, and goes on to the items. The background is painted even when the
    // list is transparent; then the items are placed, and those that meet the list's bounds are drawn.
    void Draw(CDC* dc, double scale) override;

    // The mouse over the list is not told to the items. False: nothing changed.
    using Widget::OnMouseOver;
    bool OnMouseOver(CPoint point) override;
    void OnMouseOut() override;
    // To the item at the point, which hears of the next mouse up, wherever that is. True.
    // An item may clear the list meanwhile, but not destroy it.
    using Widget::OnMouseDown;
    bool OnMouseDown(CPoint point) override;
    // To the item of the last mouse down. True. Kept: it stays that item until the next mouse down.
    using Widget::OnMouseUp;
    bool OnMouseUp(CPoint point) override;

    // Takes the item over, as the last or the first; it must not be in a list already. Null is left out.
    void insertItem(Widget* item, bool atFront);
    // Null when there is no such item. It stays the list's.
    Widget* getItem(int i) const noexcept;
    int getItemCount() const noexcept { return static_cast<int>(m_items.size()); }
    // The first item there, where it was last placed or put; transparent ones are never found. Null: none.
    Widget* getItemAt(const CPoint& point) const noexcept { return FindWidgetAt(point); }
    void clearItems();

    void setOrientation(Orientation orientation) noexcept { m_orientation = orientation; }
    Orientation getOrientation() const noexcept { return m_orientation; }
    // Before scaling; may be negative.
    void setSpacing(int spacing) noexcept { m_spacing = spacing; }
    void setBackgroundColor(unsigned long colour) noexcept {  // 0x00BBGGRR
        m_backgroundColour = static_cast<std::uint32_t>(colour);
    }

    // Places the items from the list's upper left corner on and fits the list around them. Transparent items take no
    // place. Kept: without items to place, the list's bounds become (0, 0, 0, 0); and each item of a row is as wide as
    // the whole list was, so that doing it again makes a row longer.
    void recalcPos(double scale);

  private:
    Widget* FindWidgetAt(const CPoint& point) const noexcept;
    bool Holds(const Widget* item) const noexcept;
    // Gives every item its bounds; returns what holds all of them.
    CRect PlaceItems(double scale);

    Widget* m_pressedItem = nullptr;
    std::deque<std::unique_ptr<Widget>> m_items;
    Orientation m_orientation = Vertical;
    int m_spacing = 2;
    std::uint32_t m_backgroundColour = 0x505050;
    bool m_stretchItems = true;
    int m_itemExtent = 40;

    friend struct brindle::ListLayoutProbe;
};

}  // namespace OV
