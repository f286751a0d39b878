// Paths, paints and pens as Qt has them. Tests: painter_surface_test.cpp, and the pictures of picture_test.cpp.
#include "brindle/platform/qt/painter_shapes.h"

#include <QtGui/QBrush>
#include <QtGui/QPainterPath>
#include <QtGui/QPen>
#include <QtGui/QRegion>
#include <algorithm>
#include <cmath>
#include <vector>

namespace brindle {
namespace {

QRectF QtRect(const RectF& r) {
    return {r.x, r.y, r.width, r.height};
}
QPointF QtPoint(PointF p) {
    return {p.x, p.y};
}
QColor QtColour(Argb colour) {
    return QColor::fromRgba(colour);
}

// Qt counts angles counter-clockwise.
void AddArc(QPainterPath& path, const ShapePath::Step& step, bool& open) {
    if (!(step.box.width > 0 && step.box.height > 0)) return;
    const QRectF box = QtRect(step.box);
    if (!open) path.arcMoveTo(box, -step.start);
    path.arcTo(box, -step.start, -step.sweep);
    open = true;
}

void AddLine(QPainterPath& path, const ShapePath::Step& step, bool& open) {
    if (open) {
        path.lineTo(QtPoint(step.from));
    } else {
        path.moveTo(QtPoint(step.from));
    }
    path.lineTo(QtPoint(step.to));
    open = true;
}

// Along the rays from the centre to the ellipse: a circular gradient with its focus at the centre, stretched to it.
QBrush CentreBrush(const Paint& paint) {
    const QRectF ellipse = QtRect(paint.area);
    const double halfWidth = ellipse.width() / 2, halfHeight = ellipse.height() / 2;
    if (!(halfWidth > 0 && halfHeight > 0)) return {};
    const QPointF focus((paint.centre.x - ellipse.center().x()) / halfWidth,
                        (paint.centre.y - ellipse.center().y()) / halfHeight);
    QRadialGradient gradient(QPointF(0, 0), 1, focus);
    gradient.setColorAt(0, QtColour(paint.first));
    gradient.setColorAt(1, QtColour(paint.second));
    QBrush brush(gradient);
    brush.setTransform(QTransform(halfWidth, 0, 0, halfHeight, ellipse.center().x(), ellipse.center().y()));
    return brush;
}

QBrush LinearBrush(const Paint& paint) {
    const QRectF area = QtRect(paint.area);
    if (area.width() == 0 || area.height() == 0) return {};
    const bool across = paint.kind == Paint::Kind::kHorizontal;
    QLinearGradient gradient(area.topLeft(), across ? area.topRight() : area.bottomLeft());
    gradient.setColorAt(0, QtColour(paint.first));
    gradient.setColorAt(1, QtColour(paint.second));
    gradient.setSpread(QGradient::RepeatSpread);
    return gradient;
}

// Lengths of dashes and gaps in pen widths, and the same with round ends, which take half a width on each side of a
// dash.
QList<qreal> DashPattern(DashStyle dash, bool round) {
    constexpr qreal kDash = 3, kDot = 1, kGap = 1;
    QList<qreal> pattern;
    if (dash != DashStyle::kDot) pattern << kDash << kGap;
    const int dots = dash == DashStyle::kDot || dash == DashStyle::kDashDot ? 1
                     : dash == DashStyle::kDashDotDot                       ? 2
                                                                            : 0;
    for (int i = 0; i < dots; ++i) pattern << kDot << kGap;
    if (!round) return pattern;
    constexpr qreal kPoint = 0.001;  // an empty dash would not be drawn
    for (qsizetype i = 0; i < pattern.size(); i += 2) {
        pattern[i] = std::max(pattern[i] - 1, kPoint);
        pattern[i + 1] += 1;
    }
    return pattern;
}

// Where the row through `y` crosses the outlines, from left to right.
void FindCrossings(const QList<QPolygonF>& outlines, double y, std::vector<double>& crossings) {
    crossings.clear();
    for (const QPolygonF& outline : outlines) {
        const QPointF* const points = outline.constData();
        const qsizetype count = outline.size();
        for (qsizetype i = 0; i < count; ++i) {
            const QPointF a = points[i], b = points[i + 1 == count ? 0 : i + 1];
            if ((a.y() <= y) == (b.y() <= y)) continue;
            crossings.push_back(a.x() + (y - a.y()) / (b.y() - a.y()) * (b.x() - a.x()));
        }
    }
    std::sort(crossings.begin(), crossings.end());
}

// The first pixel whose centre lies at or right of x.
int FirstPixel(double x) {
    constexpr double kFar = 1e6;
    return static_cast<int>(std::ceil(std::clamp(x, -kFar, kFar) - 0.5));
}

// The direction in which a step ends or begins; none for what has no length.
QPointF Direction(const ShapePath::Step& step, bool end) {
    if (step.kind == ShapePath::StepKind::kLine) return {step.to.x - step.from.x, step.to.y - step.from.y};
    if (step.kind != ShapePath::StepKind::kArc || !(step.box.width > 0 && step.box.height > 0)) return {};
    const double angle = (step.start + (end ? step.sweep : 0)) * M_PI / 180;
    return {-std::sin(angle) * step.sweep, std::cos(angle) * step.sweep};
}

// Whether the path somewhere runs back on itself: where its outline then overlaps within a pixel, the painter would
// count it twice.
bool DoublesBack(const ShapePath& path) {
    QPointF before;
    for (const ShapePath::Step& step : path.Steps()) {
        const QPointF begin = Direction(step, false), end = Direction(step, true);
        if (QPointF::dotProduct(before, begin) < 0) return true;
        if (!end.isNull()) before = end;
    }
    return false;
}

// Rows of the same spans become one band: the spans from `before` reach one row further and those from `current`, of
// the row below, go. False, nothing changed, where they differ.
bool Lengthen(std::vector<QRect>& spans, std::size_t before, std::size_t current) {
    const std::size_t count = current - before;
    if (count == 0 || spans.size() - current != count) return false;
    for (std::size_t i = 0; i < count; ++i) {
        const QRect &above = spans[before + i], &below = spans[current + i];
        if (above.left() != below.left() || above.right() != below.right() ||
            above.bottom() + 1 != below.top())
            return false;
    }
    for (std::size_t i = before; i < current; ++i) spans[i].setBottom(spans[i].bottom() + 1);
    spans.resize(current);
    return true;
}

}  // namespace

QPainterPath QtOutline(const ShapePath& path, const Pen& pen, const QTransform& toPixels) {
    constexpr double kFlatness = 0.05;  // pixels
    QPainterPathStroker stroker(QtPen(pen));
    stroker.setCurveThreshold(kFlatness / std::max(std::sqrt(std::abs(toPixels.determinant())), kFlatness));
    const QPainterPath outline = stroker.createStroke(QtPath(path));
    return DoublesBack(path) ? outline.simplified() : outline;
}

QRegion WholePixels(const QPainterPath& path, const QTransform& toPixels, double height) {
    const QList<QPolygonF> outlines = path.toSubpathPolygons(toPixels);
    QRectF bounds;
    for (const QPolygonF& outline : outlines) bounds |= outline.boundingRect();
    const int first = FirstPixel(std::max(bounds.top(), 0.0)),
              last = FirstPixel(std::min(bounds.bottom(), height));
    std::vector<QRect> spans;
    std::vector<double> crossings;
    std::size_t before = 0, current = 0;  // where the spans of the last row and of this one begin
    for (int row = first; row < last; ++row) {
        FindCrossings(outlines, row + 0.5, crossings);
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
            const int left = FirstPixel(crossings[i]), right = FirstPixel(crossings[i + 1]);
            if (left < right) spans.emplace_back(left, row, right - left, 1);
        }
        if (Lengthen(spans, before, current)) continue;
        before = current;
        current = spans.size();
    }
    QRegion region;
    region.setRects(spans.data(), static_cast<int>(spans.size()));
    return region;
}

QPainterPath QtPath(const ShapePath& path) {
    using Kind = ShapePath::StepKind;
    QPainterPath result;
    result.setFillRule(Qt::OddEvenFill);
    bool open = false;
    for (const ShapePath::Step& step : path.Steps()) {
        switch (step.kind) {
            case Kind::kArc:
                AddArc(result, step, open);
                break;
            case Kind::kLine:
                AddLine(result, step, open);
                break;
            case Kind::kEllipse:
                result.addEllipse(QtRect(step.box));
                open = false;
                break;
            case Kind::kRectangle:
                result.addRect(QtRect(step.box));
                open = false;
                break;
            case Kind::kClose:
                if (open) result.closeSubpath();
                open = false;
                break;
        }
    }
    return result;
}

QBrush QtBrush(const Paint& paint) {
    switch (paint.kind) {
        case Paint::Kind::kSolid:
            return QtColour(paint.first);
        case Paint::Kind::kCentre:
            return CentreBrush(paint);
        default:
            return LinearBrush(paint);
    }
}

QPen QtPen(const Pen& pen) {
    QPen result(QtColour(pen.colour), static_cast<qreal>(pen.width), Qt::SolidLine, Qt::FlatCap,
                Qt::SvgMiterJoin);
    result.setMiterLimit(10);
    if (pen.dash != DashStyle::kSolid) {
        result.setDashPattern(DashPattern(pen.dash, pen.roundDashes));
        if (pen.roundDashes) result.setCapStyle(Qt::RoundCap);
    }
    return result;
}

}  // namespace brindle
