// LOGPEN and LOGBRUSH: an outline and a fill as callers describe them. Colours are 0x00BBGGRR.
#pragma once

#include <cstdint>

#include "brindle/framework/point.h"

struct LOGPEN {
    std::uint32_t lopnStyle;  // 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot, any other solid
    CPoint lopnWidth;
    std::uint32_t lopnColor;
};

struct LOGBRUSH {
    std::uint32_t lbStyle;  // 1: hollow
    std::uint32_t lbColor;
    std::uintptr_t lbHatch;
};
