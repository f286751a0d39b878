// DrawingSurface: what a device context draws on: a clip, anti-aliased shapes, lines of text. One backend draws with
// the desktop's painter; the recording surface of the tests writes the operations down.
//
// Coordinates are the host's, whole coordinates lying at the centres of pixels: a line of width 1 along a whole
// coordinate is sharp, and a fill to a whole coordinate covers half of the pixel there. Texts and face names are
// bytes in the ANSI code page. Nothing throws except memory running out. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <string_view>

#include "brindle/framework/log_font.h"
#include "brindle/framework/point.h"
#include "brindle/framework/rect.h"
#include "brindle/platform/image.h"
#include "brindle/platform/shapes.h"

namespace brindle {

// One line of text, as it is put on a surface.
struct TextRun {
    std::string_view text;
    CPoint at;   // the line's upper left corner, about which a font with an escapement turns
    CRect clip;  // nothing is drawn outside
    LOGFONTA font;
    std::uint32_t colour = 0;  // 0x00BBGGRR
    bool opaque = false;       // the line's own box is painted white first
};

// A part of a picture, as it is put on a surface. Both rectangles have left < right and top < bottom, and `source` lies
// inside the picture.
struct PicturePart {
    const Image& image;
    std::uint32_t frame = 0;
    CRect source;             // in pixels of the picture
    CRect target;             // the pixels it fills, scaled smoothly
    bool mirrored = false;    // left and right exchanged
    bool upsideDown = false;  // top and bottom exchanged
};

class DrawingSurface;

// Shapes that many widgets draw alike, so that a surface may keep what they look like. Nothing but the look and the
// place decides what is drawn: the same everywhere right of and below the origin, another elsewhere.
class SharedShapes {
  public:
    // Those of equal bytes draw the same. Valid as long as the object.
    virtual std::string_view Look() const = 0;
    // What a drawing at that place may touch; an empty rectangle where that is not known.
    virtual CRect Extent(CPoint at) const = 0;
    // With shapes of its own (BeginShapes), and nothing but shapes.
    virtual void Draw(DrawingSurface& surface, CPoint at) const = 0;

  protected:
    ~SharedShapes() = default;
};

class DrawingSurface {
  public:
    // Keeps the clip; Restore brings back what the last unmatched Save kept, and does nothing without one. Both
    // stand outside BeginShapes and EndShapes.
    virtual void Save() = 0;
    virtual void Restore() = 0;
    // From now on nothing is drawn outside the rectangle; replaces any earlier one.
    virtual void ClipToRectangle(const CRect& rectangle) = 0;

    // Shapes are drawn between these two. Each beginning starts without smoothing and without a clip of its own.
    virtual void BeginShapes() = 0;
    virtual void EndShapes() = 0;
    // Whether the edges of what follows are anti-aliased.
    virtual void SetSmooth(bool smooth) = 0;
    // Shapes are drawn only inside the path, and inside the earlier one too when `also`. The clip is cut by whole
    // pixels. It holds for shapes only, neither for text nor for pictures.
    virtual void ClipShapes(const ShapePath& path, bool also) = 0;
    virtual void UnclipShapes() = 0;
    virtual void FillPath(const ShapePath& path, const Paint& paint) = 0;
    virtual void FillArea(const RectF& area, const Paint& paint) = 0;
    virtual void DrawPath(const ShapePath& path, const Pen& pen) = 0;

    // Outside BeginShapes and EndShapes. A surface that keeps nothing draws them.
    virtual void DrawShared(const SharedShapes& shapes, CPoint at) { shapes.Draw(*this, at); }

    // How long a text is along its line, and how high the line is, whatever the font's escapement; line breaks count as
    // characters. False, `extent` unchanged, when the surface cannot draw text (no fonts).
    virtual bool TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) = 0;
    // False, nothing drawn, when the surface cannot draw text.
    virtual bool DrawRun(const TextRun& run) = 0;

    // Outside BeginShapes and EndShapes, as text.
    virtual void DrawPicture(const PicturePart& part) = 0;

  protected:
    ~DrawingSurface() = default;  // never destroyed through this interface
};

// Between BeginShapes and EndShapes.
class ShapeScope {
  public:
    ShapeScope(DrawingSurface& surface, bool smooth) : m_surface(surface) {
        m_surface.BeginShapes();
        m_surface.SetSmooth(smooth);
    }
    ShapeScope(const ShapeScope&) = delete;
    ShapeScope& operator=(const ShapeScope&) = delete;
    ~ShapeScope() { m_surface.EndShapes(); }

  private:
    DrawingSurface& m_surface;
};

}  // namespace brindle
