#include "brindle/platform/fake/images_fake.h"

#include <utility>

#include "brindle/platform/image_header.h"
#include "brindle/platform/image_kinds.h"

namespace brindle {

Result FakeImages::Decode(std::string_view bytes, ImageFrames wanted, Image& image) {
    ImageHeader header;
    if (Result result = ReadImageHeader(bytes, wanted, header); !result.ok()) return result;
    if (fail) return ImageFault(header.kind, ErrorCode::kNotWellFormed, "cannot be decoded");
    Image made;
    made.width = static_cast<std::int32_t>(header.width);
    made.height = static_cast<std::int32_t>(header.height);
    made.frames = header.frames;
    made.delays = std::move(header.delays);
    for (std::uint32_t i = 0; i < made.frames; ++i)
        made.pixels.insert(made.pixels.end(), made.PixelsOfFrame(), 0xFF000000 | (i & 0xFF));
    image = std::move(made);
    ++decoded;
    return {};
}

}  // namespace brindle
