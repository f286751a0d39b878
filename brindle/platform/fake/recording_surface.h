// RecordingSurface: a drawing surface that writes down what it is told, one operation a line, indented inside shapes.
// What breaks the surface's rules (shapes outside BeginShapes ...) is written as a line that begins with "error".
//
// Its font: every byte is half the font's height wide, rounded up; a line is as high as the font. A font of height 0
// has 16.
#pragma once

#include <string>

#include "brindle/platform/drawing_surface.h"

namespace brindle {

class RecordingSurface final : public DrawingSurface {
  public:
    void Save() override;
    void Restore() override;
    void ClipToRectangle(const CRect& rectangle) override;
    void BeginShapes() override;
    void EndShapes() override;
    void SetSmooth(bool smooth) override;
    void ClipShapes(const ShapePath& path, bool also) override;
    void UnclipShapes() override;
    void FillPath(const ShapePath& path, const Paint& paint) override;
    void FillArea(const RectF& area, const Paint& paint) override;
    void DrawPath(const ShapePath& path, const Pen& pen) override;
    bool TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) override;
    bool DrawRun(const TextRun& run) override;
    void DrawPicture(const PicturePart& part) override;

    // Every operation so far.
    const std::string& Text() const noexcept { return m_text; }
    void Clear() { m_text.clear(); }

    bool fonts = true;  // false: the surface cannot draw text

  private:
    void Line(const std::string& text);
    void Shape(const std::string& text);
    void Path(const ShapePath& path);

    std::string m_text;
    int m_saved = 0;
    bool m_inShapes = false;
};

}  // namespace brindle
