// CPoint and CSize: a place and an extent in a host's drawing coordinates. Arithmetic wraps at 32 bits. Thread:
// any; values.
#pragma once

#include <cstdint>

struct CPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    // Moves the place.
    constexpr void Offset(std::int32_t byX, std::int32_t byY) noexcept {
        x = Sum(x, byX);
        y = Sum(y, byY);
    }

    friend constexpr bool operator==(const CPoint&, const CPoint&) noexcept = default;

  private:
    static constexpr std::int32_t Sum(std::int32_t a, std::int32_t b) noexcept {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
    }
};

struct CSize {
    std::int32_t cx = 0;
    std::int32_t cy = 0;

    friend constexpr bool operator==(const CSize&, const CSize&) noexcept = default;
};
