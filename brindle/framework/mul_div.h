// MulDiv: a * b / c without overflow on the way, halves rounded away from zero.
#pragma once

#include <cstdint>
#include <limits>

namespace brindle {

// -1 when c is 0 or the result does not fit.
constexpr std::int32_t MulDiv(std::int32_t a, std::int32_t b, std::int32_t c) noexcept {
    if (c == 0) return -1;
    const std::int64_t product = std::int64_t{a} * b;
    const std::int64_t divisor = c < 0 ? -std::int64_t{c} : c;
    const std::int64_t magnitude = ((product < 0 ? -product : product) + divisor / 2) / divisor;
    if (magnitude > std::numeric_limits<std::int32_t>::max()) return -1;
    return static_cast<std::int32_t>((product < 0) != (c < 0) ? -magnitude : magnitude);
}

}  // namespace brindle
