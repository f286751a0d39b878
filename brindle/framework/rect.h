// CRect: a rectangle of four whole coordinates; right and bottom lie just outside it. Nothing is normalised by itself:
// a reversed rectangle has a negative width or height. Arithmetic wraps at 32 bits and is never undefined.
#pragma once

#include <cstdint>
#include <utility>

struct CRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    constexpr std::int32_t Width() const noexcept { return Sum(right, -std::int64_t{left}); }
    constexpr std::int32_t Height() const noexcept { return Sum(bottom, -std::int64_t{top}); }

    // Swaps the sides that stand the wrong way round.
    constexpr void NormalizeRect() noexcept {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    constexpr void OffsetRect(std::int32_t x, std::int32_t y) noexcept {
        left = Sum(left, x);
        right = Sum(right, x);
        top = Sum(top, y);
        bottom = Sum(bottom, y);
    }
    // Moves every side inwards, by x on the left and on the right, by y at the top and at the bottom.
    constexpr void DeflateRect(std::int32_t x, std::int32_t y) noexcept {
        left = Sum(left, x);
        right = Sum(right, -std::int64_t{x});
        top = Sum(top, y);
        bottom = Sum(bottom, -std::int64_t{y});
    }

    friend constexpr bool operator==(const CRect&, const CRect&) noexcept = default;

  private:
    static constexpr std::int32_t Sum(std::int32_t a, std::int64_t b) noexcept {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(a + b)));
    }
};
