// The contract of the images service over Qt's readers, and the colours they give.
#include "brindle/platform/qt/images_qt.h"

#include <QtGui/QImage>
#include <vector>

#include "brindle/platform/qt/qt_services.h"
#include "testing/images_contract.h"

namespace brindle {
namespace {

using testing::GifBytes;

Image Decoded(const std::string& bytes) {
    Image image;
    const Result result = QtImages().Decode(bytes, ImageFrames::kAll, image);
    EXPECT_TRUE(result.ok()) << result.text;
    return image;
}

TEST(QtImages, ColoursAreThoseOfTheFile) {
    struct Row {
        const char* label;
        std::string bytes;
        std::vector<std::uint32_t> pixels;
    };
    const std::vector<std::uint32_t> four = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF112233};
    const std::vector<Row> rows = {
        {"PNG", testing::PngBytes(2, 2, four), four},
        {"PNG with alpha, multiplied",
         testing::PngBytes(2, 1, {0x80FF0000, 0x00FFFFFF}),
         {0x80800000, 0x00000000}},
        {"BMP, from the top", testing::BmpBytes(2, 2, four), four},
        {"JPEG", testing::JpegBytes(), std::vector<std::uint32_t>(64, 0xFFFFFFFF)},
        {"GIF, frame by frame",
         GifBytes(2, 1, {{1, 0}, {2, 0}, {3, 0}}),
         {0xFFFF0000, 0xFFFF0000, 0xFF00FF00, 0xFF00FF00, 0xFFFFFFFF, 0xFFFFFFFF}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Decoded(row.bytes).pixels, row.pixels);
    }
    const Image icon = Decoded(testing::IconBytes({{16, 0xFF0000FF}, {32, 0xFF00FF00}}));
    EXPECT_EQ(icon.pixels[0], 0xFF00FF00) << "the one of the usual size";
}

TEST(QtImages, APngInsideAnIconIsDecoded) {
    const std::string png = testing::PngBytes(2, 1, {0xFF112233, 0x80FF0000});
    std::string icon("\0\0\1\0\1\0\2\1\0\0\1\0\x20\0....\x16\0\0\0", 22);
    icon.replace(14, 4, std::string(1, static_cast<char>(png.size())) + std::string(3, '\0'));
    EXPECT_EQ(Decoded(icon + png).pixels, (std::vector<std::uint32_t>{0xFF112233, 0x80800000}));
}

TEST(QtImages, WhatTheHeaderPromisesAndTheRestDoesNotKeepIsRefused) {
    std::string png = testing::PngBytes(2, 2, std::vector<std::uint32_t>(4, 0xFF336699));
    png[8 + 25 + 12] = static_cast<char>(png[8 + 25 + 12] ^ 0x55);  // among the compressed pixels
    Image image;
    const Result result = QtImages().Decode(png, ImageFrames::kAll, image);
    EXPECT_EQ(result.code, ErrorCode::kNotWellFormed);
    EXPECT_EQ(result.text, "PNG picture: cannot be decoded");
    EXPECT_EQ(image.frames, 0u);
}

// Any byte of a file may be wrong: an answer comes, and what is accepted is whole.
TEST(QtImages, EveryDamagedByteIsSurvived) {
    const std::vector<std::uint32_t> six(6, 0xFF336699);
    for (const std::string& bytes :
         {testing::PngBytes(3, 2, six), testing::BmpBytes(3, 2, six), testing::JpegBytes(),
          GifBytes(4, 3, {{1, 5}, {2, 10}}), testing::IconBytes({{4, 0xFFFF0000}})}) {
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            for (const int wrong : {0x00, 0x7F, 0xFF}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(wrong);
                Image image;
                if (QtImages().Decode(damaged, ImageFrames::kAll, image).ok()) {
                    ASSERT_GT(image.frames, 0u) << at;
                    ASSERT_EQ(image.pixels.size(), image.frames * image.PixelsOfFrame()) << at;
                } else {
                    ASSERT_EQ(image.frames, 0u) << at;
                }
            }
        }
    }
}

TEST(QtImages, AreInstalledWithTheOtherServices) {
    InstallQtServices();
    EXPECT_EQ(&CurrentImages(), &QtImages());
    SetImages(nullptr);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Qt, ImagesContract, ::testing::Values(&QtImages));
}

}  // namespace brindle
