// OVDrawing: fonts, the frame recipe, the placement of text. Tests: ov_drawing_frame_test.cpp and
// ov_drawing_text_test.cpp.
#include "brindle/widgets/ov_drawing.h"

#include <algorithm>
#include <cstdlib>

#include "brindle/framework/ui/dc.h"
#include "brindle/framework/ui/font.h"
#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace {

using brindle::DashStyle;
using brindle::Paint;
using brindle::RectF;
using brindle::ShapePath;

enum FrameFill { kSolidFrame = 0, kHorizontalFrame = 1, kVerticalFrame = 2, kGlossyFrame = 3 };

constexpr unsigned kGlossTop = 0x42, kGlossBottom = 0xC8;  // alphas of white

int FillModeOf(int angle) {
    if (angle == -2) return kGlossyFrame;
    if (angle < 0) return kSolidFrame;
    return angle == 0 || angle == 180 ? kVerticalFrame : kHorizontalFrame;
}

DashStyle DashOf(int penStyle) {
    return penStyle >= 1 && penStyle <= 4 ? static_cast<DashStyle>(penStyle) : DashStyle::kSolid;
}

Paint FramePaint(int fillMode, const RectF& frame, unsigned long colour1, unsigned long colour2) {
    const brindle::Argb first = brindle::ArgbOf(colour1), second = brindle::ArgbOf(colour2);
    if (fillMode == kSolidFrame || fillMode == kGlossyFrame) return Paint::Solid(first);
    return fillMode == kHorizontalFrame ? Paint::Horizontal(frame, first, second)
                                        : Paint::Vertical(frame, first, second);
}

void DrawGloss(brindle::DrawingSurface& surface, const ShapePath& path, const RectF& frame) {
    const RectF lower{frame.x, frame.y + frame.height / 2, frame.width, frame.height / 2};
    surface.ClipShapes(path, false);
    surface.ClipShapes(ShapePath().Rectangle(lower), true);
    surface.FillArea(lower, Paint::Vertical(lower, brindle::WhiteWithAlpha(kGlossTop),
                                            brindle::WhiteWithAlpha(kGlossBottom)));
    surface.UnclipShapes();
}

// Differences and halves as whole numbers towards zero, in 64 bits: no bounds overflow.
using Wide = std::int64_t;

void DrawUpright(CDC& dc, const CStringA& text, const CRect& rect, OVDrawing::HorizontalAlignment horizontal,
                 OVDrawing::VerticalAlignment vertical) {
    unsigned format = kTextWordBreak | kTextNoPrefix | kTextWordEllipsis;
    CRect measured = rect;
    dc.DrawTextA(text, measured, format | kTextCalculate);
    if (horizontal == OVDrawing::Centre) {
        measured.OffsetRect(brindle::Wrapped(-((Wide{measured.right} - rect.right) / 2)), 0);
        format |= kTextCentre;
    } else if (horizontal == OVDrawing::Right) {
        measured.OffsetRect(brindle::Wrapped(Wide{rect.right} - measured.right), 0);
        format |= kTextRight;
    }
    if (std::abs(Wide{measured.Width()}) > std::abs(Wide{rect.Width()})) measured.right = rect.right;
    if (std::abs(Wide{measured.Height()}) > std::abs(Wide{rect.Height()})) {
        measured.bottom = rect.bottom;
    } else if (vertical == OVDrawing::Middle) {
        measured.OffsetRect(0, brindle::Wrapped(-((Wide{measured.bottom} - rect.bottom) / 2)));
    } else if (vertical == OVDrawing::Bottom) {
        measured.OffsetRect(0, brindle::Wrapped(Wide{rect.bottom} - measured.bottom));
    }
    dc.DrawTextA(text, measured, format);
}

// A line that reads downwards starts at its upper right, one that reads upwards at its lower left. Kept: a mapping
// that is not in pixels has its own vertical rules.
Wide DownwardY(const CRect& rect, Wide length, OVDrawing::VerticalAlignment vertical, bool pixels) {
    switch (vertical) {
        case OVDrawing::Middle:
            return pixels ? rect.top + std::max<Wide>(0, (rect.bottom - length - rect.top) / 2)
                          : length / 2 - std::abs(Wide{rect.Height()}) / 2 + rect.top;
        case OVDrawing::Bottom:
            return pixels ? rect.bottom - length : rect.bottom + length;
        default:
            return rect.top;
    }
}

Wide UpwardY(const CRect& rect, Wide length, OVDrawing::VerticalAlignment vertical, bool pixels) {
    switch (vertical) {
        case OVDrawing::Middle:
            return pixels ? rect.top + length + std::max<Wide>(0, (rect.bottom - length - rect.top) / 2)
                          : rect.top - length / 2 - std::abs(Wide{rect.Height()}) / 2;
        case OVDrawing::Top:
            return pixels ? rect.top + length : rect.top - length;
        default:
            return rect.bottom;
    }
}

void DrawTurned(CDC& dc, const CStringA& text, const CRect& rect, OVDrawing::HorizontalAlignment horizontal,
                OVDrawing::VerticalAlignment vertical, bool downward) {
    const CSize extent = dc.GetTextExtent(text);
    const bool pixels = dc.GetMapMode() == kMapPixels;
    const Wide middle = rect.left + std::abs(Wide{rect.Width()}) / 2;
    const Wide half = extent.cy / 2;
    Wide x = downward ? Wide{rect.left} + extent.cy : rect.left;
    if (horizontal == OVDrawing::Centre) x = downward ? middle + half : middle - half;
    if (horizontal == OVDrawing::Right) x = downward ? rect.right : Wide{rect.right} - extent.cy;
    const Wide y =
        downward ? DownwardY(rect, extent.cx, vertical, pixels) : UpwardY(rect, extent.cx, vertical, pixels);
    dc.ExtTextOutA(brindle::Wrapped(x), brindle::Wrapped(y), rect, text);
}

}  // namespace

int OVDrawing::CreateFontA(CFont& font, LOGFONTA lf, float scale, Escapement escapement) {
    static constexpr int kTurns[] = {0, 0, 900, -900};
    const int turn = escapement;
    if (turn >= 0 && turn <= 3) lf.lfEscapement = lf.lfOrientation = kTurns[turn];
    lf.lfHeight = brindle::Truncated(static_cast<float>(lf.lfHeight) * scale);
    return font.CreateFontIndirectA(&lf);
}

int OVDrawing::DrawFrame(CDC* dc, const CRect& rectangle, LOGBRUSH& fill, LOGBRUSH& fill2, int angle,
                         LOGPEN& pen, const CPoint& roundness) {
    constexpr std::uint32_t kHollow = 1;
    const int fillMode = FillModeOf(angle);
    unsigned long colour1 = fill.lbColor, colour2 = fill2.lbColor;
    if (fillMode == kHorizontalFrame || fillMode == kVerticalFrame) std::swap(colour1, colour2);
    return DrawFrame(dc, rectangle, colour1, colour2, pen.lopnColor, pen.lopnWidth.y,
                     static_cast<int>(pen.lopnStyle), fillMode, fill.lbStyle == kHollow, roundness);
}

int OVDrawing::DrawFrame(CDC* dc, const CRect& rectangle, unsigned long colour1, unsigned long colour2,
                         unsigned long borderColour, int borderWidth, int penStyle, int fillMode, bool hollow,
                         const CPoint& roundness) {
    if (!dc) return 1;
    CRect bounds = rectangle;
    bounds.NormalizeRect();
    const RectF frame = brindle::FrameRectangle(bounds);
    const ShapePath path = brindle::RoundedRectangle(frame, roundness.x, roundness.y);
    brindle::DrawingSurface& surface = dc->Surface();
    const brindle::ShapeScope shapes(surface, true);
    if (!hollow) surface.FillPath(path, FramePaint(fillMode, frame, colour1, colour2));
    if (fillMode == kGlossyFrame) DrawGloss(surface, path, frame);
    if (borderWidth > 0)
        surface.DrawPath(
            path, {brindle::ArgbOf(borderColour), static_cast<float>(borderWidth), DashOf(penStyle), true});
    return 1;
}

void OVDrawing::DrawTextA(CDC* dc, const CStringA& text, const CRect& rectangle,
                          HorizontalAlignment horizontal, VerticalAlignment vertical, Escapement escapement,
                          CFont* font) {
    if (!dc || text.IsEmpty()) return;
    CFont* const previous = font ? dc->SelectObject(font) : nullptr;
    if (escapement == Vertical90 || escapement == Vertical270) {
        DrawTurned(*dc, text, rectangle, horizontal, vertical, escapement == Vertical270);
    } else {
        DrawUpright(*dc, text, rectangle, horizontal, vertical);
    }
    if (font) dc->SelectObject(previous);
}
