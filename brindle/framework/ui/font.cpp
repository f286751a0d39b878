// CFont. Tests: dc_test.cpp.
#include "brindle/framework/ui/font.h"

int CFont::CreateFontIndirectA(const LOGFONTA* font) noexcept {
    if (!font) return 0;
    m_font = *font;
    m_font.lfFaceName[sizeof m_font.lfFaceName - 1] = '\0';
    m_made = true;
    return 1;
}

int CFont::DeleteObject() noexcept {
    const bool made = m_made;
    *this = CFont();
    return made ? 1 : 0;
}

int CFont::GetLogFont(LOGFONTA* font) const noexcept {
    if (!font || !m_made) return 0;
    *font = m_font;
    return 1;
}
