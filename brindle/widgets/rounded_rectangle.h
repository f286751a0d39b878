// The shapes and colours that the drawing recipes share.
#pragma once

#include <cstdint>

#include "brindle/framework/rect.h"
#include "brindle/platform/shapes.h"

namespace brindle {

// Towards zero; what does not fit becomes the nearest number that does, and no number 0.
std::int32_t Truncated(double value) noexcept;
// The low 32 bits: sums of coordinates wrap, as rectangles do.
constexpr std::int32_t Wrapped(std::int64_t value) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

// A colour value (0x00BBGGRR) with the low 8 bits of alpha.
Argb ArgbOf(unsigned long colour, int alpha = 255) noexcept;
constexpr Argb WhiteWithAlpha(unsigned alpha) noexcept {
    return (alpha << 24) | 0xFFFFFFu;
}

// The same rectangle, by its extents.
RectF AreaOf(const CRect& rectangle) noexcept;

// Where the outline of a widget or frame runs: half a unit inside its bounds.
RectF FrameRectangle(const CRect& bounds) noexcept;

// The radius of corners that are `percent` of half the smaller side round; 0 when that is negative or more than half of
// the height.
int CornerRadius(const CRect& bounds, int percent) noexcept;

// A rectangle with elliptical corners, from the left end of the upper left one clockwise. Half of each corner size is
// the radius, at most half of the width or height. Kept: the rectangle is cut to whole coordinates first, so the half
// units of FrameRectangle are lost where they are positive.
ShapePath RoundedRectangle(const RectF& rectangle, int cornerX, int cornerY);
// The same with one radius, which only the height limits.
ShapePath RoundedRectangle(const RectF& rectangle, int radius);

}  // namespace brindle
