// What picture files say of themselves, kind by kind: unusual but sound files, and unsound ones.
#include "brindle/platform/image_header.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/image_kinds.h"
#include "testing/picture_bytes.h"

namespace brindle {
namespace {

using namespace std::string_literals;
using testing::BmpBytes;
using testing::GifBytes;
using testing::JpegBytes;
using testing::PngBytes;

// "WxH", frames and delays where there are several; or the failure.
std::string Told(const std::string& bytes, ImageFrames wanted = ImageFrames::kAll) {
    ImageHeader header;
    const Result result = ReadImageHeader(bytes, wanted, header);
    if (!result.ok()) return result.text;
    std::string text = std::string(ImageKindName(header.kind)) + " " + std::to_string(header.width) + "x" +
                       std::to_string(header.height);
    if (header.frames > 1) text += " frames " + std::to_string(header.frames);
    for (const std::uint32_t delay : header.delays) text += " " + std::to_string(delay);
    return text;
}

// The text with the bytes at a place replaced.
std::string With(std::string bytes, std::size_t at, const std::string& others) {
    return bytes.replace(at, others.size(), others);
}

struct Row {
    const char* label;
    std::string bytes;
    const char* expected;
};

void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Told(row.bytes), row.expected);
    }
}

TEST(ImageHeader, Gif) {
    const std::string head = "GIF89a"s + "\2\0\3\0\0\0\0"s;  // 2 by 3, no colours
    const std::string image = ",\0\0\0\0\2\0\3\0\0\2\1x\0"s;
    const std::string control = "\x21\xF9\4\0\7\0\0\0"s;
    Check({
        {"87a", "GIF87a"s + head.substr(6) + image + ";", "GIF 2x3"},
        {"no trailer", head + image + image, "GIF 2x3 frames 2"},
        {"what follows the trailer does not count", head + image + ";" + image, "GIF 2x3"},
        {"an unknown block ends it", head + image + "!"s.replace(0, 1, "?") + image, "GIF 2x3"},
        {"a global table of 256 colours", With(head, 10, "\x87"s) + std::string(768, ',') + image, "GIF 2x3"},
        {"a local table of 4 colours",
         head + ",\0\0\0\0\2\0\3\0\x81"s + std::string(12, ';') + "\2\1x\0"s + image, "GIF 2x3 frames 2"},
        {"comments and programs between",
         head + "\x21\xFE\3abc\0"s + image + "\x21\xFF\x0B" + "NETSCAPE2.0" + "\3\1\0\0\0"s + control + image,
         "GIF 2x3 frames 2 0 7"},
        {"an empty extension", head + "\x21\xFE\0"s + image, "GIF 2x3"},
        {"an empty control", head + "\x21\xF9\0"s + image + control + image, "GIF 2x3 frames 2 0 7"},
        {"a control that is too short", head + "\x21\xF9\2\0\1\0"s + image + image, "GIF 2x3 frames 2"},
        {"a control that is too long", head + "\x21\xF9\5\0\7\0\0\0\0"s + image + image,
         "GIF 2x3 frames 2 7 0"},
        {"the last control counts", head + control + "\x21\xF9\4\0\1\1\0\0"s + image + image,
         "GIF 2x3 frames 2 257 0"},
        {"a control belongs to one frame", head + control + image + image, "GIF 2x3 frames 2 7 0"},
        {"no frame", head + ";", "GIF picture: ends early"},
        {"nothing but a header", head, "GIF picture: ends early"},
        {"no width", With(head, 6, "\0\0"s) + image, "GIF picture: is of no size"},
    });
    EXPECT_EQ(Told(head + control + image + image, ImageFrames::kFirst), "GIF 2x3") << "the first alone";
}

TEST(ImageHeader, Png) {
    const std::string png = PngBytes(1, 1, {0});
    Check({
        {"sound", png, "PNG 1x1"},
        {"bytes behind the end", png + "more", "PNG 1x1"},
        {"another first chunk", With(png, 12, "IDAT"), "PNG picture: does not begin with its header"},
        {"a header of another size", With(png, 11, "\x0E"), "PNG picture: does not begin with its header"},
        {"a chunk longer than the file", With(png, 33, "\x7F"), "PNG picture: ends early"},
        {"a chunk of 4 GiB", With(png, 33, "\xFF\xFF\xFF\xFF"), "PNG picture: ends early"},
        {"no end", png.substr(0, png.size() - 12), "PNG picture: ends early"},
        {"the longest sides", PngBytes(16384, 2048, {}), "PNG 16384x2048"},
        {"a width of 4 Gi", With(png, 16, "\xFF\xFF\xFF\xFF"),
         "PNG picture: of 4294967295 x 1: no side may be longer than 16384"},
    });
}

TEST(ImageHeader, OfAPngOnlyWhatDecidesItsLookIsDecoded) {
    const std::string png = PngBytes(1, 1, {0x12345678});
    const auto chunk = [](const std::string& typeAndData) {
        return "\0\0\0"s + static_cast<char>(typeAndData.size() - 4) + typeAndData + "sum.";
    };
    constexpr std::size_t kFirst = 8 + 25;  // behind the header
    const auto with = [&](const std::string& more) {
        return png.substr(0, kFirst) + more + png.substr(kFirst);
    };
    struct Case {
        const char* label;
        std::string bytes, expected;
    };
    const std::vector<Case> rows = {
        {"nothing else", png, png},
        {"texts and profiles", with(chunk("zTXtx") + chunk("iCCPxy") + chunk("tEXt")), png},
        {"transparency stays", with(chunk("tRNSx")), with(chunk("tRNSx"))},
        {"unknown critical ones stay", with(chunk("ABCDx")), with(chunk("ABCDx"))},
        {"behind the end nothing counts", png + chunk("tRNSx"), png},
        {"cut", png.substr(0, png.size() - 1), png.substr(0, png.size() - 12)},
    };
    for (const Case& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(PngEssentials(row.bytes), row.expected);
    }
}

TEST(ImageHeader, FramesHaveALimit) {
    const std::string head = GifBytes(1, 1, {}), image = GifBytes(1, 1, {{1, -1}});
    const std::string frame = image.substr(head.size() - 1, image.size() - head.size());
    std::string bytes = head.substr(0, head.size() - 1);
    for (int i = 0; i < 10'000; ++i) bytes += frame;
    EXPECT_EQ(Told(bytes), "GIF 1x1 frames 10000");
    bytes += frame;
    EXPECT_EQ(Told(bytes), "GIF picture: of 10001 frames: there may be at most 10000");
    EXPECT_EQ(Told(bytes, ImageFrames::kFirst), "GIF 1x1");
}

TEST(ImageHeader, Jpeg) {
    const std::string jpeg = JpegBytes();
    const std::size_t scan = jpeg.find("\xFF\xDA");
    const std::string scanPart = jpeg.substr(scan, jpeg.size() - scan - 2);
    std::string scans;
    for (int i = 0; i < 99; ++i) scans += scanPart;
    Check({
        {"sound", jpeg, "JPEG 8x8"},
        {"bytes behind the end", jpeg + "more", "JPEG 8x8"},
        {"filled up markers", "\xFF\xD8\xFF\xFF\xFF" + jpeg.substr(3), "JPEG 8x8"},
        {"stuffed and restart marks are data", jpeg.substr(0, jpeg.size() - 2) + "\xFF\0\xFF\xD0\xFF\xD9"s,
         "JPEG 8x8"},
        {"a thumbnail in a segment does not end it", "\xFF\xD8\xFF\xE1\0\6\xFF\xD8\xFF\xD9"s + jpeg.substr(2),
         "JPEG 8x8"},
        {"marks that stand alone have no size", "\xFF\xD8\xFF\x01\xFF\xD7"s + jpeg.substr(2), "JPEG 8x8"},
        {"100 scans", jpeg.substr(0, jpeg.size() - 2) + scans + "\xFF\xD9", "JPEG 8x8"},
        {"101 scans", jpeg.substr(0, jpeg.size() - 2) + scans + scanPart + "\xFF\xD9",
         "JPEG picture: has more than 100 scans"},
        {"no scan", jpeg.substr(0, scan) + "\xFF\xD9", "JPEG picture: holds no picture"},
        {"no frame", "\xFF\xD8" + jpeg.substr(scan), "JPEG picture: holds no picture"},
        {"no marker", "\xFF\xD8\xFF\xE0\0\2x"s + jpeg, "JPEG picture: has no marker where one is due"},
        {"a segment of no size", "\xFF\xD8\xFF\xE0\0\1"s + jpeg, "JPEG picture: has a segment of no size"},
        {"a frame too short for a size", "\xFF\xD8\xFF\xC0\0\4\x08\0"s + jpeg, "JPEG picture: has no size"},
        {"without its end mark", jpeg.substr(0, jpeg.size() - 2), "JPEG picture: ends early"},
    });
}

TEST(ImageHeader, Bmp) {
    const std::string bmp = BmpBytes(3, 2, std::vector<std::uint32_t>(6, 0));
    const std::string old =
        "BM"s + std::string(8, '\0') + "\x1A\0\0\0\x0C\0\0\0\3\0\2\0\1\0\x18\0"s + std::string(24, 'x');
    const std::string runs = With(With(bmp, 28, "\x08"), 30, "\1");
    Check({
        {"sound", bmp, "BMP 3x2"},
        {"from the top", With(bmp, 22, "\xFE\xFF\xFF\xFF"), "BMP 3x2"},
        {"of the old kind", old, "BMP 3x2"},
        {"of the old kind, cut", old.substr(0, old.size() - 1), "BMP picture: ends early"},
        {"a row is missing", bmp.substr(0, bmp.size() - 1), "BMP picture: ends early"},
        {"the pixels lie beyond the end", With(bmp, 10, "\xFF\xFF\xFF\xFF"), "BMP picture: ends early"},
        {"run lengths", With(runs, 34, "\x10"), "BMP 3x2"},
        {"run lengths without their length", runs, "BMP picture: does not say how long it is"},
        {"run lengths, cut", With(runs, 34, "\x20"), "BMP picture: ends early"},
        {"a JPEG inside", With(bmp, 30, "\4"), "BMP picture: is compressed in an unknown way"},
        {"an unknown header", With(bmp, 14, "\x10"), "BMP picture: has no known header"},
        {"a negative width", With(bmp, 18, "\xFF\xFF\xFF\xFF"), "BMP picture: has a negative width"},
        {"pixels without bits", With(bmp, 28, "\0"s), "BMP picture: has pixels of no known size"},
        {"pixels of 64 bits", With(bmp, 28, "\x40"), "BMP picture: has pixels of no known size"},
        {"the lowest height", With(bmp, 22, "\0\0\0\x80"s),
         "BMP picture: of 3 x 2147483648: no side may be longer than 16384"},
    });
}

TEST(ImageHeader, Icon) {
    const std::string icon = testing::IconBytes({{4, 0xFFFFFFFF}});
    const std::string png = PngBytes(5, 6, std::vector<std::uint32_t>(30, 0));
    const std::string entry = "\0\0\1\0\1\0\5\6\0\0\1\0\x20\0"s;  // up to size and place
    const std::string place = "\x16\0\0\0"s;
    const std::string size = std::string(1, static_cast<char>(png.size())) + "\0\0\0"s;
    Check({
        {"sound", icon, "ICO 4x4"},
        {"a PNG inside", entry + size + place + png, "ICO 5x6"},
        {"a PNG inside that is too large", entry + size + place + With(png, 16, "\1"),
         "ICO picture: of 16777221 x 6: no side may be longer than 16384"},
        {"a PNG inside, cut", entry + size + place + png.substr(0, png.size() - 1),
         "ICO picture: ends early"},
        {"no picture", "\0\0\1\0\0\0"s, "ICO picture: holds no picture"},
        {"fewer entries than told", "\0\0\1\0\2\0"s + icon.substr(6, 16), "ICO picture: ends early"},
        {"a picture beyond the end", With(icon, 18, "\xFF\xFF\xFF\xFF"), "ICO picture: ends early"},
        {"a compressed picture", With(icon, 22 + 16, "\1"), "ICO picture: is compressed in an unknown way"},
        {"a cursor", With(icon, 2, "\2"), "picture: the file is of no known kind"},
        {"of no height", With(icon, 22 + 8, "\1"), "ICO picture: is of no size"},
    });
}

TEST(ImageHeader, FilesHaveALimit) {
    std::string bytes = PngBytes(1, 1, {0});
    bytes.resize(kMostImageBytes);
    EXPECT_EQ(Told(bytes), "PNG 1x1");
    bytes += 'x';
    EXPECT_EQ(Told(bytes), "picture: the file is larger than 67108864 bytes");
}

}  // namespace
}  // namespace brindle
