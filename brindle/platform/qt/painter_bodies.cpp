// Finished bodies: keys, drawing, copying, forgetting. Tests: painter_bodies_test.cpp.
#include "brindle/platform/qt/painter_bodies.h"

#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "brindle/platform/qt/painter_surface.h"

namespace brindle {
namespace {

constexpr std::size_t kLimit = std::size_t{32} << 20;
constexpr double kLargest = 1024;      // pixels, of either side of a body
constexpr double kFarthest = 1 << 28;  // pixels
constexpr double kPhases = 1024;       // places within a pixel; far more than edges tell apart

bool CopiesPixels(const QPainter& painter) {
    return painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::Raster &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver && painter.opacity() >= 1;
}

// In single pixels of the device, and back to what the painter was set to.
class PixelScope {
  public:
    explicit PixelScope(QPainter& painter)
        : m_painter(painter), m_world(painter.worldTransform()), m_view(painter.viewTransformEnabled()) {
        m_painter.setViewTransformEnabled(false);
        m_painter.setWorldTransform(QTransform());
        m_painter.setWorldTransform(m_painter.deviceTransform().inverted());
    }
    PixelScope(const PixelScope&) = delete;
    PixelScope& operator=(const PixelScope&) = delete;
    ~PixelScope() {
        m_painter.setWorldTransform(m_world);
        m_painter.setViewTransformEnabled(m_view);
    }

  private:
    QPainter& m_painter;
    QTransform m_world;
    bool m_view;
};

}  // namespace

// Where shapes are drawn: the pixel, and what else their picture depends on.
struct PainterBodies::Place {
    Place(const QTransform& toPixels, CPoint at)
        : x(toPixels.m11() * at.x + toPixels.dx()),
          y(toPixels.m22() * at.y + toPixels.dy()),
          pixelX(std::floor(x + 0.5 / kPhases)),
          pixelY(std::floor(y + 0.5 / kPhases)),
          kept{toPixels.m11(),
               toPixels.m22(),
               static_cast<std::int32_t>(std::floor((x - pixelX) * kPhases + 0.5)),
               static_cast<std::int32_t>(std::floor((y - pixelY) * kPhases + 0.5)),
               std::min(at.x, 0),
               std::min(at.y, 0)} {}

    double x, y;            // in pixels
    double pixelX, pixelY;  // whole
    struct {
        double scaleX, scaleY;
        std::int32_t phaseX, phaseY;  // within the pixel
        std::int32_t left, top;       // 0 wherever shapes are the same
    } kept;

    std::string_view Bytes() const { return {reinterpret_cast<const char*>(&kept), sizeof kept}; }
    static_assert(sizeof(kept) == 2 * sizeof(double) + 4 * sizeof(std::int32_t), "compared by its bytes");
};

PainterBodies& PainterBodies::Instance() {
    static PainterBodies& bodies = *new PainterBodies(kLimit);
    return bodies;
}

void PainterBodies::Clear() {
    m_byKey.clear();
    m_bodies.clear();
    m_bytes = 0;
}

void PainterBodies::SetLimit(std::size_t bytes) {
    m_limit = bytes;
    Shrink(m_limit);
}

void PainterBodies::Shrink(std::size_t limit) {
    while (m_bytes > limit && !m_bodies.empty()) {
        m_bytes -= static_cast<std::size_t>(m_bodies.back().picture.sizeInBytes());
        m_byKey.erase(m_bodies.back().key);
        m_bodies.pop_back();
    }
}

const PainterBodies::Body& PainterBodies::Find(const SharedShapes& shapes, const Place& place) {
    m_key.assign(shapes.Look()).append(place.Bytes());
    if (const auto found = m_byKey.find(m_key); found != m_byKey.end()) {
        m_bodies.splice(m_bodies.begin(), m_bodies, found->second);
        return m_bodies.front();
    }
    const CPoint at{place.kept.left, place.kept.top};
    const CRect extent = shapes.Extent(at);
    // The pixels it may touch, from the one its place is in; one more on each side for the centres of pixels.
    const double phaseX = place.kept.phaseX / kPhases, phaseY = place.kept.phaseY / kPhases;
    const auto pixels = [](double phase, double scale, std::int32_t from) { return phase + scale * from; };
    const int left = static_cast<int>(std::floor(pixels(phaseX, place.kept.scaleX, extent.left - at.x))) - 1;
    const int top = static_cast<int>(std::floor(pixels(phaseY, place.kept.scaleY, extent.top - at.y))) - 1;
    const int right = static_cast<int>(std::ceil(pixels(phaseX, place.kept.scaleX, extent.right - at.x))) + 1;
    const int bottom =
        static_cast<int>(std::ceil(pixels(phaseY, place.kept.scaleY, extent.bottom - at.y))) + 1;
    const QSize size(right - left, bottom - top);
    if (m_sheet.width() < size.width() || m_sheet.height() < size.height())
        m_sheet = QImage(size.expandedTo(m_sheet.size()), QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&m_sheet);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(QRect(QPoint(), size), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setWorldTransform({place.kept.scaleX, 0, 0, place.kept.scaleY,
                                   phaseX - left - place.kept.scaleX * at.x,
                                   phaseY - top - place.kept.scaleY * at.y});
        PainterSurface surface(painter);
        shapes.Draw(surface, at);
    }
    ++m_drawn;
    QImage picture = m_sheet.copy(QRect(QPoint(), size));
    const auto bytes = static_cast<std::size_t>(picture.sizeInBytes());
    Shrink(m_limit > bytes ? m_limit - bytes : 0);
    m_bodies.push_front({m_key, std::move(picture), QPoint(left, top)});
    m_byKey.emplace(m_bodies.front().key, m_bodies.begin());
    m_bytes += bytes;
    return m_bodies.front();
}

bool PainterBodies::Draw(QPainter& painter, const SharedShapes& shapes, CPoint at) {
    if (!CopiesPixels(painter)) return false;
    const QTransform toPixels = painter.deviceTransform();
    const bool upright = toPixels.type() <= QTransform::TxScale && toPixels.m11() > 0 && toPixels.m22() > 0;
    const CRect extent = shapes.Extent(at);
    if (!upright || extent.Width() <= 0 || extent.Height() <= 0) return false;
    if (!(extent.Width() * toPixels.m11() < kLargest && extent.Height() * toPixels.m22() < kLargest))
        return false;
    const Place place(toPixels, at);
    if (!(std::abs(place.x) < kFarthest && std::abs(place.y) < kFarthest)) return false;
    const Body& body = Find(shapes, place);
    const QPointF corner(place.pixelX + body.offset.x(), place.pixelY + body.offset.y());
    if (toPixels.type() <= QTransform::TxTranslate) {
        painter.drawImage(corner - QPointF(toPixels.dx(), toPixels.dy()), body.picture);
    } else {
        const PixelScope pixels(painter);
        painter.drawImage(corner, body.picture);
    }
    Shrink(m_limit);
    return true;
}

}  // namespace brindle
