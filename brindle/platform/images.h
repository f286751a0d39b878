// Images: decodes picture files: PNG, GIF with its frames, JPEG, BMP and ICO. A private service, with a desktop only.
// Pictures are hostile input: size and wholeness are judged by their headers (image_header.h) before anything is
// decoded, so that every backend accepts and refuses the same ones.
//
// Thread: the user interface's.
#pragma once

#include <string_view>

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"
#include "brindle/platform/image.h"

namespace brindle {

enum class ImageFrames {
    kFirst,  // the first alone, without delays
    kAll,
};

class Images {
  public:
    // The picture a whole file holds. Of an icon it is the picture 32 pixels wide, else the first. Fails, `image`
    // unchanged:
    //   kNotWellFormed  the bytes are empty, end before the picture does, or contradict themselves
    //   kUnsupported    they are no picture of these kinds, a metafile, or there is no desktop
    //   kLimit          a limit of image_header.h is exceeded
    // A GIF that ends early keeps its whole frames, and fails when the first is not whole.
    virtual Result Decode(std::string_view bytes, ImageFrames wanted, Image& image) = 0;

  protected:
    ~Images() = default;  // never destroyed through this interface
};

// The service in place; without a desktop one that decodes nothing.
BRINDLE_API Images& CurrentImages() noexcept;
// Installs a service (not owned; null: none again). Returns the one installed before, or null.
BRINDLE_API Images* SetImages(Images* service) noexcept;

}  // namespace brindle
