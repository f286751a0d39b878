// OV::Widget: the base of every control: a light, window-less thing with bounds in the host's drawing coordinates that
// draws itself onto a device context and is told of the mouse by its container or host. Copies are member by member.
// Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/point.h"
#include "brindle/framework/rect.h"

class CDC;

namespace brindle {
struct WidgetLayoutProbe;
}

namespace OV {

class BRINDLE_API Widget {
  public:
    virtual ~Widget();

    // What the number means is up to each widget; most take it as the scale.
    virtual void Draw(CDC* dc, double scale) = 0;

    // The point is in the host's coordinates and known to be inside: nothing is tested here. True: something changed
    // that needs a redraw. The base passes on to the operation without a point and answers false.
    virtual bool OnMouseOver(CPoint point);
    virtual void OnMouseOver();
    virtual void OnMouseOut();
    virtual bool OnMouseDown(CPoint point);
    virtual void OnMouseDown();
    virtual bool OnMouseUp(CPoint point);
    virtual void OnMouseUp();

    // Valid as long as the widget.
    const CRect& GetBounds() const noexcept { return m_bounds; }
    void SetBounds(const CRect& bounds) noexcept { m_bounds = bounds; }
    bool IsDisabled() const noexcept { return m_disabled; }
    void SetDisabled(bool disabled) noexcept { m_disabled = disabled; }
    bool IsTransparent() const noexcept { return m_transparent; }
    void SetTransparent(bool transparent) noexcept { m_transparent = transparent; }

    // The colour (0x00BBGGRR) moved towards white: 0 leaves it, 1 gives white, negative factors darken.
    // Kept: beyond 1 and below 0 channels wrap instead of stopping; callers choose colours by it.
    static unsigned long Lighter(unsigned long colour, double factor) noexcept;

  protected:
    Widget() noexcept = default;
    Widget(const Widget&) noexcept = default;
    Widget& operator=(const Widget&) noexcept = default;

    CRect m_bounds;
    bool m_mouseOver = false;
    bool m_pressed = false;  // between mouse down and mouse up
    bool m_disabled = false;
    bool m_transparent = false;  // the background is not painted

    friend struct brindle::WidgetLayoutProbe;
};

}  // namespace OV
