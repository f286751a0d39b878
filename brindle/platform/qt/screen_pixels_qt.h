// The pixels of the screen, through Qt.
#pragma once

#include "brindle/platform/screen_pixels.h"

namespace brindle {

ScreenPixels& QtScreenPixels() noexcept;

}  // namespace brindle
