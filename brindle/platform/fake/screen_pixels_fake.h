// FakeScreenPixels: a screen of a few pixels.
#pragma once

#include <map>
#include <utility>

#include "brindle/platform/screen_pixels.h"

namespace brindle {

class FakeScreenPixels final : public ScreenPixels {
  public:
    std::string WhyUnavailable() override { return why; }
    bool Read(CPoint at, std::uint32_t& colour) override {
        ++reads;
        const auto found = pixels.find({at.x, at.y});
        if (!why.empty() || found == pixels.end()) return false;
        colour = found->second;
        return true;
    }

    std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t> pixels;  // elsewhere is no screen
    std::string why;  // not empty: pixels cannot be read
    int reads = 0;
};

}  // namespace brindle
