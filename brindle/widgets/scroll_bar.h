// The look of a vertical scroll bar, and the recipe it is drawn by.
#pragma once

#include <cstdint>

#include "brindle/framework/rect.h"

namespace brindle {

class DrawingSurface;

struct ScrollBarLook {
    struct Part {
        CRect place;
        bool held = false;  // the mouse holds it: it is flat
    };
    CRect track;  // the whole bar
    Part upArrow;
    Part downArrow;
    Part thumb;
};

// Where the bar and its parts are, along the right side of `panel` and `width` wide, when contents of that height
// are moved by `offset`, which is 0 or negative. Nothing is held. Any numbers will do.
ScrollBarLook PlaceScrollBar(const CRect& panel, std::int32_t width, std::int32_t contentsHeight,
                             std::int32_t offset) noexcept;

// Between no other shapes.
void DrawScrollBar(DrawingSurface& surface, const ScrollBarLook& look);

}  // namespace brindle
