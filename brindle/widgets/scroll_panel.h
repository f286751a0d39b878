// OV::ScrollPanel: a window of its own bounds onto one widget, its contents, with a vertical scroll bar when they are
// higher than the panel. The panel owns the contents. Thread: the user interface's.
#pragma once

#include <memory>

#include "brindle/framework/export.h"
#include "brindle/widgets/widget.h"

namespace brindle {
struct ScrollPanelLayoutProbe;
}

namespace OV {

class BRINDLE_API ScrollPanel : public Widget {
  public:
    enum ScrollBarPart : int {
        PartNone = 0,  // not on the bar: the contents
        PartUpArrow = 1,
        PartThumb = 2,
        PartDownArrow = 3,
        PartTrackAbove = 4,  // on the bar, above the middle of the thumb
        PartTrackBelow = 5,
    };

    // Takes the contents over; null: none. They must be in no other panel or list.
    explicit ScrollPanel(Widget* contents);
    // Bounds and flags; contents have one owner, so a copy starts without any, unscrolled, and one that is assigned to
    // keeps its own as they are scrolled.
    ScrollPanel(const ScrollPanel& other);
    ScrollPanel& operator=(const ScrollPanel& other);
    ~ScrollPanel() override;

    // The number is the scale of the bar, 20 wide before scaling, and goes on to the contents, which are drawn within
    // the panel's bounds, moved and as much narrower as the bar is wide, and must stay the panel's meanwhile. Their
    // bounds come back; what they place while being drawn stays where it was seen.
    // Kept: this clip replaces the one around the panel.
    void Draw(CDC* dc, double scale) override;

    // The bar's own parts answer true; the contents hear of everything else, and answer. Points go on as they are.
    // What is hit is decided by where the parts were last drawn.
    // Kept: while an arrow is held each movement of the mouse scrolls by another half panel; on the track nothing does.
    using Widget::OnMouseOver;
    bool OnMouseOver(CPoint point) override;
    void OnMouseOut() override;
    using Widget::OnMouseDown;
    bool OnMouseDown(CPoint point) override;
    // True. The contents hear of it when the mouse went down on them and is not over the bar.
    using Widget::OnMouseUp;
    bool OnMouseUp(CPoint point) override;

    // Draws the bar and remembers where its parts are.
    virtual void drawVerticalScrollbar(CDC* dc, double scale);

    // Null: none. They stay the panel's.
    Widget* getContents() const noexcept { return m_contents.get(); }
    // Takes these over and destroys those before; the same ones stay. How far is scrolled stays, too.
    void setContents(Widget* contents);
    // Gives the contents to the caller: the panel has none any more. Null: there were none.
    Widget* releaseContents() noexcept { return m_contents.release(); }

  private:
    void DrawContents(CDC& dc, double scale);
    int ContentsHeight() const noexcept { return m_contents ? m_contents->GetBounds().Height() : 0; }
    ScrollBarPart HitTest(const CPoint& point) const noexcept;
    void AdjustOffset(ScrollBarPart part, CPoint point) noexcept;
    int DraggedOffset(CPoint point) const noexcept;

    std::unique_ptr<Widget> m_contents;
    CRect m_upArrow;
    CRect m_downArrow;
    CRect m_thumb;
    int m_offset = 0;  // of the contents; never positive
    ScrollBarPart m_capturedPart = PartNone;

    friend struct brindle::ScrollPanelLayoutProbe;
};

}  // namespace OV
