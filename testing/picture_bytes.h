// Picture files for tests, put together byte by byte. Colours are 0xAARRGGBB, not multiplied by alpha.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::testing {

// Rows from the top; as many colours as pixels.
std::string PngBytes(int width, int height, const std::vector<std::uint32_t>& colours);
// 24 bits a pixel, without alpha.
std::string BmpBytes(int width, int height, const std::vector<std::uint32_t>& colours);
// 8 by 8 white pixels of grey scale; the size in the header may lie.
std::string JpegBytes(int width = 8, int height = 8);

struct GifFrame {
    int colour = 0;  // 0 black, 1 red, 2 green, 3 white: the whole frame
    int delay = 0;   // in 1/100 s; -1: the frame does not say
};
std::string GifBytes(int width, int height, const std::vector<GifFrame>& frames);

struct IconPicture {
    int size = 0;  // both sides
    std::uint32_t colour = 0;
};
// 32 bits a pixel each.
std::string IconBytes(const std::vector<IconPicture>& pictures);

}  // namespace brindle::testing
