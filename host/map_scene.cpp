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

bool Meets(const CRect& a, const CRect& b) noexcept {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace brindle::host
