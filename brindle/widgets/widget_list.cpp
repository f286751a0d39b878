// OV::List. Tests: widget_list_test.cpp.
#include "brindle/widgets/widget_list.h"

#include <algorithm>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace OV {

List::List() = default;

List::List(const List& other)
    : Widget(other),
      m_orientation(other.m_orientation),
      m_spacing(other.m_spacing),
      m_backgroundColour(other.m_backgroundColour),
      m_stretchItems(other.m_stretchItems),
      m_itemExtent(other.m_itemExtent) {}

List& List::operator=(const List& other) {
    Widget::operator=(other);
    m_orientation = other.m_orientation;
    m_spacing = other.m_spacing;
    m_backgroundColour = other.m_backgroundColour;
    m_stretchItems = other.m_stretchItems;
    m_itemExtent = other.m_itemExtent;
    return *this;
}

List::~List() {
    clearItems();
}

void List::Draw(CDC* dc, double scale) {
    if (!dc) return;
    {
        const brindle::ShapeScope shapes(dc->Surface(), false);
        dc->Surface().FillArea(brindle::AreaOf(m_bounds),
                               brindle::Paint::Solid(brindle::ArgbOf(m_backgroundColour)));
    }
    PlaceItems(scale);
    for (std::size_t i = 0; i < m_items.size(); ++i) {  // an item may change the list
        Widget& item = *m_items[i];
        CRect both;
        if (!item.IsTransparent() && both.IntersectRect(item.GetBounds(), m_bounds)) item.Draw(dc, scale);
    }
}

bool List::OnMouseOver(CPoint) {
    OnMouseOver();
    return false;
}

void List::OnMouseOut() {
    Widget::OnMouseOut();
}

bool List::OnMouseDown(CPoint point) {
    OnMouseDown();
    Widget* const item = FindWidgetAt(point);
    if (item) item->OnMouseDown(point);
    m_pressedItem = Holds(item) ? item : nullptr;
    return true;
}

bool List::OnMouseUp(CPoint point) {
    OnMouseUp();
    if (m_pressedItem) m_pressedItem->OnMouseUp(point);
    return true;
}

void List::insertItem(Widget* item, bool atFront) {
    if (!item) return;
    std::unique_ptr<Widget> owned(item);
    if (atFront) {
        m_items.push_front(std::move(owned));
    } else {
        m_items.push_back(std::move(owned));
    }
}

Widget* List::getItem(int i) const noexcept {
    return i >= 0 && i < getItemCount() ? m_items[static_cast<std::size_t>(i)].get() : nullptr;
}

void List::clearItems() {
    m_pressedItem = nullptr;
    // The list is empty already when the items go: one that asks it finds nothing.
    std::deque<std::unique_ptr<Widget>> going;
    going.swap(m_items);
    while (!going.empty()) going.pop_front();
}

void List::recalcPos(double scale) {
    m_bounds = PlaceItems(scale);
}

Widget* List::FindWidgetAt(const CPoint& point) const noexcept {
    for (const auto& item : m_items)
        if (!item->IsTransparent() && item->GetBounds().PtInRect(point)) return item.get();
    return nullptr;
}

bool List::Holds(const Widget* item) const noexcept {
    return std::any_of(m_items.begin(), m_items.end(), [&](const auto& each) { return each.get() == item; });
}

CRect List::PlaceItems(double scale) {
    const auto scaled = [&](int length) { return brindle::Truncated(length * scale); };
    CPoint cursor{m_bounds.left, m_bounds.top};
    CRect all;
    for (const auto& item : m_items) {
        if (item->IsTransparent()) continue;
        // Kept: a width that is not the list's is scaled again each time.
        const int width = m_stretchItems ? m_bounds.Width() : scaled(item->GetBounds().Width());
        CRect place{0, 0, width, scaled(m_itemExtent)};
        place.OffsetRect(cursor.x, cursor.y);
        item->SetBounds(place);
        all.UnionRect(all, place);
        if (m_orientation == Vertical) {
            cursor.y = place.bottom;
            cursor.Offset(0, scaled(m_spacing));
        } else {
            cursor.x = place.right;
            cursor.Offset(scaled(m_spacing), 0);
        }
    }
    return all;
}

}  // namespace OV
