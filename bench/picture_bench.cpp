// Pictures: decoding a PNG of a million pixels, beside Qt's own decoding into the same form; drawing a shared picture
// scaled to a button, beside the same with the bare painter.
#include <benchmark/benchmark.h>

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <string>
#include <utility>

#include "brindle/platform/qt/images_qt.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/widgets/gdi_plus_picture.h"

namespace {

constexpr int kSide = 1000;             // of the picture that is decoded
constexpr int kIcon = 64, kPlace = 36;  // of the picture that is drawn, and where

// Something between one colour and noise, with transparent parts.
QImage Scenery(int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, qRgba(x & 0xFF, y & 0xFF, (x * y) & 0x3F, 255 - (y & 0x7F)));
    return image;
}

const QByteArray& Png() {
    static const QByteArray& bytes = *[] {
        auto* const made = new QByteArray;
        QBuffer buffer(made);
        buffer.open(QIODevice::WriteOnly);
        Scenery(kSide).save(&buffer, "PNG");
        return made;
    }();
    return bytes;
}

brindle::Image Decoded(const QByteArray& bytes) {
    brindle::Image image;
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    brindle::QtImages().Decode(view, brindle::ImageFrames::kAll, image);
    return image;
}

void DecodePicture(benchmark::State& state) {
    const QByteArray& bytes = Png();
    for (auto _ : state) {
        const brindle::Image image = Decoded(bytes);
        if (image.width != kSide) state.SkipWithError("not decoded");
        benchmark::DoNotOptimize(image.pixels.data());
    }
}
BENCHMARK(DecodePicture)->Unit(benchmark::kMillisecond);

void DecodeByQtAlone(benchmark::State& state) {
    const QByteArray& bytes = Png();
    for (auto _ : state) {
        QImage image = QImage::fromData(bytes, "png");
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
        if (image.width() != kSide) state.SkipWithError("not decoded");
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(DecodeByQtAlone)->Unit(benchmark::kMillisecond);

void DrawPicture(benchmark::State& state) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    Scenery(kIcon).save(&buffer, "PNG");
    IPicture* picture = new brindle::GdiPlusPicture(Decoded(bytes));
    long width = 0, height = 0;
    picture->get_Width(&width);
    picture->get_Height(&height);
    QImage canvas(kPlace, kPlace, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    brindle::PainterContext context(painter);
    for (auto _ : state)
        if (picture->Render(&context.DC(), 0, 0, kPlace, kPlace, 0, height, width, -height, nullptr) !=
            kInterfaceOk)
            state.SkipWithError("not drawn");
    picture->Release();
}
BENCHMARK(DrawPicture);

void DrawByPainterAlone(benchmark::State& state) {
    const QImage picture = Scenery(kIcon).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage canvas(kPlace, kPlace, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (auto _ : state) painter.drawImage(QRect(0, 0, kPlace, kPlace), picture, picture.rect());
}
BENCHMARK(DrawByPainterAlone);

}  // namespace
