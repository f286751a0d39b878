// What every images service keeps to: sizes, frames, delays, limits and failures. Which colours come out is its own
// tests' business. A test program instantiates the suite for its service:
//   INSTANTIATE_TEST_SUITE_P(Fake, ImagesContract, ::testing::Values(&TheFakeImages));
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/image_header.h"
#include "brindle/platform/images.h"
#include "testing/picture_bytes.h"

namespace brindle::testing {

using ImagesUnderTest = Images& (*)();

class ImagesContract : public ::testing::TestWithParam<ImagesUnderTest> {
  protected:
    static Result Decode(const std::string& bytes, Image& image, ImageFrames wanted = ImageFrames::kAll) {
        return GetParam()().Decode(bytes, wanted, image);
    }
    struct Sample {
        const char* label;
        std::string bytes;
        int width, height;
    };
    static std::vector<Sample> OneOfEachKind() {
        const std::vector<std::uint32_t> six(6, 0xFF336699);
        return {{"PNG", PngBytes(3, 2, six), 3, 2},
                {"BMP", BmpBytes(3, 2, six), 3, 2},
                {"JPEG", JpegBytes(), 8, 8},
                {"GIF", GifBytes(4, 3, {{1, 5}, {2, 10}}), 4, 3},
                {"ICO", IconBytes({{16, 0xFFFF0000}}), 16, 16}};
    }
};

TEST_P(ImagesContract, EveryKindIsDecoded) {
    for (const Sample& row : OneOfEachKind()) {
        SCOPED_TRACE(row.label);
        Image image;
        const Result result = Decode(row.bytes, image);
        ASSERT_TRUE(result.ok()) << result.text;
        EXPECT_EQ(image.width, row.width);
        EXPECT_EQ(image.height, row.height);
        ASSERT_GE(image.frames, 1u);
        EXPECT_EQ(image.pixels.size(), image.frames * image.PixelsOfFrame());
        for (const std::uint32_t pixel : image.pixels) {
            const std::uint32_t alpha = pixel >> 24;
            ASSERT_TRUE((pixel & 0xFF) <= alpha && (pixel >> 8 & 0xFF) <= alpha &&
                        (pixel >> 16 & 0xFF) <= alpha);
        }
    }
}

TEST_P(ImagesContract, FramesAndDelaysAreThoseOfTheFile) {
    struct Row {
        const char* label;
        std::vector<GifFrame> frames;
        std::vector<std::uint32_t> delays;
    };
    const std::vector<Row> rows = {
        {"three", {{1, 5}, {2, 10}, {3, 20}}, {5, 10, 20}},
        {"short ones stay", {{1, 0}, {2, 1}, {3, 2}}, {0, 1, 2}},
        {"the longest", {{1, 65535}, {2, 65535}}, {65535, 65535}},
        {"a frame without one", {{1, 7}, {2, -1}, {3, 9}}, {7, 0, 9}},
        {"none at all", {{1, -1}, {2, -1}}, {}},
        {"one frame has none", {{1, 50}}, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const std::string bytes = GifBytes(2, 2, row.frames);
        Image image;
        ASSERT_TRUE(Decode(bytes, image).ok());
        EXPECT_EQ(image.frames, row.frames.size());
        EXPECT_EQ(image.delays, row.delays);
        ASSERT_TRUE(Decode(bytes, image, ImageFrames::kFirst).ok());
        EXPECT_EQ(image.frames, 1u) << "the first alone";
        EXPECT_EQ(image.pixels.size(), 4u);
        EXPECT_TRUE(image.delays.empty());
    }
}

TEST_P(ImagesContract, OfAnIconTheOne32PixelsWideIsTakenElseTheFirst) {
    struct Row {
        const char* label;
        std::vector<IconPicture> pictures;
        int width;
    };
    const std::vector<Row> rows = {
        {"one", {{16, 0xFF0000FF}}, 16},
        {"the usual one", {{16, 0xFF0000FF}, {32, 0xFF00FF00}, {48, 0xFFFF0000}}, 32},
        {"the first of two usual ones", {{32, 0xFF00FF00}, {32, 0xFFFF0000}}, 32},
        {"none is usual", {{48, 0xFF00FF00}, {16, 0xFFFF0000}}, 48},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Image image;
        ASSERT_TRUE(Decode(IconBytes(row.pictures), image).ok());
        EXPECT_EQ(image.width, row.width);
        EXPECT_EQ(image.height, row.width);
    }
}

TEST_P(ImagesContract, PicturesThatEndEarlyAreRefused) {
    for (const Sample& row : OneOfEachKind()) {
        if (std::string(row.label) == "GIF") continue;
        for (std::size_t length = 0; length < row.bytes.size(); ++length) {
            SCOPED_TRACE(std::string(row.label) + " cut to " + std::to_string(length));
            Image image;
            image.width = 77;
            const Result result = Decode(row.bytes.substr(0, length), image);
            EXPECT_FALSE(result.ok());
            EXPECT_FALSE(result.text.empty());
            EXPECT_EQ(image.width, 77) << "unchanged";
        }
    }
}

TEST_P(ImagesContract, AGifThatEndsEarlyKeepsItsWholeFrames) {
    const std::vector<GifFrame> frames = {{1, 5}, {2, 10}, {3, 20}};
    const std::string bytes = GifBytes(4, 3, frames);
    std::size_t last = 0;
    for (std::size_t length = 6; length <= bytes.size(); ++length) {
        SCOPED_TRACE("cut to " + std::to_string(length));
        Image image;
        const Result result = Decode(bytes.substr(0, length), image);
        EXPECT_EQ(result.ok(), image.frames > 0);
        EXPECT_EQ(result.text, result.ok() ? "" : "GIF picture: ends early");
        EXPECT_GE(image.frames, last);
        if (image.frames > 1) {
            EXPECT_EQ(image.delays.size(), image.frames);
        }
        last = image.frames;
    }
    EXPECT_EQ(last, 3u);
}

TEST_P(ImagesContract, WhatIsNoPictureIsRefused) {
    struct Row {
        const char* label;
        std::string bytes;
        ErrorCode code;
        const char* text;
    };
    const std::string emf =
        std::string("\1\0\0\0", 4) + std::string(36, '\0') + " EMF" + std::string(60, '\0');
    const std::vector<Row> rows = {
        {"nothing", "", ErrorCode::kNotWellFormed, "picture: the file is empty"},
        {"text", "hello", ErrorCode::kUnsupported, "picture: the file is of no known kind"},
        {"enhanced metafile", emf, ErrorCode::kUnsupported, "picture: metafiles are not drawn"},
        {"placeable metafile", "\xD7\xCD\xC6\x9A....", ErrorCode::kUnsupported,
         "picture: metafiles are not drawn"},
        {"metafile", std::string("\1\0\x09\0\0\3", 6), ErrorCode::kUnsupported,
         "picture: metafiles are not drawn"},
        {"too wide", PngBytes(16385, 1, {}), ErrorCode::kLimit,
         "PNG picture: of 16385 x 1: no side may be longer than 16384"},
        {"too high", BmpBytes(1, 1, {0}).replace(22, 4, std::string("\0\x94\x35\x77", 4)), ErrorCode::kLimit,
         "BMP picture: of 1 x 2000000000: no side may be longer than 16384"},
        {"too many pixels", PngBytes(16384, 2049, {}), ErrorCode::kLimit,
         "PNG picture: of 16384 x 2049: there may be at most 33554432 pixels"},
        {"no width", PngBytes(0, 5, {}), ErrorCode::kNotWellFormed, "PNG picture: is of no size"},
        {"no height", JpegBytes(8, 0), ErrorCode::kNotWellFormed, "JPEG picture: is of no size"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Image image;
        const Result result = Decode(row.bytes, image);
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.text, row.text);
        EXPECT_EQ(image.frames, 0u) << "unchanged";
    }
}

TEST_P(ImagesContract, FramesTogetherHaveALimitToo) {
    // Each frame covers one pixel of a screen that is large.
    std::string bytes = GifBytes(1, 1, std::vector<GifFrame>(5, {1, 5}));
    const std::string side("\x88\x13", 2);  // 5000
    bytes.replace(6, 4, side + side);
    Image image;
    const Result result = Decode(bytes, image);
    EXPECT_EQ(result.code, ErrorCode::kLimit);
    EXPECT_EQ(result.text,
              "GIF picture: of 5000 x 5000 with 5 frames: they may have at most 67108864 pixels together");
}

}  // namespace brindle::testing
