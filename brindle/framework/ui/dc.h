// CDC: a device context: a drawing surface together with what the next text is drawn with. The host makes one for each
// paint (a desktop host with brindle::qt) and hands it to what draws. The surface is not owned and must outlive
// it. Fonts are not owned either: a selected one must live until another is selected. Colours are 0x00BBGGRR and
// are cut to 24 bits.
//
// A context starts with no font selected (a default of the surface), black text on a painted (opaque) ground, and
// the plain pixel mapping. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/point.h"
#include "brindle/framework/rect.h"
#include "brindle/framework/string_a.h"

class CBitmap;
class CFont;
struct LOGFONTA;
namespace brindle {
class DrawingSurface;
}

// Mapping modes: all but kMapPixels are a matter of the host, which has set up the surface accordingly.
constexpr int kMapPixels = 1;
// Grounds of text.
constexpr int kGroundTransparent = 1;
constexpr int kGroundOpaque = 2;
// How DrawTextA places a text, to be added up. The numbers are those hosts use.
enum TextFormat : unsigned {
    kTextCentre = 0x1,
    kTextRight = 0x2,
    kTextWordBreak = 0x10,
    kTextCalculate = 0x400,
    kTextNoPrefix = 0x800,  // "&" is always a character here, with and without it
    kTextWordEllipsis = 0x40000,
};

class BRINDLE_API CDC {
  public:
    // Draws on the surface (borrowed) from now on.
    explicit CDC(brindle::DrawingSurface& surface);
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    ~CDC();

    // Keeps clip, font, text colour, ground and mapping mode. Returns the number of the kept state, from 1.
    int SaveDC();
    // Brings a state back and drops it and the later ones; negative numbers count from the last one (-1). False,
    // nothing changed, when there is no such state.
    bool RestoreDC(int saved = -1);

    // Returns the font selected before. Null: none.
    CFont* SelectObject(CFont* font) noexcept;
    // Each returns the value before.
    unsigned long SetTextColor(unsigned long colour) noexcept;
    int SetBkMode(int ground) noexcept;
    int SetMapMode(int mode) noexcept;
    unsigned long GetTextColor() const noexcept { return m_state.textColour; }
    int GetBkMode() const noexcept { return m_state.ground; }
    int GetMapMode() const noexcept { return m_state.mapMode; }

    // From now on nothing is drawn outside; replaces any earlier clip.
    void ClipToRectangle(const CRect& rectangle);

    // Draws into the rectangle, from its top, and not outside it; `format` is a sum of TextFormat. Lines end at CR, LF
    // or both; with kTextWordBreak also at spaces, where the line would be wider than the rectangle (the spaces there
    // are dropped). With kTextWordEllipsis a word wider than the rectangle is cut and ends in "...".
    //
    // With kTextCalculate nothing is drawn or cut: `rectangle` keeps its left and top and becomes as wide as the widest
    // line and as high as the lines.
    //
    // Returns the height of the lines; 0, nothing drawn or changed, when the surface has no fonts.
    int DrawTextA(const CStringA& text, CRect& rectangle, unsigned format);
    // How long the text is along its line, and how high; (0, 0) when the surface has no fonts.
    CSize GetTextExtent(const CStringA& text) const;
    // One line with its upper left corner at (x, y), turned by the font, clipped to the rectangle. False, nothing
    // drawn, when the surface has no fonts.
    bool ExtTextOutA(int x, int y, const CRect& clip, const CStringA& text);

    // The whole bitmap, scaled to fill the rectangle. False, nothing drawn, when either is empty.
    bool DrawBitmap(const CRect& rectangle, const CBitmap& bitmap);

    brindle::DrawingSurface& Surface() const noexcept { return m_surface; }

  private:
    struct State {
        CFont* font = nullptr;
        std::uint32_t textColour = 0;
        int ground = kGroundOpaque;
        int mapMode = kMapPixels;
    };
    LOGFONTA Font() const;

    brindle::DrawingSurface& m_surface;
    State m_state;
    std::vector<State> m_saved;
};
