// Bitmaps, and how a device context draws them.
#include "brindle/framework/ui/bitmap.h"

#include <gtest/gtest.h>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"

namespace brindle {
namespace {

TEST(Bitmap, HoldsWhatItWasMadeOf) {
    CBitmap bitmap;
    EXPECT_EQ(bitmap.GetSize(), CSize());
    EXPECT_EQ(bitmap.GetPixels(), nullptr);
    EXPECT_EQ(bitmap.DeleteObject(), 0);

    const std::uint32_t pixels[] = {0x112233, 0xFF445566, 0x80000001, 0};
    EXPECT_EQ(bitmap.CreateBitmap(2, 2, pixels), 1);
    EXPECT_EQ(bitmap.GetSize(), (CSize{2, 2}));
    EXPECT_EQ(bitmap.GetPixels()[0], 0xFF112233u) << "always opaque";
    EXPECT_EQ(bitmap.GetPixels()[2], 0xFF000001u);
    EXPECT_EQ(bitmap.SetBitmapDimension(7, 8), CSize());
    EXPECT_EQ(bitmap.SetBitmapDimension(9, 8), (CSize{7, 8}));
    EXPECT_EQ(bitmap.GetBitmapDimension(), (CSize{9, 8}));

    EXPECT_EQ(bitmap.CreateBitmap(1, 1, nullptr), 1) << "in place of the earlier pixels";
    EXPECT_EQ(bitmap.GetPixels()[0], 0xFF000000u);
    EXPECT_EQ(bitmap.DeleteObject(), 1);
    EXPECT_EQ(bitmap.GetSize(), CSize());
    EXPECT_EQ(bitmap.GetBitmapDimension(), CSize());
}

TEST(Bitmap, UnusableSizesChangeNothing) {
    CBitmap bitmap;
    ASSERT_EQ(bitmap.CreateBitmap(3, 2, nullptr), 1);
    for (const CSize size :
         {CSize{0, 1}, CSize{1, 0}, CSize{-1, 1}, CSize{1, -1}, CSize{16385, 1}, CSize{1, 16385}}) {
        EXPECT_EQ(bitmap.CreateBitmap(size.cx, size.cy, nullptr), 0) << size.cx << " " << size.cy;
        EXPECT_EQ(bitmap.GetSize(), (CSize{3, 2}));
    }
}

TEST(Bitmap, IsDrawnIntoARectangle) {
    RecordingSurface surface;
    CDC dc(surface);
    CBitmap bitmap;
    EXPECT_FALSE(dc.DrawBitmap({0, 0, 5, 5}, bitmap)) << "no pixels";
    bitmap.CreateBitmap(3, 2, nullptr);
    EXPECT_FALSE(dc.DrawBitmap({5, 0, 5, 5}, bitmap)) << "an empty rectangle";
    EXPECT_TRUE(dc.DrawBitmap({10, 20, 13, 22}, bitmap));
    EXPECT_TRUE(dc.DrawBitmap({13, 22, 10, 20}, bitmap)) << "the wrong way round: the same";
    EXPECT_EQ(surface.Text(),
              "picture 3x2 frame 0 of 1 part 0 0 3 2 into 10 20 13 22\n"
              "picture 3x2 frame 0 of 1 part 0 0 3 2 into 10 20 13 22\n");
}

}  // namespace
}  // namespace brindle
