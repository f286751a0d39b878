// Any bytes as a picture file: what their header tells stays within the limits, and agrees with itself.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/platform/image_header.h"
#include "brindle/platform/image_kinds.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void CheckHeader(const brindle::ImageHeader& header) {
    const std::uint64_t pixels = std::uint64_t{header.width} * header.height;
    Require(pixels > 0 && pixels <= brindle::kMostFramePixels);
    Require(header.width <= brindle::kLargestImageSide && header.height <= brindle::kLargestImageSide);
    Require(header.frames > 0 && pixels * header.frames <= brindle::kMostImagePixels);
    Require(header.delays.empty() || (header.frames > 1 && header.delays.size() == header.frames));
}

// What a decoder is handed of a PNG is one itself, of the same size, and holds nothing more to leave out.
void CheckEssentials(std::string_view png, const brindle::ImageHeader& header) {
    const std::string essentials = brindle::PngEssentials(png);
    brindle::ImageHeader again;
    Require(brindle::ReadImageHeader(essentials, brindle::ImageFrames::kAll, again).ok());
    Require(again.width == header.width && again.height == header.height);
    Require(essentials.size() <= png.size() && brindle::PngEssentials(essentials) == essentials);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    brindle::ImageHeader all, first;
    const brindle::Result read = brindle::ReadImageHeader(bytes, brindle::ImageFrames::kAll, all);
    const brindle::Result one = brindle::ReadImageHeader(bytes, brindle::ImageFrames::kFirst, first);
    Require(read.ok() == read.text.empty());
    if (read.ok()) {
        CheckHeader(all);
        if (all.kind == brindle::ImageKind::kPng) CheckEssentials(bytes, all);
        if (!all.png.empty()) CheckEssentials(all.png, all);
        Require(one.ok() && first.width == all.width && first.height == all.height);
    }
    if (one.ok()) {
        CheckHeader(first);
        Require(first.frames == 1);
    } else {
        Require(!read.ok());
    }
    return 0;
}
