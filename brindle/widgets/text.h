// OV::Text: a caption in its bounds: font, colour, alignment and turn, another font and colour while the mouse is over
// it, and small secondary captions at places of their own. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/log_font.h"
#include "brindle/framework/string_a.h"
#include "brindle/widgets/ov_drawing.h"
#include "brindle/widgets/widget.h"

namespace brindle {
struct TextLayoutProbe;
}

namespace OV {

class BRINDLE_API Text : public Widget {
  public:
    // A secondary caption. Its two alignments are its place.
    struct SubText {
        CStringA text;
        std::int32_t reserved = 0;  // kept for the host; no drawing uses it
        double fontScale = 1;       // of the main font's height
        OVDrawing::VerticalAlignment verticalAlignment = OVDrawing::Bottom;
        OVDrawing::HorizontalAlignment horizontalAlignment = OVDrawing::Left;
        OVDrawing::Escapement escapement = OVDrawing::Default;
    };

    // Empty and black, in "Arial" of 10 points at the screen's resolution, centred both ways.
    Text();
    Text(const Text& other);
    Text& operator=(const Text& other);
    ~Text() override;

    // The number is the scale of the fonts. Kept: secondary captions never use the highlight font and colour, and their
    // colour is lightened by 1.2, which wraps black to 0x323232.
    void Draw(CDC* dc, double scale) override;

    void SetText(const CStringA& text) { m_text = text; }
    // Valid until the text is set or the widget goes.
    const CStringA& GetText() const noexcept { return m_text; }
    void SetFont(const LOGFONTA& font);
    void SetHighlightFont(const LOGFONTA& font);
    void SetFontColor(unsigned long colour) noexcept { m_fontColour = static_cast<std::uint32_t>(colour); }
    void SetHighlightFontColor(unsigned long colour) noexcept {
        m_highlightFontColour = static_cast<std::uint32_t>(colour);
    }
    // Whether the highlight font and colour are used while the mouse is over the widget.
    void EnableFontHighlighting(bool enable) noexcept { m_fontHighlighting = enable; }
    void SetVerticalAlignment(OVDrawing::VerticalAlignment alignment) noexcept {
        m_verticalAlignment = alignment;
    }
    void SetHorizontalAlignment(OVDrawing::HorizontalAlignment alignment) noexcept {
        m_horizontalAlignment = alignment;
    }
    void SetEscapment(OVDrawing::Escapement escapement) noexcept { m_escapement = escapement; }
    // Moves the caption, not the secondary ones.
    void SetTextOffset(int x, int y) noexcept { m_textOffset = {x, y}; }
    // One that is at the same place is removed; the new one becomes the last.
    void AddSubText(const SubText& subText);
    void ClearSubText() noexcept { m_subTexts.clear(); }

  protected:
    // Both fonts, both colours and the highlighting as a new widget has them.
    void InitFont();
    static void CopyFont(const LOGFONTA& source, LOGFONTA& destination) noexcept { destination = source; }
    OVDrawing::Escapement CaptionEscapement() const noexcept { return m_escapement; }

  private:
    void DrawSubTexts(CDC& dc, const CRect& place, double scale) const;

    CStringA m_text;
    std::vector<SubText> m_subTexts;
    LOGFONTA m_font{};
    LOGFONTA m_highlightFont{};
    std::uint32_t m_fontColour = 0;
    std::uint32_t m_highlightFontColour = 0;
    bool m_fontHighlighting = false;
    OVDrawing::VerticalAlignment m_verticalAlignment = OVDrawing::Middle;
    OVDrawing::HorizontalAlignment m_horizontalAlignment = OVDrawing::Centre;
    OVDrawing::Escapement m_escapement = OVDrawing::Default;
    CPoint m_textOffset;

    friend struct brindle::TextLayoutProbe;
};

}  // namespace OV
