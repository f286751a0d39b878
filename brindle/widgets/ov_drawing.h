// OVDrawing: what widgets draw with: scaled and turned fonts, the frame, aligned and turned text. A device context
// that is null draws nothing; it and what is drawn stay the caller's. Colours are 0x00BBGGRR. Thread: the user
// interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/log_font.h"
#include "brindle/framework/log_pen.h"
#include "brindle/framework/point.h"
#include "brindle/framework/rect.h"
#include "brindle/framework/string_a.h"

class CDC;
class CFont;

class BRINDLE_API OVDrawing {
  public:
    enum HorizontalAlignment { Left = 0, Centre = 1, Right = 2 };
    // Kept: 0 is the bottom and 2 the top; stored by everyone who stores one.
    enum VerticalAlignment { Bottom = 0, Middle = 1, Top = 2 };
    enum Escapement {
        Default = 0,
        Horizontal = 1,
        Vertical90 = 2,   // a quarter turn counter-clockwise: reads upwards
        Vertical270 = 3,  // a quarter turn clockwise: reads downwards
    };

    // Makes `font` from the record, its height scaled and cut to a whole number, turned as `escapement` says (0 and 1
    // upright; any number beyond the four leaves the record's own turn). Returns 1, or 0 when it could not be made.
    static int CreateFontA(CFont& font, LOGFONTA lf, float scale, Escapement escapement);

    // A rounded, filled and outlined rectangle. The brushes' colours and the angle say how it is filled: -2 glossy,
    // any other negative one solid, 0 and 180 from the second colour at the top to the first at the bottom, any other
    // positive one from the second at the left to the first at the right. A hollow first brush fills nothing.
    // Kept: the outline is as wide as the vertical part of the pen's width says, not the horizontal one.
    // Returns 1.
    static int DrawFrame(CDC* dc, const CRect& rectangle, LOGBRUSH& fill, LOGBRUSH& fill2, int angle,
                         LOGPEN& pen, const CPoint& roundness);
    // The same by colours. fillMode: 0 solid and 3 glossy of the first colour, 1 from the first at the left to the
    // second at the right, any other from the first at the top to the second at the bottom; the gloss lies on a hollow
    // frame too. penStyle as in LOGPEN. No outline when borderWidth is not above 0. Returns 1.
    static int DrawFrame(CDC* dc, const CRect& rectangle, unsigned long colour1, unsigned long colour2,
                         unsigned long borderColour, int borderWidth, int penStyle, int fillMode, bool hollow,
                         const CPoint& roundness);

    // Draws the text into the rectangle, upright in lines broken at words, or turned in one line, with `font` (null:
    // the one selected). A font for turned text must itself be turned (CreateFontA).
    static void DrawTextA(CDC* dc, const CStringA& text, const CRect& rectangle,
                          HorizontalAlignment horizontal, VerticalAlignment vertical, Escapement escapement,
                          CFont* font);
};
