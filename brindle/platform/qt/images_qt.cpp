// Pictures decoded by Qt's readers, once their headers are found good. Tests: images_qt_test.cpp, and the contract in
// testing/images_contract.h.
#include "brindle/platform/qt/images_qt.h"

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QImageReader>
#include <cstdint>
#include <string>
#include <utility>

#include "brindle/platform/image_header.h"
#include "brindle/platform/image_kinds.h"

namespace brindle {
namespace {

const char* QtFormat(ImageKind kind) {
    switch (kind) {
        case ImageKind::kPng:
            return "png";
        case ImageKind::kGif:
            return "gif";
        case ImageKind::kJpeg:
            return "jpeg";
        case ImageKind::kBmp:
            return "bmp";
        case ImageKind::kIcon:
            return "ico";
    }
    return "";
}

// False when Qt gives no picture of the size the header says.
bool AddFrame(QImageReader& reader, Image& image) {
    QImage read = reader.read();
    if (read.width() != image.width || read.height() != image.height) return false;
    read.convertTo(QImage::Format_ARGB32_Premultiplied);
    if (read.isNull()) return false;
    for (int y = 0; y < image.height; ++y) {
        const auto* const row = reinterpret_cast<const std::uint32_t*>(read.constScanLine(y));
        image.pixels.insert(image.pixels.end(), row, row + image.width);
    }
    ++image.frames;
    return true;
}

class QtImageReaders final : public Images {
  public:
    Result Decode(std::string_view bytes, ImageFrames wanted, Image& image) override {
        ImageHeader header;
        if (Result result = ReadImageHeader(bytes, wanted, header); !result.ok()) return result;
        std::string essentials;
        const std::string_view png = header.kind == ImageKind::kPng ? bytes : header.png;
        if (!png.empty()) bytes = essentials = PngEssentials(png);
        QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
        QBuffer buffer(&data);
        QImageReader reader(&buffer, png.empty() ? QtFormat(header.kind) : "png");
        reader.setAutoDetectImageFormat(false);
        if (header.kind == ImageKind::kIcon && png.empty())
            reader.jumpToImage(static_cast<int>(header.picture));
        Image decoded;
        decoded.width = static_cast<std::int32_t>(header.width);
        decoded.height = static_cast<std::int32_t>(header.height);
        decoded.pixels.reserve(decoded.PixelsOfFrame() * header.frames);
        while (decoded.frames < header.frames && AddFrame(reader, decoded)) {
        }
        if (decoded.frames == 0)
            return ImageFault(header.kind, ErrorCode::kNotWellFormed, "cannot be decoded");
        if (decoded.frames > 1 && !header.delays.empty()) {
            header.delays.resize(decoded.frames);
            decoded.delays = std::move(header.delays);
        }
        image = std::move(decoded);
        return {};
    }
};

constinit QtImageReaders g_images;

}  // namespace

Images& QtImages() noexcept {
    return g_images;
}

}  // namespace brindle
