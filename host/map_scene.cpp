// Lengths and rectangles of maps. Tests: map_view_test.cpp.
#include "host/map_scene.h"

#include <algorithm>
#include <cmath>

namespace brindle::host {

int Scaled(int length, double scale) noexcept {
    return static_cast<int>(std::floor(length * scale + 0.5));
}

CRect Scaled(const CRect& place, double scale) noexcept {
    return {Scaled(place.left, scale), Scaled(place.top, scale), Scaled(place.right, scale),
            Scaled(place.bottom, scale)};
}

int ScaledBorder(int border, double scale) noexcept {
    return border > 0 ? std::max(1, Scaled(border, scale)) : 0;
}

bool Contains(const CRect& rectangle, CPoint point) noexcept {
    return point.x >= rectangle.left && point.x < rectangle.right && point.y >= rectangle.top &&
           point.y < rectangle.bottom;
}

bool Meets(const CRect& a, const CRect& b) noexcept {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

CRect Union(const CRect& a, const CRect& b) noexcept {
    if (a.left >= a.right || a.top >= a.bottom) return b;
    if (b.left >= b.right || b.top >= b.bottom) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

}  // namespace brindle::host
