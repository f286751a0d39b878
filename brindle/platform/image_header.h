// ReadImageHeader: what a picture file says of itself, without decoding it: its kind, size, frames and their delays,
// and whether it is whole. Every images backend asks this first. Internal; any thread.
//
// Stages: image_header.cpp (which kind, limits), gif_frames.cpp and image_kinds.cpp (one scan for each kind). Tests:
// image_header_test.cpp, fuzz/image_header_fuzz.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"
#include "brindle/platform/images.h"

namespace brindle {

constexpr std::size_t kMostImageBytes = 64u << 20;
constexpr std::uint32_t kLargestImageSide = 16384;       // in pixels
constexpr std::uint64_t kMostFramePixels = 32ull << 20;  // 128 MiB decoded
constexpr std::uint64_t kMostImagePixels = 64ull << 20;  // of all frames together
constexpr std::uint32_t kMostImageFrames = 10'000;
constexpr int kMostJpegScans = 100;  // each makes the decoder go through the whole picture

enum class ImageKind { kPng, kGif, kJpeg, kBmp, kIcon };
// "PNG" ...; never null, a constant that is valid until the process ends.
const char* ImageKindName(ImageKind kind) noexcept;

// What a picture file says of itself.
struct ImageHeader {
    ImageKind kind = ImageKind::kPng;
    std::uint32_t width = 0;  // 1 to kLargestImageSide, as the height
    std::uint32_t height = 0;
    std::uint32_t frames = 1;  // whole ones
    std::vector<std::uint32_t>
        delays;  // one for each frame, in 1/100 s; empty: none are given, or there is one frame
    std::uint32_t picture = 0;  // of an icon: the index of the one to take
    std::string_view png;       // of an icon whose picture is one: that, a part of the file's bytes
};

// Fails as Images::Decode does; `header` then holds anything.
BRINDLE_API Result ReadImageHeader(std::string_view bytes, ImageFrames wanted, ImageHeader& header);

}  // namespace brindle
