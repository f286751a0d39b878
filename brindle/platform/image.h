// Image: a decoded picture: frames of 32-bit pixels, all of one size, each as it is shown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brindle {

struct Image {
    std::int32_t width = 0;   // in pixels, positive in every decoded picture
    std::int32_t height = 0;  // likewise
    std::uint32_t frames = 0;
    // Frame by frame, row by row from the top: 0xAARRGGBB, the colours multiplied by alpha.
    std::vector<std::uint32_t> pixels;
    // How long each frame is shown, in 1/100 s as the file says, 0 included. Empty: the file does not say, or has one
    // frame.
    std::vector<std::uint32_t> delays;

    std::size_t PixelsOfFrame() const noexcept {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    const std::uint32_t* Frame(std::uint32_t index) const noexcept {
        return pixels.data() + index * PixelsOfFrame();
    }
};

}  // namespace brindle
