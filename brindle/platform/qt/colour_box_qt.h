// The colour dialog's service on Qt widgets.
#pragma once

#include "brindle/platform/colour_box.h"

namespace brindle {

ColourBox& QtColourBox() noexcept;

}  // namespace brindle
