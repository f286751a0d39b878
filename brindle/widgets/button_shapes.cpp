// The recipe of a button's shapes. Tests: button_test.cpp, and the pictures of platform/qt/button_picture_test.cpp.
#include "brindle/widgets/button_shapes.h"

#include <algorithm>

#include "brindle/widgets/rounded_rectangle.h"

namespace brindle {
namespace {

constexpr std::uint32_t kSheenWhite = 0x28;
constexpr float kSheenInset = 30;  // part of the width
constexpr double kGlowLeft = 0.35, kGlowTop = 0.15, kGlowWidth = 1.7, kGlowHeight = 2.3;

CRect Bounds(const ButtonLook& look, CPoint at) {
    CRect bounds{0, 0, look.width, look.height};
    bounds.OffsetRect(at.x, at.y);
    return bounds;
}

Paint BodyPaint(const ButtonLook& look, const RectF& frame) {
    switch (look.fill) {
        case ButtonLook::kDown:
            return Paint::Vertical(frame, look.first, look.second);
        case ButtonLook::kAcross:
            return Paint::Horizontal(frame, look.first, look.second);
        default:
            return Paint::Solid(look.first);
    }
}

struct Highlight {
    RectF area;
    Paint paint;
};

// On the half where the caption's letters have their tops.
Highlight HighlightOf(const ButtonLook& look, const RectF& f) {
    const Argb strong = WhiteWithAlpha(look.strongWhite), weak = WhiteWithAlpha(look.strongWhite / 3);
    RectF area;
    switch (look.shine) {
        case ButtonLook::kTopShine:
            area = {f.x, f.y, f.width, f.height / 2};
            break;
        case ButtonLook::kLeftShine:
            area = {f.x, f.y, f.width / 2, f.height};
            return {area, Paint::Horizontal(area, strong, weak)};
        case ButtonLook::kRightShine:
            area = {f.x + f.width / 2, f.y, f.width / 2, f.height};
            return {area, Paint::Horizontal(area, weak, strong)};
        default:
            break;
    }
    return {area, Paint::Vertical(area, strong, weak)};
}

void DrawShine(DrawingSurface& surface, const ButtonLook& look, const RectF& frame, const ShapePath& path) {
    if (look.shine == ButtonLook::kNoShine) return;
    if (look.shine == ButtonLook::kSheen) {
        const float inset = frame.width / kSheenInset;
        const RectF inner{frame.x + inset, frame.y + inset, frame.width - 2 * inset,
                          frame.height - 2 * inset};
        surface.FillPath(RoundedRectangle(inner, look.radius), Paint::Solid(WhiteWithAlpha(kSheenWhite)));
        return;
    }
    const Highlight highlight = HighlightOf(look, frame);
    surface.ClipShapes(path, false);
    surface.ClipShapes(RoundedRectangle(highlight.area, look.radius), true);
    surface.FillArea(highlight.area, highlight.paint);
}

// A large ellipse that reaches far below the button.
RectF BottomRadialEllipse(const RectF& f) {
    return {static_cast<float>(f.x - kGlowLeft * f.width), static_cast<float>(f.y - kGlowTop * f.height),
            static_cast<float>(kGlowWidth * f.width), static_cast<float>(kGlowHeight * f.height)};
}

void DrawGlow(DrawingSurface& surface, const ButtonLook& look, const RectF& frame) {
    if (look.glowWhite == 0) return;
    const RectF ellipse = BottomRadialEllipse(frame);
    const PointF centre{frame.x + frame.width / 2, frame.y + frame.height / 3};
    surface.FillPath(ShapePath().Ellipse(ellipse).Close(),
                     Paint::Centre(ellipse, centre, WhiteWithAlpha(look.glowWhite), WhiteWithAlpha(0)));
}

// The frame's clip stays behind.
void DrawBody(DrawingSurface& surface, const ButtonLook& look, CPoint at) {
    if (look.fill == ButtonLook::kNoBody) return;
    const RectF frame = FrameRectangle(Bounds(look, at));
    const ShapePath path = RoundedRectangle(frame, look.radius);
    surface.FillPath(path, BodyPaint(look, frame));
    DrawShine(surface, look, frame, path);
    surface.ClipShapes(path, false);
    DrawGlow(surface, look, frame);
}

void DrawOutline(DrawingSurface& surface, const ButtonLook& look, CPoint at) {
    if (look.outlineWidth <= 0) return;
    const RectF frame = FrameRectangle(Bounds(look, at));
    surface.DrawPath(RoundedRectangle(frame, look.radius),
                     {look.outline, static_cast<float>(look.outlineWidth)});
}

}  // namespace

std::string_view ButtonShapes::Look() const {
    static_assert(std::has_unique_object_representations_v<decltype(m_bytes)>, "compared by its bytes");
    return {reinterpret_cast<const char*>(&m_bytes), sizeof m_bytes};
}

// Where corners overlap, or the sheen is inset by more than there is, shapes reach far out of the bounds.
CRect ButtonShapes::Extent(CPoint at) const {
    const ButtonLook& look = m_bytes.look;
    constexpr std::int32_t kLargest = 1 << 15;
    const bool ordinary = look.width > 0 && look.height > 0 && look.width < kLargest &&
                          look.height < kLargest && 2 * look.radius <= look.width &&
                          look.width / 15 < look.height && look.outlineWidth < kLargest;
    if (!ordinary) return {};
    const std::int32_t beyond = std::max(look.outlineWidth, 0) / 2 + 2;
    CRect extent = Bounds(look, at);
    extent.DeflateRect(-beyond, -beyond);
    return extent;
}

void ButtonShapes::Draw(DrawingSurface& surface, CPoint at) const {
    const ShapeScope shapes(surface, true);
    if (m_bytes.parts != ButtonParts::kOutline) DrawBody(surface, m_bytes.look, at);
    if (m_bytes.parts == ButtonParts::kBoth) surface.UnclipShapes();
    if (m_bytes.parts != ButtonParts::kBody) DrawOutline(surface, m_bytes.look, at);
}

}  // namespace brindle
