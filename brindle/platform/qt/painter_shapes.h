// Paths, paints and pens as Qt has them.
#pragma once

#include "brindle/platform/shapes.h"

class QBrush;
class QPainterPath;
class QPen;
class QRegion;
class QTransform;

namespace brindle {

QPainterPath QtPath(const ShapePath& path);
QBrush QtBrush(const Paint& paint);
QPen QtPen(const Pen& pen);
// What a pen covers, to be filled. Qt's own strokes are too thin: straight pieces stand for curves, and lines of a
// pixel are as wide along the axes only.
QPainterPath QtOutline(const ShapePath& path, const Pen& pen, const QTransform& toPixels);

// The pixels whose centres lie inside the path, in rows 0 to below `height`; Qt's own clips are smooth. `toPixels`
// takes the path's coordinates to those in which pixels are whole.
QRegion WholePixels(const QPainterPath& path, const QTransform& toPixels, double height);

}  // namespace brindle
