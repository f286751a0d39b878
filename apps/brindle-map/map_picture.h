// A map as a picture.
#pragma once

#include <string>

#include "host/map_view.h"

namespace brindle::map {

constexpr int kLargestSide = 16'384;  // pixels of a picture

// Draws the whole map as it is at present into PNG bytes. Returns why it cannot, or an empty text. There is an
// application object.
std::string DrawPicture(host::MapView& view, std::string& png);

}  // namespace brindle::map
