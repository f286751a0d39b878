// The vertical scroll bar: track, arrows, thumb, outline. Tests: scroll_bar_test.cpp.
#include "brindle/widgets/scroll_bar.h"

#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace brindle {
namespace {

constexpr Argb kTrackColour = 0xFF646464, kLight = 0xFFC8C8C8, kBlack = 0xFF000000;
constexpr Pen kOutline{kBlack, 1, DashStyle::kSolid, false};

CRect Square(std::int64_t left, std::int64_t top, std::int32_t side) noexcept {
    return {Wrapped(left), Wrapped(top), Wrapped(left + side), Wrapped(top + side)};
}

Paint PartPaint(const RectF& area, bool held) {
    return Paint::Vertical(area, kLight, held ? kLight : kBlack);
}

// A triangle on a third of the square around it, its point up or down.
void DrawArrow(DrawingSurface& surface, const ScrollBarLook::Part& part, bool up) {
    const RectF area = AreaOf(part.place);
    surface.FillArea(area, PartPaint(area, part.held));
    CRect inner = part.place;
    inner.DeflateRect(part.place.Width() / 3, part.place.Width() / 3);
    const RectF box = AreaOf(inner);
    const float base = up ? box.y + box.height : box.y, point = up ? box.y : box.y + box.height;
    const PointF left{box.x, base}, middle{box.x + box.width / 2, point}, right{box.x + box.width, base};
    surface.FillPath(ShapePath().Line(left, middle).Line(middle, right).Line(right, left).Close(),
                     Paint::Solid(kBlack));
}

void DrawThumb(DrawingSurface& surface, const ScrollBarLook::Part& thumb) {
    const RectF box = AreaOf(thumb.place);
    surface.FillPath(ShapePath().Ellipse(box), PartPaint(box, thumb.held));
    surface.DrawPath(ShapePath().Arc(box, 90, 180).Arc(box, 270, 180), kOutline);
}

}  // namespace

ScrollBarLook PlaceScrollBar(const CRect& panel, std::int32_t width, std::int32_t contentsHeight,
                             std::int32_t offset) noexcept {
    const std::int64_t left = std::int64_t{panel.right} - width;
    const std::int64_t range = std::int64_t{contentsHeight} - panel.Height() / 2;
    const std::int64_t way = Wrapped(panel.Height() - 3 * std::int64_t{width});  // of the thumb
    const std::int64_t moved = range == 0 ? 0 : way * offset / range;
    ScrollBarLook look;
    look.track = {Wrapped(left), panel.top, panel.right, panel.bottom};
    look.upArrow.place = Square(left, panel.top, width);
    look.downArrow.place = Square(left, std::int64_t{panel.bottom} - width, width);
    look.thumb.place = Square(left, std::int64_t{panel.top} + width - moved, width);
    return look;
}

void DrawScrollBar(DrawingSurface& surface, const ScrollBarLook& look) {
    const RectF track = AreaOf(look.track);
    const ShapeScope shapes(surface, false);
    surface.FillArea(track, Paint::Solid(kTrackColour));
    DrawArrow(surface, look.upArrow, true);
    DrawArrow(surface, look.downArrow, false);
    surface.SetSmooth(true);
    DrawThumb(surface, look.thumb);
    surface.DrawPath(ShapePath().Rectangle(track), kOutline);
}

}  // namespace brindle
