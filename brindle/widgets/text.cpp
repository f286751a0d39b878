// OV::Text. Tests: text_test.cpp.
#include "brindle/widgets/text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "brindle/framework/mul_div.h"
#include "brindle/framework/ui/dc.h"
#include "brindle/framework/ui/font.h"
#include "brindle/platform/screen.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace OV {
namespace {

constexpr int kPoints = 10, kPointsPerInch = 72;
constexpr int kSideMargin = 5;     // of captions, and once more of secondary ones
constexpr int kSubTextMargin = 2;  // above and below secondary captions
constexpr double kSubTextLightening = 1.2;

}  // namespace

Text::Text() {
    InitFont();
}
Text::Text(const Text& other) = default;
Text& Text::operator=(const Text& other) = default;
Text::~Text() = default;

void Text::InitFont() {
    m_font = {};
    m_font.lfHeight = brindle::MulDiv(-kPoints, brindle::CurrentScreen().DotsPerInchY(), kPointsPerInch);
    std::strcpy(m_font.lfFaceName, "Arial");
    CopyFont(m_font, m_highlightFont);
    m_fontColour = m_highlightFontColour = 0;
    m_fontHighlighting = false;
}

void Text::SetFont(const LOGFONTA& font) {
    CopyFont(font, m_font);
}

void Text::SetHighlightFont(const LOGFONTA& font) {
    CopyFont(font, m_highlightFont);
}

void Text::AddSubText(const SubText& subText) {
    const SubText added = subText;  // it may be one of ours
    const auto same = std::find_if(m_subTexts.begin(), m_subTexts.end(), [&](const SubText& each) {
        return each.verticalAlignment == added.verticalAlignment &&
               each.horizontalAlignment == added.horizontalAlignment;
    });
    if (same != m_subTexts.end()) m_subTexts.erase(same);
    m_subTexts.push_back(added);
}

void Text::Draw(CDC* dc, double scale) {
    if (!dc) return;
    const bool highlighted = m_mouseOver && m_fontHighlighting;
    dc->SaveDC();
    const unsigned long previous = dc->SetTextColor(highlighted ? m_highlightFontColour : m_fontColour);
    CRect place = m_bounds;
    place.DeflateRect(kSideMargin, 0);
    CFont font;
    OVDrawing::CreateFontA(font, highlighted ? m_highlightFont : m_font, static_cast<float>(scale),
                           m_escapement);
    dc->SetBkMode(kGroundTransparent);
    CRect moved = place;
    moved.OffsetRect(m_textOffset.x, m_textOffset.y);
    OVDrawing::DrawTextA(dc, m_text, moved, m_horizontalAlignment, m_verticalAlignment, m_escapement, &font);
    DrawSubTexts(*dc, place, scale);
    dc->SetTextColor(previous);
    dc->RestoreDC();
}

void Text::DrawSubTexts(CDC& dc, const CRect& place, double scale) const {
    dc.SetTextColor(Lighter(m_fontColour, kSubTextLightening));
    CRect inner = place;
    inner.DeflateRect(kSideMargin, kSubTextMargin);
    for (const SubText& each : m_subTexts) {
        LOGFONTA record = m_font;
        record.lfHeight = brindle::Truncated(std::floor(m_font.lfHeight * each.fontScale + 0.5));
        CFont font;
        OVDrawing::CreateFontA(font, record, static_cast<float>(scale), OVDrawing::Default);
        OVDrawing::DrawTextA(&dc, each.text, inner, each.horizontalAlignment, each.verticalAlignment,
                             each.escapement, &font);
    }
}

}  // namespace OV
