// The drawing surface on a Qt painter. Tests: painter_surface_test.cpp, and the pictures of picture_test.cpp.
#include "brindle/platform/qt/painter_surface.h"

#include <QtGui/QFont>
#include <QtGui/QFontMetrics>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <string>

#include "brindle/platform/code_page.h"
#include "brindle/platform/qt/painter_font.h"
#include "brindle/platform/qt/painter_shapes.h"

namespace brindle {
namespace {

QRect QtRect(const CRect& rectangle) {
    CRect normal = rectangle;
    normal.NormalizeRect();
    return {normal.left, normal.top, normal.Width(), normal.Height()};
}

QString QtText(std::string_view bytes) {
    const std::string utf8 = ToUtf8(bytes);
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Whole coordinates lie at the centres of the device's pixels; the painter has them at their corners.
constexpr double kToCentre = 0.5;
// Without smoothing the painter counts a centre on the edge of a shape to the pixel before; it is to be the one behind
// a left or upper edge. The shape is moved by less than anyone sees and more than the painter's own rounding.
constexpr double kBeforeCentre = 1.0 / 32;

void MoveByPixels(QPainter& painter, double pixels) {
    const double distance = pixels / painter.device()->devicePixelRatio();
    painter.setWorldTransform(painter.worldTransform() * QTransform::fromTranslate(distance, distance));
}

}  // namespace

PainterSurface::PainterSurface(QPainter& painter) : m_painter(painter) {
    m_painter.save();
}

PainterSurface::~PainterSurface() {
    while (m_saved-- > 0) m_painter.restore();
    m_painter.restore();
}

void PainterSurface::Save() {
    m_painter.save();
    ++m_saved;
}

void PainterSurface::Restore() {
    if (m_saved == 0) return;
    m_painter.restore();
    --m_saved;
}

void PainterSurface::ClipToRectangle(const CRect& rectangle) {
    m_painter.setClipRect(QtRect(rectangle));
}

void PainterSurface::BeginShapes() {
    m_painter.save();
    MoveByPixels(m_painter, kToCentre - kBeforeCentre);
    m_painter.setRenderHint(QPainter::Antialiasing, m_smooth = false);
}

void PainterSurface::EndShapes() {
    m_painter.restore();
}

void PainterSurface::SetSmooth(bool smooth) {
    if (smooth == m_smooth) return;
    MoveByPixels(m_painter, smooth ? kBeforeCentre : -kBeforeCentre);
    m_painter.setRenderHint(QPainter::Antialiasing, m_smooth = smooth);
}

void PainterSurface::ClipShapes(const ShapePath& path, bool also) {
    if (!also) UnclipShapes();
    const QTransform shapes = m_painter.worldTransform();
    const bool view = m_painter.viewTransformEnabled();
    const double scale = m_painter.device()->devicePixelRatio();
    const QTransform toPixels = m_painter.combinedTransform() * QTransform::fromScale(scale, scale);
    const QRegion pixels = WholePixels(QtPath(path), toPixels, m_painter.device()->height() * scale);
    m_painter.setViewTransformEnabled(false);
    m_painter.setWorldTransform(QTransform::fromScale(1 / scale, 1 / scale));
    m_painter.setClipRegion(pixels, Qt::IntersectClip);
    m_painter.setWorldTransform(shapes);
    m_painter.setViewTransformEnabled(view);
}

void PainterSurface::UnclipShapes() {
    const bool smooth = m_smooth;
    EndShapes();  // the clip around the shapes is the one that was there before them
    BeginShapes();
    SetSmooth(smooth);
}

void PainterSurface::FillPath(const ShapePath& path, const Paint& paint) {
    m_painter.fillPath(QtPath(path), QtBrush(paint));
}

void PainterSurface::FillArea(const RectF& area, const Paint& paint) {
    m_painter.fillRect(QRectF(area.x, area.y, area.width, area.height), QtBrush(paint));
}

void PainterSurface::DrawPath(const ShapePath& path, const Pen& pen) {
    m_painter.fillPath(QtOutline(path, pen, m_painter.deviceTransform()), QtBrush(Paint::Solid(pen.colour)));
}

bool PainterSurface::TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) {
    if (!FontsAvailable()) return false;
    const QFontMetrics metrics(QtFont(font), m_painter.device());
    extent = {metrics.horizontalAdvance(QtText(text)), metrics.height()};
    return true;
}

bool PainterSurface::DrawRun(const TextRun& run) {
    if (!FontsAvailable()) return false;
    const QFont font = QtFont(run.font);
    const QFontMetrics metrics(font, m_painter.device());
    const QString text = QtText(run.text);
    m_painter.save();
    m_painter.setClipRect(QtRect(run.clip), Qt::IntersectClip);
    m_painter.translate(run.at.x, run.at.y);
    m_painter.rotate(-run.font.lfEscapement / 10.0);  // Qt turns clockwise
    m_painter.setFont(font);
    if (run.opaque) m_painter.fillRect(0, 0, metrics.horizontalAdvance(text), metrics.height(), Qt::white);
    const auto channel = [&](int shift) { return static_cast<int>((run.colour >> shift) & 0xFF); };
    m_painter.setPen(QColor(channel(0), channel(8), channel(16)));
    m_painter.drawText(0, metrics.ascent(), text);
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
