// OV::ScrollPanel. Tests: scroll_panel_test.cpp.
#include "brindle/widgets/scroll_panel.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "brindle/framework/ui/dc.h"
#include "brindle/widgets/kept_bounds.h"
#include "brindle/widgets/rounded_rectangle.h"
#include "brindle/widgets/scroll_bar.h"

namespace OV {
namespace {

using Wide = std::int64_t;

std::int32_t BarWidth(double scale) noexcept {
    return brindle::Truncated(scale * 20);
}

class SavedContext {
  public:
    explicit SavedContext(CDC& dc) : m_dc(dc), m_saved(dc.SaveDC()) {}
    SavedContext(const SavedContext&) = delete;
    SavedContext& operator=(const SavedContext&) = delete;
    ~SavedContext() { m_dc.RestoreDC(m_saved); }

  private:
    CDC& m_dc;
    int m_saved;
};

}  // namespace

ScrollPanel::ScrollPanel(Widget* contents) : m_contents(contents) {}
ScrollPanel::ScrollPanel(const ScrollPanel& other) : Widget(other) {}

ScrollPanel& ScrollPanel::operator=(const ScrollPanel& other) {
    Widget::operator=(other);
    return *this;
}

ScrollPanel::~ScrollPanel() = default;

void ScrollPanel::setContents(Widget* contents) {
    if (contents != m_contents.get()) m_contents.reset(contents);
}

void ScrollPanel::Draw(CDC* dc, double scale) {
    if (!dc) return;
    const SavedContext saved(*dc);
    dc->ClipToRectangle(m_bounds);
    if (m_contents) DrawContents(*dc, scale);
}

void ScrollPanel::DrawContents(CDC& dc, double scale) {
    const brindle::KeptBounds kept(*m_contents);
    const bool scrolls = m_bounds.Height() < ContentsHeight();
    if (scrolls) {
        CRect place = m_contents->GetBounds();
        place.right = brindle::Wrapped(Wide{place.right} - BarWidth(scale));
        place.OffsetRect(0, m_offset);
        m_contents->SetBounds(place);
    }
    m_contents->Draw(&dc, scale);
    if (scrolls) drawVerticalScrollbar(&dc, scale);
}

void ScrollPanel::drawVerticalScrollbar(CDC* dc, double scale) {
    if (!dc) return;
    brindle::ScrollBarLook look =
        brindle::PlaceScrollBar(m_bounds, BarWidth(scale), ContentsHeight(), m_offset);
    look.upArrow.held = m_capturedPart == PartUpArrow;
    look.downArrow.held = m_capturedPart == PartDownArrow;
    look.thumb.held = m_capturedPart == PartThumb;
    m_upArrow = look.upArrow.place;
    m_downArrow = look.downArrow.place;
    m_thumb = look.thumb.place;
    brindle::DrawScrollBar(dc->Surface(), look);
}

bool ScrollPanel::OnMouseOver(CPoint point) {
    OnMouseOver();
    if (m_contents && m_capturedPart == PartNone) return m_contents->OnMouseOver(point);
    AdjustOffset(m_capturedPart, point);
    return true;
}

void ScrollPanel::OnMouseOut() {
    Widget::OnMouseOut();
    if (m_contents) m_contents->OnMouseOut();
}

bool ScrollPanel::OnMouseDown(CPoint point) {
    OnMouseDown();
    m_capturedPart = HitTest(point);
    if (m_contents && m_capturedPart == PartNone) return m_contents->OnMouseDown(point);
    AdjustOffset(m_capturedPart, point);
    return true;
}

bool ScrollPanel::OnMouseUp(CPoint point) {
    OnMouseUp();
    if (m_contents && m_capturedPart == PartNone && HitTest(point) == PartNone) m_contents->OnMouseUp(point);
    m_capturedPart = PartNone;
    return true;
}

ScrollPanel::ScrollBarPart ScrollPanel::HitTest(const CPoint& point) const noexcept {
    if (m_upArrow.PtInRect(point)) return PartUpArrow;
    if (m_downArrow.PtInRect(point)) return PartDownArrow;
    if (m_thumb.PtInRect(point)) return PartThumb;
    const CRect bar{m_upArrow.left, m_upArrow.top, m_downArrow.right, m_downArrow.bottom};
    if (!bar.PtInRect(point)) return PartNone;
    return point.y < (Wide{m_thumb.top} + m_thumb.bottom) / 2 ? PartTrackAbove : PartTrackBelow;
}

void ScrollPanel::AdjustOffset(ScrollBarPart part, CPoint point) noexcept {
    const Wide half = m_bounds.Height() / 2;
    Wide offset = m_offset;
    if (part == PartUpArrow) offset += half;
    if (part == PartDownArrow) offset -= half;
    if (part == PartThumb) offset = DraggedOffset(point);
    // Half a panel of the contents' end stays in sight.
    const Wide least = std::max(half - ContentsHeight(), Wide{std::numeric_limits<std::int32_t>::min()});
    m_offset = static_cast<int>(std::min(std::max(offset, least), Wide{0}));
}

int ScrollPanel::DraggedOffset(CPoint point) const noexcept {
    const Wide fromTop = Wide{point.y} - m_bounds.top;
    // Kept: a distance from the top is compared with a place.
    const bool lower = fromTop > (Wide{m_bounds.bottom} + m_bounds.top) / 2;
    const Wide reach = m_thumb.Height() / 2;
    const Wide along = fromTop + (lower ? reach : -reach) - m_upArrow.Height();
    const Wide way = Wide{m_bounds.Height()} - m_downArrow.Height() - m_upArrow.Height();
    const double part = static_cast<double>(along) / static_cast<double>(way);
    const double ratio = part > 0 ? std::min(part, 1.0) : 0;  // 0 of 0 is 0
    const Wide range = Wide{ContentsHeight()} - m_bounds.Height() / 2;
    return brindle::Wrapped(-Wide{brindle::Truncated(static_cast<double>(range) * ratio)});
}

}  // namespace OV
