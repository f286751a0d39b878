// Picture files made by hand: pixels are stored, not compressed, where the kind allows it.
#include "testing/picture_bytes.h"

#include <string_view>

namespace brindle::testing {
namespace {

using namespace std::string_literals;

std::string Little(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
    return text;
}
std::string Little16(int value) {
    return Little(static_cast<std::uint32_t>(value), 2);
}
std::string Little32(int value) {
    return Little(static_cast<std::uint32_t>(value), 4);
}
std::string Big(std::uint32_t value, int bytes) {
    const std::string little = Little(value, bytes);
    return {little.rbegin(), little.rend()};
}
std::string Big32(int value) {
    return Big(static_cast<std::uint32_t>(value), 4);
}

// --- PNG

std::uint32_t CheckSum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) sum = sum & 1 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    }
    return ~sum;
}

std::string Chunk(const std::string& typeAndData) {
    return Big32(static_cast<int>(typeAndData.size()) - 4) + typeAndData + Big(CheckSum(typeAndData), 4);
}

// One stored block, so at most 65535 bytes.
std::string Stored(const std::string& bytes) {
    std::uint32_t a = 1, b = 0;
    for (const char byte : bytes) {
        a = (a + static_cast<std::uint8_t>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    const int size = static_cast<int>(bytes.size());
    return "\x78\x01\x01" + Little16(size) + Little16(~size) + bytes + Big(b << 16 | a, 4);
}

// --- GIF

// Codes of three bits each; a clear code before every pixel keeps them so.
std::string PixelCodes(int count, int colour) {
    constexpr int kClear = 4, kEnd = 5;
    std::string bytes;
    std::uint32_t bits = 0;
    int held = 0;
    const auto put = [&](int code) {
        bits |= static_cast<std::uint32_t>(code) << held;
        for (held += 3; held >= 8; held -= 8, bits >>= 8) bytes += static_cast<char>(bits & 0xFF);
    };
    for (int i = 0; i < count; ++i) put(kClear), put(colour);
    put(kEnd);
    if (held > 0) bytes += static_cast<char>(bits & 0xFF);
    return bytes;
}

std::string SubBlocks(const std::string& bytes) {
    std::string blocks;
    for (std::size_t at = 0; at < bytes.size(); at += 255) {
        const std::string part = bytes.substr(at, 255);
        blocks += static_cast<char>(part.size()) + part;
    }
    return blocks + '\0';
}

}  // namespace

std::string PngBytes(int width, int height, const std::vector<std::uint32_t>& colours) {
    std::string rows;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        if (i % static_cast<std::size_t>(width) == 0) rows += '\0';  // no filter
        rows += Big(colours[i] << 8 | colours[i] >> 24, 4);
    }
    return "\x89PNG\r\n\x1A\n" + Chunk("IHDR" + Big32(width) + Big32(height) + "\x08\x06\0\0\0"s) +
           Chunk("IDAT" + Stored(rows)) + Chunk("IEND");
}

std::string BmpBytes(int width, int height, const std::vector<std::uint32_t>& colours) {
    std::string rows;
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) rows += Little(colours[static_cast<std::size_t>(y * width + x)], 3);
        rows.append(static_cast<std::size_t>(width % 4), '\0');
    }
    constexpr int kOffset = 54;
    return "BM" + Little32(kOffset + static_cast<int>(rows.size())) + Little32(0) + Little32(kOffset) +
           Little32(40) + Little32(width) + Little32(height) + Little16(1) + Little16(24) +
           std::string(24, '\0') + rows;
}

std::string JpegBytes(int width, int height) {
    const auto segment = [](char marker, const std::string& data) {
        return std::string("\xFF") + marker + Big(static_cast<std::uint32_t>(data.size()) + 2, 2) + data;
    };
    // Two codes for the mean (no difference, a difference of ten bits), one for the rest (nothing follows).
    const std::string mean = "\0\1\1"s + std::string(14, '\0') + "\0\x0A"s;
    const std::string rest = "\x10\1"s + std::string(15, '\0') + "\0"s;
    return "\xFF\xD8" + segment('\xDB', std::string(1, '\0') + std::string(64, '\1')) +
           segment('\xC0', "\x08" + Big(static_cast<std::uint32_t>(height), 2) +
                               Big(static_cast<std::uint32_t>(width), 2) + "\1\1\x11\0"s) +
           segment('\xC4', mean) + segment('\xC4', rest) + segment('\xDA', "\1\1\0\0\x3F\0"s) + "\xBF\x87" +
           "\xFF\xD9";
}

std::string GifBytes(int width, int height, const std::vector<GifFrame>& frames) {
    std::string bytes =
        "GIF89a" + Little16(width) + Little16(height) + "\x81\0\0"s + "\0\0\0\xFF\0\0\0\xFF\0\xFF\xFF\xFF"s;
    for (const GifFrame& frame : frames) {
        if (frame.delay >= 0) bytes += "\x21\xF9\x04\0"s + Little16(frame.delay) + "\0\0"s;
        bytes += "," + Little32(0) + Little16(width) + Little16(height) + "\0\2"s +
                 SubBlocks(PixelCodes(width * height, frame.colour));
    }
    return bytes + ";";
}

std::string IconBytes(const std::vector<IconPicture>& pictures) {
    std::string entries, data;
    const int count = static_cast<int>(pictures.size());
    for (const IconPicture& each : pictures) {
        const std::size_t maskRow = static_cast<std::size_t>((each.size + 31) / 32 * 4);
        std::string picture = Little32(40) + Little32(each.size) + Little32(2 * each.size) + Little16(1) +
                              Little16(32) + std::string(24, '\0');
        for (int i = 0; i < each.size * each.size; ++i) picture += Little(each.colour, 4);
        picture.append(maskRow * static_cast<std::size_t>(each.size), '\0');
        const int offset = 6 + 16 * count + static_cast<int>(data.size());
        const char side = static_cast<char>(each.size);
        entries += std::string() + side + side + "\0\0"s + Little16(1) + Little16(32) +
                   Little32(static_cast<int>(picture.size())) + Little32(offset);
        data += picture;
    }
    return "\0\0\1\0"s + Little16(count) + entries + data;
}

}  // namespace brindle::testing
