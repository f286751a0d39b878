// CFont: a font that can be selected into a device context. It holds the description it was made from; which face is
// drawn is the drawing surface's business. Copies are independent. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/log_font.h"

class BRINDLE_API CFont {
  public:
    CFont() noexcept = default;

    // Makes the font; one it held before is dropped. 1, or 0, nothing changed, when `font` is null.
    int CreateFontIndirectA(const LOGFONTA* font) noexcept;
    // 0 when there was none.
    int DeleteObject() noexcept;
    // The description. 0, `font` unchanged, when no font was made or `font` is null.
    int GetLogFont(LOGFONTA* font) const noexcept;

  private:
    LOGFONTA m_font{};
    bool m_made = false;
};
