// CDC: the state of text, and lines of text placed on the surface. Tests: dc_test.cpp.
#include "brindle/framework/ui/dc.h"

#include <algorithm>

#include "brindle/framework/ui/bitmap.h"
#include "brindle/framework/ui/font.h"
#include "brindle/framework/ui/text_layout.h"
#include "brindle/platform/code_page.h"
#include "brindle/platform/drawing_surface.h"

namespace {
template <class Value>
Value Exchange(Value& place, Value value) noexcept {
    const Value before = place;
    place = value;
    return before;
}
}  // namespace

CDC::CDC(brindle::DrawingSurface& surface) : m_surface(surface) {}
CDC::~CDC() = default;

int CDC::SaveDC() {
    m_saved.push_back(m_state);
    m_surface.Save();
    return static_cast<int>(m_saved.size());
}

bool CDC::RestoreDC(int saved) {
    const int count = static_cast<int>(m_saved.size());
    const int wanted = saved < 0 ? count + 1 + saved : saved;
    if (wanted < 1 || wanted > count) return false;
    m_state = m_saved[static_cast<std::size_t>(wanted - 1)];
    for (int i = count; i >= wanted; --i) m_surface.Restore();
    m_saved.resize(static_cast<std::size_t>(wanted - 1));
    return true;
}

CFont* CDC::SelectObject(CFont* font) noexcept {
    return Exchange(m_state.font, font);
}

unsigned long CDC::SetTextColor(unsigned long colour) noexcept {
    return Exchange(m_state.textColour, static_cast<std::uint32_t>(colour & 0xFFFFFF));
}

int CDC::SetBkMode(int ground) noexcept {
    return Exchange(m_state.ground, ground);
}

int CDC::SetMapMode(int mode) noexcept {
    return Exchange(m_state.mapMode, mode);
}

void CDC::ClipToRectangle(const CRect& rectangle) {
    m_surface.ClipToRectangle(rectangle);
}

LOGFONTA CDC::Font() const {
    LOGFONTA font{};
    if (m_state.font) m_state.font->GetLogFont(&font);
    return font;
}

int CDC::DrawTextA(const CStringA& text, CRect& rectangle, unsigned format) {
    const LOGFONTA font = Font();
    CSize line;
    if (!m_surface.TextExtent(font, text.view(), line)) return 0;
    const bool calculate = (format & kTextCalculate) != 0;
    const brindle::TextLayout layout{rectangle.Width(), (format & kTextWordBreak) != 0,
                                     !calculate && (format & kTextWordEllipsis) != 0,
                                     brindle::CurrentCodePage().Selected() == brindle::kCodePageUtf8};
    const auto lines = brindle::BreakIntoLines(text.view(), layout, [&](std::string_view part) {
        CSize extent;
        m_surface.TextExtent(font, part, extent);
        return extent.cx;
    });
    const int height = line.cy * static_cast<int>(lines.size());
    if (calculate) {
        int widest = 0;
        for (const auto& each : lines) widest = std::max(widest, each.width);
        rectangle.right = rectangle.left + widest;
        rectangle.bottom = rectangle.top + height;
        return height;
    }
    int y = rectangle.top;
    for (const auto& each : lines) {
        const int room = rectangle.Width() - each.width;
        const int shift = format & kTextCentre ? room / 2 : format & kTextRight ? room : 0;
        m_surface.DrawRun({each.text,
                           {rectangle.left + shift, y},
                           rectangle,
                           font,
                           m_state.textColour,
                           m_state.ground != kGroundTransparent});
        y += line.cy;
    }
    return height;
}

CSize CDC::GetTextExtent(const CStringA& text) const {
    CSize extent;
    m_surface.TextExtent(Font(), text.view(), extent);
    return extent;
}

bool CDC::ExtTextOutA(int x, int y, const CRect& clip, const CStringA& text) {
    return m_surface.DrawRun(
        {text.view(), {x, y}, clip, Font(), m_state.textColour, m_state.ground != kGroundTransparent});
}

bool CDC::DrawBitmap(const CRect& rectangle, const CBitmap& bitmap) {
    CRect target = rectangle;
    target.NormalizeRect();
    const brindle::Image* picture = bitmap.Picture();
    if (!picture || target.IsRectEmpty()) return false;
    m_surface.DrawPicture({*picture, 0, {0, 0, picture->width, picture->height}, target});
    return true;
}
