// OV_Font: font records to font objects and back, by the screen's vertical resolution. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/log_font.h"
#include "brindle/framework/ui/font_disp.h"

class BRINDLE_API OV_Font {
  public:
    // Fills the record's face name (cut to 31 bytes), height, italic, underline, strike-out, weight and character set
    // from the object; the other fields, and those whose property the object does not have, stay. Fractions of a
    // point are dropped; bold is not asked. Returns 1; 0, nothing changed, when either is null.
    static int DispatchToFont(IFontDisp* disp, LOGFONTA* lf);
    // A new font object with one reference, the caller's. Null when `lf` is null or memory runs out.
    // Kept: it is a quarter of a point larger than the record, so that dropping the fraction gives the record's height
    // back.
    static IFontDisp* FontToDispatch(const LOGFONTA* lf);
};
