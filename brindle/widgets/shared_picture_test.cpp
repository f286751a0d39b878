// The shared cache: which files are one picture, how often they are decoded, and who frees what when.
#include "brindle/widgets/shared_picture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/images_fake.h"
#include "brindle/platform/screen.h"
#include "brindle/platform/service.h"
#include "testing/picture_bytes.h"

namespace {

using brindle::Image;
using brindle::ScopedService;
using brindle::testing::BmpBytes;
using brindle::testing::GifBytes;
using brindle::testing::PngBytes;

class FixedScreen final : public brindle::Screen {
  public:
    int DotsPerInchX() override { return x; }
    int DotsPerInchY() override { return y; }
    int x = 96, y = 96;
};

// One picture of half transparent red beside clear and opaque blue, whatever the bytes.
class ThreePixels final : public brindle::Images {
  public:
    brindle::Result Decode(std::string_view, brindle::ImageFrames, Image& image) override {
        image = {};
        image.width = 3;
        image.height = 1;
        image.frames = 1;
        image.pixels = {0x80800000, 0x00000000, 0xFF0000FF};
        return {};
    }
};

class SharedPicture : public ::testing::Test {
  protected:
    SharedPicture() {
        using Kind = brindle::FakeFiles::Kind;
        m_files.Add("/site/Lamp.GIF", Kind::kFile, GifBytes(2, 2, {{1, 5}, {2, 10}, {3, 20}}));
        m_files.Add("/site/wall.png", Kind::kFile, PngBytes(3, 2, std::vector<std::uint32_t>(6, 0)));
        m_files.Add("/site/photo.bmp", Kind::kFile, BmpBytes(4, 2, std::vector<std::uint32_t>(8, 0)));
        m_files.Add("/site/moving.tmp", Kind::kFile, GifBytes(2, 2, {{1, 5}, {2, 10}}));
        m_files.Add("/site/broken.png", Kind::kFile, "\x89PNG");
        m_files.Add("/site/old.wmf", Kind::kFile, "\xD7\xCD\xC6\x9A");
        EXPECT_TRUE(m_files.SetCurrentDirectory("/site").ok());
    }
    int Decoded() const { return m_images.decoded; }

    brindle::FakeFiles m_files;
    brindle::FakeImages m_images;
    FixedScreen m_screen;
    ScopedService<brindle::Files> m_filesScope{brindle::SetFiles, m_files};
    ScopedService<brindle::Images> m_imagesScope{brindle::SetImages, m_images};
    ScopedService<brindle::Screen> m_screenScope{brindle::SetScreen, m_screen};
};

// The references that are held, asked without changing them.
unsigned long References(IPicture* picture) {
    picture->AddRef();
    return picture->Release();
}

TEST_F(SharedPicture, OneFileIsOnePictureHoweverItIsSpelled) {
    IPicture* lamp = CreateSharedPicture("/site/Lamp.GIF");
    ASSERT_NE(lamp, nullptr);
    EXPECT_EQ(References(lamp), 2u) << "the cache's and the caller's";
    for (const char* path :
         {"/SITE/LAMP.GIF", "lamp.gif", "\\site\\.\\Lamp.gif", "/site/x/../lamp.gif", "./LAMP.gif"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(CreateSharedPicture(path), lamp);
    }
    EXPECT_EQ(References(lamp), 7u);
    EXPECT_EQ(Decoded(), 1);
    for (int left = 6; left > 0; --left) {
        ReleaseSharedPicture(lamp);
        if (left == 1) break;
        EXPECT_EQ(References(lamp), static_cast<unsigned long>(left));
    }
    lamp = CreateSharedPicture("lamp.gif");
    EXPECT_EQ(Decoded(), 2) << "it was gone";
    ReleaseSharedPicture(lamp);
}

TEST_F(SharedPicture, APictureSomebodyElseHoldsOutlivesTheCache) {
    IPicture* lamp = CreateSharedPicture("lamp.gif");
    lamp->AddRef();
    ReleaseSharedPicture(lamp);
    EXPECT_EQ(References(lamp), 1u);
    ReleaseSharedPicture(lamp);  // it is not in the cache any more
    EXPECT_EQ(References(lamp), 1u);
    IPicture* again = CreateSharedPicture("lamp.gif");
    EXPECT_NE(again, lamp);
    ReleaseSharedPicture(again);
    EXPECT_EQ(lamp->Release(), 0u);
}

TEST_F(SharedPicture, OnlyFilesNamedGifOrPngStepThroughFrames) {
    struct Row {
        const char* path;
        bool facet, animated;
        long width;
    };
    const std::vector<Row> rows = {
        {"Lamp.GIF", true, true, 70},      // 2 points
        {"wall.png", true, false, 105},    // 3 points
        {"photo.bmp", false, false, 106},  // 4 pixels at 96 dots per inch
        {"moving.tmp", false, false, 53},  // a GIF by another name
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        IPicture* picture = CreateSharedPicture(row.path);
        ASSERT_NE(picture, nullptr);
        void* facet = nullptr;
        EXPECT_EQ(picture->QueryInterface(kPictureAnimationId, &facet),
                  row.facet ? kInterfaceOk : kInterfaceNone);
        if (facet) {
            EXPECT_EQ(static_cast<IPictureAnimation*>(facet)->IsAnimated(), row.animated);
        }
        long width = 0;
        picture->get_Width(&width);
        EXPECT_EQ(width, row.width);
        ReleaseSharedPicture(picture);
    }
}

TEST_F(SharedPicture, TheScreenSizesOtherPictures) {
    m_screen.x = 120;
    m_screen.y = 72;
    IPicture* photo = CreateSharedPicture("photo.bmp");
    long width = 0, height = 0;
    photo->get_Width(&width);
    photo->get_Height(&height);
    EXPECT_EQ(width, 85);   // 4 * 2540 / 120, rounded
    EXPECT_EQ(height, 71);  // 2 * 2540 / 72, rounded
    ReleaseSharedPicture(photo);
}

TEST_F(SharedPicture, FailuresAreNullAndNotCached) {
    const std::string longest = "/site/" + std::string(250, 'x') + ".png",
                      longer = "/site/" + std::string(251, 'x') + ".png";
    m_files.Add(longest, brindle::FakeFiles::Kind::kFile, PngBytes(1, 1, {0}));
    m_files.Add(longer, brindle::FakeFiles::Kind::kFile, PngBytes(1, 1, {0}));
    struct Row {
        const char* label;
        const char* path;
        bool expected;
    };
    const std::vector<Row> rows = {
        {"none", nullptr, false},
        {"empty", "", false},
        {"missing", "missing.png", false},
        {"broken", "broken.png", false},
        {"metafile", "old.wmf", false},
        {"a folder", "/site", false},
        {"260 letters", longest.c_str(), true},
        {"261 letters", longer.c_str(), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IPicture* picture = CreateSharedPicture(row.path);
        EXPECT_EQ(picture != nullptr, row.expected);
        ReleaseSharedPicture(picture);
    }
    for (const char* path : {static_cast<const char*>(nullptr), "", "missing.png", "broken.png", "old.wmf"})
        EXPECT_EQ(CreateSharedBitmap(path, 0), nullptr);
    m_files.Add("/site/broken.png", brindle::FakeFiles::Kind::kFile, PngBytes(1, 1, {0}));
    IPicture* mended = CreateSharedPicture("broken.png");
    EXPECT_NE(mended, nullptr) << "the failure was not kept";
    ReleaseSharedPicture(mended);
    ReleaseSharedPicture(nullptr);
    ReleaseSharedBitmap(nullptr);
}

TEST_F(SharedPicture, StrangersAreLeftAlone) {
    IPicture* lamp = CreateSharedPicture("lamp.gif");
    IPicture* wall = CreateSharedPicture("wall.png");
    lamp->AddRef();
    ReleaseSharedPicture(lamp);
    ReleaseSharedPicture(lamp);
    EXPECT_EQ(References(wall), 2u);
    EXPECT_EQ(lamp->Release(), 0u) << "the second release was nothing";
    CBitmap own;
    own.CreateBitmap(1, 1, nullptr);
    ReleaseSharedBitmap(&own);
    EXPECT_EQ(own.GetSize(), (CSize{1, 1}));
    ReleaseSharedPicture(wall);
}

TEST_F(SharedPicture, BitmapsAreSharedByPathAndColour) {
    CBitmap* grey = CreateSharedBitmap("Photo.bmp", 0x808080);
    ASSERT_NE(grey, nullptr);
    EXPECT_EQ(CreateSharedBitmap("photo.BMP", 0x808080), grey);
    CBitmap* white = CreateSharedBitmap("photo.bmp", 0xFFFFFF);
    EXPECT_NE(white, grey);
    CBitmap* byFullPath = CreateSharedBitmap("/site/photo.bmp", 0x808080);
    EXPECT_NE(byFullPath, grey) << "the path is not made absolute";
    EXPECT_EQ(CreateSharedBitmap("photo.bmp", 0x808080 + (1ul << 32)), grey) << "colours have 32 bits";
    EXPECT_EQ(Decoded(), 3);
    for (int i = 0; i < 3; ++i) ReleaseSharedBitmap(grey);
    EXPECT_EQ(CreateSharedBitmap("photo.bmp", 0xFFFFFF), white) << "the others are still there";
    ReleaseSharedBitmap(white);
    ReleaseSharedBitmap(white);
    ReleaseSharedBitmap(byFullPath);
    ReleaseSharedBitmap(CreateSharedBitmap("photo.bmp", 0x808080));
    EXPECT_EQ(Decoded(), 4) << "it was gone";
}

TEST_F(SharedPicture, APictureAndABitmapOfOneFileAreTwo) {
    IPicture* picture = CreateSharedPicture("\\site\\photo.bmp");
    CBitmap* bitmap = CreateSharedBitmap("\\site\\photo.bmp", 0);
    m_files.Add("/site/photo.bmp_b0", brindle::FakeFiles::Kind::kFile, BmpBytes(1, 1, {0}));
    IPicture* named = CreateSharedPicture("\\site\\photo.bmp_b0");
    EXPECT_NE(named, picture) << "not the bitmap's name in the cache either";
    EXPECT_EQ(References(named), 2u);
    ReleaseSharedBitmap(bitmap);
    EXPECT_EQ(References(picture), 2u);
    ReleaseSharedPicture(named);
    ReleaseSharedPicture(picture);
}

TEST_F(SharedPicture, BitmapsShowThePictureOnTheirColour) {
    ThreePixels images;
    const ScopedService<brindle::Images> scope(brindle::SetImages, images);
    CBitmap* bitmap = CreateSharedBitmap("photo.bmp", 0x0020FF);  // red 255, green 32
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->GetSize(), (CSize{3, 1}));
    EXPECT_EQ(bitmap->GetBitmapDimension(), (CSize{3, 1}));
    EXPECT_EQ(bitmap->GetPixels()[0], 0xFFFF1000u) << "half of the ground shows";
    EXPECT_EQ(bitmap->GetPixels()[1], 0xFFFF2000u) << "the ground";
    EXPECT_EQ(bitmap->GetPixels()[2], 0xFF0000FFu) << "no ground";
    ReleaseSharedBitmap(bitmap);
}

TEST_F(SharedPicture, BitmapsAreAsLargeAsThePictureOnTheScreen) {
    struct Row {
        const char* label;
        int x, y;
        CSize expected;
    };
    const std::vector<Row> rows = {
        {"as usual", 96, 96, {4, 2}},
        {"unequal", 300, 72, {4, 2}},
        {"so fine that hundredths of a millimetre are coarser", 4000, 96, {5, 2}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_screen.x = row.x;
        m_screen.y = row.y;
        CBitmap* bitmap = CreateSharedBitmap("photo.bmp", 0);
        ASSERT_NE(bitmap, nullptr);
        EXPECT_EQ(bitmap->GetSize(), row.expected);
        ReleaseSharedBitmap(bitmap);
    }
    m_screen.x = 100'000;  // 4 pixels are nothing then
    EXPECT_EQ(CreateSharedBitmap("photo.bmp", 0), nullptr);
}

}  // namespace
