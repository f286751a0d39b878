// ScanGif: the frames of a GIF and their delays as the file has them. Decoders tend to replace short delays by their
// own; what a picture's author wrote is only to be had from the file. Internal; any thread. Tests:
// image_header_test.cpp.
#pragma once

#include <string_view>

#include "brindle/platform/image_header.h"

namespace brindle {

// Size, whole frames and delays. A frame without a delay of its own has 0; without any delay in the file there are
// none. What follows a block that is cut off or of no known kind is left out; fails when no frame is whole before it.
Result ScanGif(std::string_view bytes, ImageHeader& header);

}  // namespace brindle
