// CRect: a rectangle of four whole coordinates; right and bottom lie just outside it. Nothing is normalised by itself:
// a reversed rectangle has a negative width or height. Arithmetic wraps at 32 bits and is never undefined. Thread:
// any; values.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "brindle/framework/point.h"

struct CRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    constexpr std::int32_t Width() const noexcept { return Sum(right, -std::int64_t{left}); }
    constexpr std::int32_t Height() const noexcept { return Sum(bottom, -std::int64_t{top}); }

    // Whether it covers nothing.
    constexpr bool IsRectEmpty() const noexcept { return left >= right || top >= bottom; }
    constexpr bool PtInRect(CPoint point) const noexcept {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }

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

    // Becomes what both cover. False: nothing, and this is (0, 0, 0, 0).
    constexpr bool IntersectRect(const CRect& a, const CRect& b) noexcept {
        const CRect both{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                         std::min(a.bottom, b.bottom)};
        *this = a.IsRectEmpty() || b.IsRectEmpty() || both.IsRectEmpty() ? CRect() : both;
        return !IsRectEmpty();
    }
    // Becomes the smallest rectangle that holds both, of which one that is empty counts for nothing. False: both are
    // empty, and this is (0, 0, 0, 0).
    constexpr bool UnionRect(const CRect& a, const CRect& b) noexcept {
        if (a.IsRectEmpty() || b.IsRectEmpty()) {
            const CRect& other = a.IsRectEmpty() ? b : a;
            *this = other.IsRectEmpty() ? CRect() : other;
        } else {
            *this = {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                     std::max(a.bottom, b.bottom)};
        }
        return !IsRectEmpty();
    }

    friend constexpr bool operator==(const CRect&, const CRect&) noexcept = default;

  private:
    static constexpr std::int32_t Sum(std::int32_t a, std::int64_t b) noexcept {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(a + b)));
    }
};
