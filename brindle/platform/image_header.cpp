// Which kind of picture it is, and whether it is within the limits. Tests: image_header_test.cpp.
#include "brindle/platform/image_header.h"

#include "brindle/framework/number_text.h"
#include "brindle/platform/byte_reader.h"
#include "brindle/platform/gif_frames.h"
#include "brindle/platform/image_kinds.h"

namespace brindle {
namespace {

using namespace std::string_view_literals;

bool IsMetafile(std::string_view bytes) {
    constexpr std::size_t kSignature = 40;
    const bool enhanced = bytes.starts_with("\x01\0\0\0"sv) && bytes.size() >= kSignature + 4 &&
                          bytes.substr(kSignature, 4) == " EMF";
    return enhanced || bytes.starts_with("\xD7\xCD\xC6\x9A") || bytes.starts_with("\x01\0\x09\0"sv) ||
           bytes.starts_with("\x02\0\x09\0"sv);
}

// The kinds, by how their files begin.
struct Kind {
    ImageKind kind;
    const char* name;
    std::string_view start;
    Result (*scan)(std::string_view bytes, ImageHeader& header);
};
constexpr Kind kKinds[] = {
    {ImageKind::kPng, "PNG", kPngStart, &ScanPng}, {ImageKind::kGif, "GIF", "GIF87a", &ScanGif},
    {ImageKind::kGif, "GIF", "GIF89a", &ScanGif},  {ImageKind::kJpeg, "JPEG", "\xFF\xD8\xFF", &ScanJpeg},
    {ImageKind::kBmp, "BMP", "BM", &ScanBmp},      {ImageKind::kIcon, "ICO", "\0\0\1\0"sv, &ScanIcon},
};

std::string Number(std::uint64_t value) {
    return PrintUnsigned(value);
}

Result CheckLimits(const ImageHeader& header) {
    if (header.width == 0 || header.height == 0)
        return ImageFault(header.kind, ErrorCode::kNotWellFormed, "is of no size");
    const std::string size = "of " + Number(header.width) + " x " + Number(header.height);
    if (header.width > kLargestImageSide || header.height > kLargestImageSide)
        return ImageFault(header.kind, ErrorCode::kLimit,
                          size + ": no side may be longer than " + Number(kLargestImageSide));
    const std::uint64_t pixels = std::uint64_t{header.width} * header.height;
    if (pixels > kMostFramePixels)
        return ImageFault(header.kind, ErrorCode::kLimit,
                          size + ": there may be at most " + Number(kMostFramePixels) + " pixels");
    if (header.frames > kMostImageFrames)
        return ImageFault(
            header.kind, ErrorCode::kLimit,
            "of " + Number(header.frames) + " frames: there may be at most " + Number(kMostImageFrames));
    if (pixels * header.frames > kMostImagePixels)
        return ImageFault(header.kind, ErrorCode::kLimit,
                          size + " with " + Number(header.frames) + " frames: they may have at most " +
                              Number(kMostImagePixels) + " pixels together");
    return {};
}

}  // namespace

const char* ImageKindName(ImageKind kind) noexcept {
    for (const Kind& each : kKinds)
        if (each.kind == kind) return each.name;
    return "";
}

Result ImageFault(ImageKind kind, ErrorCode code, std::string_view what) {
    return Result::Error(code, std::string(ImageKindName(kind)) + " picture: " + std::string(what));
}

Result ImageEndsEarly(ImageKind kind) {
    return ImageFault(kind, ErrorCode::kNotWellFormed, "ends early");
}

Result ReadImageHeader(std::string_view bytes, ImageFrames wanted, ImageHeader& header) {
    header = {};
    if (bytes.empty()) return Result::Error(ErrorCode::kNotWellFormed, "picture: the file is empty");
    if (bytes.size() > kMostImageBytes)
        return Result::Error(ErrorCode::kLimit,
                             "picture: the file is larger than " + Number(kMostImageBytes) + " bytes");
    if (IsMetafile(bytes)) return Result::Error(ErrorCode::kUnsupported, "picture: metafiles are not drawn");
    for (const Kind& each : kKinds) {
        if (!bytes.starts_with(each.start)) continue;
        header.kind = each.kind;
        if (Result result = each.scan(bytes, header); !result.ok()) return result;
        if (wanted == ImageFrames::kFirst) {
            header.frames = 1;
            header.delays.clear();
        }
        return CheckLimits(header);
    }
    return Result::Error(ErrorCode::kUnsupported, "picture: the file is of no known kind");
}

}  // namespace brindle
