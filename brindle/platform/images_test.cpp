// The slot of the images service. The contract stands in testing/images_contract.h.
#include "brindle/platform/images.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

TEST(Images, WithoutADesktopNothingIsDecoded) {
    Image image;
    image.width = 7;
    const Result result = CurrentImages().Decode("GIF89a", ImageFrames::kAll, image);
    EXPECT_EQ(result.code, ErrorCode::kUnsupported);
    EXPECT_EQ(result.text, "picture: there is no desktop to decode it");
    EXPECT_EQ(image.width, 7) << "unchanged";
}

}  // namespace
}  // namespace brindle
