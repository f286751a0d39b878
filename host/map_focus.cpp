// Tests: map_focus_test.cpp.
#include "host/map_focus.h"

#include <cmath>
#include <cstdint>

namespace brindle::host {

namespace {

// How far `to` lies from `from` in the direction; what lies aside counts three times. Nothing: it lies another way.
std::optional<std::int64_t> Distance(const CRect& from, const CRect& to, MapDirection direction) noexcept {
    const std::int64_t x = (std::int64_t{to.left} + to.right - from.left - from.right) / 2;
    const std::int64_t y = (std::int64_t{to.top} + to.bottom - from.top - from.bottom) / 2;
    const bool level = direction == MapDirection::kLeft || direction == MapDirection::kRight;
    const bool back = direction == MapDirection::kLeft || direction == MapDirection::kUp;
    const std::int64_t along = (level ? x : y) * (back ? -1 : 1);
    const std::int64_t aside = std::abs(level ? y : x);
    if (along <= 0 || aside > 3 * along) return {};
    return along + 3 * aside;
}

}  // namespace

std::optional<std::size_t> NextTarget(const std::vector<CRect>& targets, std::optional<std::size_t> from,
                                      MapDirection direction) noexcept {
    const std::size_t count = targets.size();
    if (count == 0) return {};
    const bool back = direction == MapDirection::kPrevious;
    if (!from || *from >= count) return back ? count - 1 : 0;
    if (direction == MapDirection::kNext) return (*from + 1) % count;
    if (back) return (*from + count - 1) % count;
    std::size_t nearest = *from;
    std::optional<std::int64_t> least;
    for (std::size_t i = 0; i < count; ++i) {
        const auto distance = Distance(targets[*from], targets[i], direction);
        if (!distance || (least && *least <= *distance)) continue;
        least = distance;
        nearest = i;
    }
    return nearest;
}

}  // namespace brindle::host
