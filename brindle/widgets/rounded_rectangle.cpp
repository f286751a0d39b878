// The shapes and colours that the drawing recipes share. Tests: ov_drawing_frame_test.cpp, button_test.cpp.
#include "brindle/widgets/rounded_rectangle.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace brindle {
namespace {

using Limits = std::numeric_limits<std::int32_t>;

// Corners of 2a by 2b; whole numbers.
ShapePath RoundedPath(std::int32_t left, std::int32_t top, std::int32_t wide, std::int32_t high,
                      std::int32_t across, std::int32_t down) {
    const auto x = static_cast<float>(left), y = static_cast<float>(top);
    const auto width = static_cast<float>(wide), height = static_cast<float>(high);
    const auto a = static_cast<float>(across), b = static_cast<float>(down);
    const float right = x + width, bottom = y + height;
    ShapePath path;
    path.Arc({x, y, 2 * a, 2 * b}, 180, 90)
        .Line({x + a, y}, {right - a, y})
        .Arc({right - 2 * a, y, 2 * a, 2 * b}, 270, 90)
        .Line({right, y + b}, {right, bottom - b})
        .Arc({right - 2 * a, bottom - 2 * b, 2 * a, 2 * b}, 0, 90)
        .Line({right - a, bottom}, {x + a, bottom})
        .Arc({x, bottom - 2 * b, 2 * a, 2 * b}, 90, 90)
        .Line({x, bottom - b}, {x, y + b})
        .Close();
    return path;
}

}  // namespace

std::int32_t Truncated(double value) noexcept {
    if (std::isnan(value)) return 0;
    if (value <= Limits::min()) return Limits::min();
    if (value >= Limits::max()) return Limits::max();
    return static_cast<std::int32_t>(value);
}

Argb ArgbOf(unsigned long colour, int alpha) noexcept {
    const auto bits = static_cast<std::uint32_t>(colour);
    return (static_cast<std::uint32_t>(alpha) << 24) | ((bits & 0xFF) << 16) | (bits & 0xFF00) |
           ((bits >> 16) & 0xFF);
}

RectF AreaOf(const CRect& rectangle) noexcept {
    return {static_cast<float>(rectangle.left), static_cast<float>(rectangle.top),
            static_cast<float>(rectangle.Width()), static_cast<float>(rectangle.Height())};
}

RectF FrameRectangle(const CRect& bounds) noexcept {
    const RectF area = AreaOf(bounds);
    return {area.x + 0.5f, area.y + 0.5f, area.width - 1, area.height - 1};
}

int CornerRadius(const CRect& bounds, int percent) noexcept {
    const std::int32_t width = bounds.Width(), height = bounds.Height();
    const std::int32_t radius = Truncated(std::min(width, height) * 0.5 * (percent / 100.0));
    return radius < 0 || radius > height / 2 ? 0 : radius;
}

ShapePath RoundedRectangle(const RectF& rectangle, int cornerX, int cornerY) {
    const std::int32_t width = Truncated(std::abs(rectangle.width));
    const std::int32_t height = Truncated(rectangle.height);
    return RoundedPath(Truncated(rectangle.x), Truncated(rectangle.y), width, height,
                       std::min(width / 2, std::abs(cornerX >> 1)),
                       std::min(height / 2, std::abs(cornerY >> 1)));
}

ShapePath RoundedRectangle(const RectF& rectangle, int radius) {
    const std::int32_t height = Truncated(rectangle.height);
    const std::int32_t corner = std::min(radius, height / 2);
    return RoundedPath(Truncated(rectangle.x), Truncated(rectangle.y), Truncated(rectangle.width), height,
                       corner, corner);
}

}  // namespace brindle
