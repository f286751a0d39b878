// The scans of each kind of picture file; image_header.h is the door to them. Each is given bytes that begin as its
// kind does, and fills in the size; limits of size are the caller's business. Internal; any thread.
#pragma once

#include <string>
#include <string_view>

#include "brindle/platform/image_header.h"

namespace brindle {

// A failure is told as ImageFault does; `header` then holds anything.
Result ScanPng(std::string_view bytes, ImageHeader& header);
Result ScanJpeg(std::string_view bytes, ImageHeader& header);
Result ScanBmp(std::string_view bytes, ImageHeader& header);
Result ScanIcon(std::string_view bytes, ImageHeader& header);

// A sound PNG with only those chunks that decide how it looks, for decoders: texts and profiles that unfold to a
// thousand times their size are left out.
BRINDLE_API std::string PngEssentials(std::string_view bytes);

// The failure with the text "PNG picture: WHAT".
BRINDLE_API Result ImageFault(ImageKind kind, ErrorCode code, std::string_view what);
// The one failure every kind has.
Result ImageEndsEarly(ImageKind kind);

constexpr std::string_view kPngStart = "\x89PNG\r\n\x1A\n";

}  // namespace brindle
