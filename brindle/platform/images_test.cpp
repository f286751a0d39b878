// The contract of the images service over the fake one, and its slot.
#include "brindle/platform/images.h"

#include "brindle/platform/fake/images_fake.h"
#include "brindle/platform/service.h"
#include "testing/images_contract.h"

namespace brindle {
namespace {

Images& TheFakeImages() {
    static FakeImages images;
    return images;
}

TEST(Images, WithoutADesktopNothingIsDecoded) {
    Image image;
    image.width = 7;
    const Result result = CurrentImages().Decode("GIF89a", ImageFrames::kAll, image);
    EXPECT_EQ(result.code, ErrorCode::kUnsupported);
    EXPECT_EQ(result.text, "picture: there is no desktop to decode it");
    EXPECT_EQ(image.width, 7) << "unchanged";
}

TEST(Images, AnInstalledServiceIsUsed) {
    FakeImages fake;
    Image image;
    {
        const ScopedService<Images> scope(SetImages, fake);
        EXPECT_TRUE(CurrentImages().Decode(testing::JpegBytes(), ImageFrames::kAll, image).ok());
        EXPECT_EQ(fake.decoded, 1);
        fake.fail = true;
        EXPECT_EQ(CurrentImages().Decode(testing::JpegBytes(), ImageFrames::kAll, image).text,
                  "JPEG picture: cannot be decoded");
    }
    EXPECT_NE(&CurrentImages(), &fake);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Fake, ImagesContract, ::testing::Values(&TheFakeImages));
}

}  // namespace brindle
