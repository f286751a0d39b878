// The drawing surface on a Qt painter. Tests: painter_surface_test.cpp, and the pictures of picture_test.cpp.
#include "brindle/platform/qt/painter_surface.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <utility>

#include "brindle/platform/qt/painter_bodies.h"
#include "brindle/platform/qt/painter_captions.h"
#include "brindle/platform/qt/painter_font.h"
#include "brindle/platform/qt/painter_shapes.h"

namespace brindle {
namespace {

QRect QtRect(const CRect& rectangle) {
    CRect normal = rectangle;
    normal.NormalizeRect();
    return {normal.left, normal.top, normal.Width(), normal.Height()};
}

// Whole coordinates lie at the centres of the device's pixels; the painter has them at their corners.
constexpr double kToCentre = 0.5;
// Without smoothing the painter counts a centre on the edge of a shape to the pixel before; it is to be the one behind
// a left or upper edge. The shape is moved by less than anyone sees and more than the painter's own rounding.
constexpr double kBeforeCentre = 1.0 / 32;

void MoveByPixels(QPainter& painter, double pixels) {
    double across = painter.device()->devicePixelRatio(), down = across;
    if (painter.viewTransformEnabled()) {
        const QTransform view = painter.worldTransform().inverted() * painter.combinedTransform();
        across = view.m11();
        down = view.m22();
    }
    painter.setWorldTransform(painter.worldTransform() *
                              QTransform::fromTranslate(pixels / across, pixels / down));
}

}  // namespace

PainterSurface::PainterSurface(QPainter& painter) : m_painter(painter) {
    m_painter.save();
}

PainterSurface::~PainterSurface() {
    while (m_kept-- > 0) m_painter.restore();
    m_painter.restore();
}

void PainterSurface::Save() {
    ++m_saved;
}

void PainterSurface::Restore() {
    if (m_saved == 0) return;
    if (m_kept == m_saved) {
        m_painter.restore();
        --m_kept;
    }
    --m_saved;
}

// Only a clip outlives the operation that sets it: before one comes there is nothing to keep.
void PainterSurface::ClipToRectangle(const CRect& rectangle) {
    for (; m_kept < m_saved; ++m_kept) m_painter.save();
    m_painter.setClipRect(QtRect(rectangle));
}

void PainterSurface::BeginShapes() {
    m_painter.save();
    MoveByPixels(m_painter, kToCentre - kBeforeCentre);
    m_painter.setRenderHint(QPainter::Antialiasing, m_smooth = false);
}

void PainterSurface::EndShapes() {
    m_painter.restore();
    m_clips.clear();
    m_clipped = m_replaces = false;
}

void PainterSurface::SetSmooth(bool smooth) {
    if (smooth == m_smooth) return;
    MoveByPixels(m_painter, smooth ? kBeforeCentre : -kBeforeCentre);
    m_painter.setRenderHint(QPainter::Antialiasing, m_smooth = smooth);
}

// Clips are made when something is drawn in them: many are replaced or dropped before that.
void PainterSurface::ClipShapes(const ShapePath& path, bool also) {
    if (!also) UnclipShapes();
    m_clips.push_back({path, m_painter.combinedTransform()});
}

void PainterSurface::UnclipShapes() {
    m_clips.clear();
    m_replaces = m_clipped;
}

void PainterSurface::MakeClips() {
    if (m_replaces) {
        const bool smooth = m_smooth;
        const std::vector<Clip> clips = std::move(m_clips);
        EndShapes();  // the clip around the shapes is the one that was there before them
        BeginShapes();
        SetSmooth(smooth);
        m_clips = clips;
    }
    if (m_clips.empty()) return;
    const QTransform shapes = m_painter.worldTransform();
    const bool view = m_painter.viewTransformEnabled();
    const double scale = m_painter.device()->devicePixelRatio();
    const auto pixelsOf = [&](const Clip& clip) {
        return WholePixels(QtPath(clip.path), clip.toPixels, m_painter.device()->height() * scale);
    };
    QRegion pixels = pixelsOf(m_clips.front());
    for (std::size_t i = 1; i < m_clips.size(); ++i) pixels &= pixelsOf(m_clips[i]);
    m_painter.setViewTransformEnabled(false);
    m_painter.setWorldTransform(QTransform::fromScale(1 / scale, 1 / scale));
    m_painter.setClipRegion(pixels, Qt::IntersectClip);
    m_painter.setWorldTransform(shapes);
    m_painter.setViewTransformEnabled(view);
    m_clips.clear();
    m_clipped = true;
}

void PainterSurface::FillPath(const ShapePath& path, const Paint& paint) {
    MakeClips();
    m_painter.fillPath(QtPath(path), QtBrush(paint));
}

void PainterSurface::FillArea(const RectF& area, const Paint& paint) {
    MakeClips();
    m_painter.fillRect(QRectF(area.x, area.y, area.width, area.height), QtBrush(paint));
}

void PainterSurface::DrawPath(const ShapePath& path, const Pen& pen) {
    MakeClips();
    m_painter.fillPath(QtOutline(path, pen, m_painter.deviceTransform()), QtBrush(Paint::Solid(pen.colour)));
}

void PainterSurface::DrawShared(const SharedShapes& shapes, CPoint at) {
    if (!PainterBodies::Instance().Draw(m_painter, shapes, at)) shapes.Draw(*this, at);
}

bool PainterSurface::TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) {
    if (!FontsAvailable()) return false;
    PainterFont& known = PainterCaptions::Instance().Font(font);
    extent = {PainterCaptions::Instance().Caption(known, text).width, known.height};
    return true;
}

bool PainterSurface::DrawRun(const TextRun& run) {
    if (!FontsAvailable()) return false;
    PainterFont& font = PainterCaptions::Instance().Font(run.font);
    const PainterCaption& caption = PainterCaptions::Instance().Caption(font, run.text);
    m_painter.save();
    m_painter.setClipRect(QtRect(run.clip), Qt::IntersectClip);
    m_painter.translate(run.at.x, run.at.y);
    if (run.font.lfEscapement != 0) m_painter.rotate(-run.font.lfEscapement / 10.0);  // Qt turns clockwise
    m_painter.setFont(font.font);
    if (run.opaque) m_painter.fillRect(0, 0, caption.width, font.height, Qt::white);
    const auto channel = [&](int shift) { return static_cast<int>((run.colour >> shift) & 0xFF); };
    m_painter.setPen(QColor(channel(0), channel(8), channel(16)));
    // Scaled or turned, a kept layout would lie elsewhere within its pixels.
    if (caption.plain && m_painter.deviceTransform().type() <= QTransform::TxTranslate) {
        m_painter.drawStaticText(0, 0, caption.laidOut);
    } else {
        m_painter.drawText(0, font.ascent, caption.text);
    }
    m_painter.restore();
    return true;
}

void PainterSurface::DrawPicture(const PicturePart& part) {
    const Image& image = part.image;
    const QImage frame(reinterpret_cast<const uchar*>(image.Frame(part.frame)), image.width, image.height,
                       QImage::Format_ARGB32_Premultiplied);
    m_painter.save();
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (part.mirrored || part.upsideDown)
        m_painter.drawImage(QtRect(part.target),
                            frame.copy(QtRect(part.source)).mirrored(part.mirrored, part.upsideDown));
    else
        m_painter.drawImage(QtRect(part.target), frame, QtRect(part.source));
    m_painter.restore();
}

}  // namespace brindle
