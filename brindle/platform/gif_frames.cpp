// GIF files, block by block. Tests: image_header_test.cpp.
#include "brindle/platform/gif_frames.h"

#include "brindle/platform/byte_reader.h"
#include "brindle/platform/image_kinds.h"

namespace brindle {
namespace {

constexpr std::uint8_t kExtension = 0x21, kImage = 0x2C;
constexpr std::uint8_t kGraphicControl = 0xF9;
constexpr std::size_t kControlSize = 4;

// The colours that follow a descriptor with these flags.
void SkipColours(ByteReader& reader, std::uint8_t flags) {
    if (flags & 0x80) reader.Skip(std::size_t{3} << ((flags & 7) + 1));
}

void SkipSubBlocks(ByteReader& reader) {
    while (const std::uint8_t size = reader.Byte()) reader.Skip(size);
}

struct Delay {
    bool given = false;
    std::uint32_t hundredths = 0;
};

// Behind the extension's first byte.
void ReadExtension(ByteReader& reader, Delay& next) {
    if (reader.Byte() == kGraphicControl) {
        const std::uint8_t size = reader.Byte();
        ByteReader control(reader.Take(size));
        control.Skip(1);
        const std::uint16_t hundredths = control.Little16();
        if (size >= kControlSize && control.ok()) next = {true, hundredths};
        if (size == 0) return;  // that was the end of it
    }
    SkipSubBlocks(reader);
}

// Behind the image's first byte.
void SkipImage(ByteReader& reader) {
    reader.Skip(8);  // place and size
    SkipColours(reader, reader.Byte());
    reader.Skip(1);  // code size
    SkipSubBlocks(reader);
}

}  // namespace

Result ScanGif(std::string_view bytes, ImageHeader& header) {
    ByteReader reader(bytes);
    reader.Skip(6);  // "GIF89a"
    header.width = reader.Little16();
    header.height = reader.Little16();
    const std::uint8_t flags = reader.Byte();
    reader.Skip(2);  // background, aspect
    SkipColours(reader, flags);
    header.frames = 0;
    bool anyDelay = false;
    Delay next;
    for (;;) {
        const std::uint8_t block = reader.Byte();
        if (block == kExtension)
            ReadExtension(reader, next);
        else if (block == kImage)
            SkipImage(reader);
        else
            break;
        if (!reader.ok()) break;
        if (block != kImage) continue;
        ++header.frames;
        header.delays.push_back(next.hundredths);
        anyDelay |= next.given;
        next = {};
    }
    if (!anyDelay || header.frames < 2) header.delays.clear();
    if (header.frames == 0) return ImageEndsEarly(ImageKind::kGif);
    return {};
}

}  // namespace brindle
