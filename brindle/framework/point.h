// CPoint and CSize: a place and an extent in a host's drawing coordinates.
#pragma once

#include <cstdint>

struct CPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend constexpr bool operator==(const CPoint&, const CPoint&) noexcept = default;
};

struct CSize {
    std::int32_t cx = 0;
    std::int32_t cy = 0;

    friend constexpr bool operator==(const CSize&, const CSize&) noexcept = default;
};
