// The images service on Qt's readers.
//
// Can: PNG, GIF, JPEG, BMP and ICO, with or without an application object; GIF delays as the file has them, which
// Qt's reader does not tell. Cannot: metafiles. Colour profiles and a camera's orientation mark are not applied.
#pragma once

#include "brindle/platform/images.h"

namespace brindle {

// Never destroyed.
Images& QtImages() noexcept;

}  // namespace brindle
