// FakeImages: judges pictures by their headers as the real service does, and gives every frame one plain colour: that
// with the frame's index as its blue, opaque.
#pragma once

#include "brindle/platform/images.h"

namespace brindle {

class FakeImages final : public Images {
  public:
    Result Decode(std::string_view bytes, ImageFrames wanted, Image& image) override;

    bool fail = false;  // what is sound by its header cannot be decoded
    int decoded = 0;    // pictures so far
};

}  // namespace brindle
