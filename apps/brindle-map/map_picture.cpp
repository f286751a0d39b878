// Tests: map_tool_test.cpp.
#include "apps/brindle-map/map_picture.h"

#include <brindle/platform/qt/painter_context.h>

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QPainter>

namespace brindle::map {

std::string DrawPicture(host::MapView& view, std::string& png) {
    const CSize size = view.Size();
    if (size.cx > kLargestSide || size.cy > kLargestSide)
        return "a picture of " + std::to_string(size.cx) + " x " + std::to_string(size.cy) +
               " pixels is larger than " + std::to_string(kLargestSide) + " x " +
               std::to_string(kLargestSide);
    QImage image(size.cx, size.cy, QImage::Format_RGB32);
    if (image.isNull()) return "there is not enough memory for the picture";
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        PainterContext context(painter);
        view.Draw(context.DC(), {0, 0, size.cx, size.cy});
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) return "the picture cannot be written as PNG";
    png.assign(buffer.data().constData(), static_cast<std::size_t>(buffer.data().size()));
    return {};
}

}  // namespace brindle::map
