// PainterSurface: a drawing surface on a Qt painter.
//
// Can: everything a drawing surface does, at any scale the painter is set to; "Arial" and its like resolve to families
// of the same metrics where those are installed. Cannot: draw text without a QGuiApplication; it never makes
// one. Smoothing is the painter's own anti-aliasing; what the painter was set to comes back when the surface goes.
#pragma once

#include <QtGui/QTransform>
#include <vector>

#include "brindle/platform/drawing_surface.h"

class QPainter;

namespace brindle {

class PainterSurface final : public DrawingSurface {
  public:
    // The painter is active, stays the caller's and is not otherwise used while the surface lives.
    explicit PainterSurface(QPainter& painter);
    PainterSurface(const PainterSurface&) = delete;
    PainterSurface& operator=(const PainterSurface&) = delete;
    ~PainterSurface();

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
    void DrawShared(const SharedShapes& shapes, CPoint at) override;
    bool TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) override;
    bool DrawRun(const TextRun& run) override;
    void DrawPicture(const PicturePart& part) override;

  private:
    struct Clip {
        ShapePath path;
        QTransform toPixels;
    };
    void MakeClips();

    QPainter& m_painter;
    int m_saved = 0;  // by Save
    int m_kept = 0;   // of those, by the painter
    bool m_smooth = false;
    std::vector<Clip> m_clips;  // that are not made yet, all to be inside of
    bool m_clipped = false;     // there is a clip of shapes
    bool m_replaces = false;    // which is to go before anything is drawn
};

}  // namespace brindle
