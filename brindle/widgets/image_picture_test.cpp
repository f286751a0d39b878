// Picture objects: references, interfaces, sizes, frames, and which part is drawn where.
#include "brindle/widgets/image_picture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/gdi_plus_picture.h"
#include "testing/layout.h"

namespace {

using brindle::GdiPlusPicture;
using brindle::Image;
using brindle::ImagePicture;
using brindle::PictureScale;

Image Frames(int width, int height, std::uint32_t frames, std::vector<std::uint32_t> delays = {}) {
    Image image;
    image.width = width;
    image.height = height;
    image.frames = frames;
    image.delays = std::move(delays);
    image.pixels.resize(frames * image.PixelsOfFrame());
    return image;
}

IPictureAnimation* AnimationOf(IPicture* picture) {
    void* facet = nullptr;
    EXPECT_EQ(picture->QueryInterface(kPictureAnimationId, &facet), kInterfaceOk);
    return static_cast<IPictureAnimation*>(facet);
}

TEST(ImagePicture, CountsItsReferences) {
    IPicture* picture = new GdiPlusPicture(Frames(1, 1, 1));
    EXPECT_EQ(picture->AddRef(), 2u);
    EXPECT_EQ(picture->Release(), 1u);
    void* same = nullptr;
    EXPECT_EQ(picture->QueryInterface(kPictureId, &same), kInterfaceOk);
    EXPECT_EQ(static_cast<IPicture*>(same), picture);
    EXPECT_EQ(picture->Release(), 1u) << "the query added one";
    AnimationOf(picture);
    EXPECT_EQ(picture->Release(), 0u) << "the animation counts none";
}

TEST(ImagePicture, AnswersItsInterfacesAndNoOthers) {
    const GUID unknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    GUID almost = kPictureAnimationId;
    almost.Data4[7] ^= 1;
    struct Row {
        const char* label;
        GUID id;
        HRESULT still, stepping;
    };
    const HRESULT none = static_cast<HRESULT>(0x80004002);
    const std::vector<Row> rows = {
        {"picture", {0x7BF80980, 0xBF32, 0x101A, {0x8B, 0xBB, 0, 0xAA, 0, 0x30, 0x0C, 0xAB}}, 0, 0},
        {"animation",
         {0x81F6D058, 0x2557, 0x40D5, {0x9B, 0x2C, 0x14, 0x9A, 0x2E, 0x0E, 0x60, 0xE3}},
         none,
         0},
        {"almost the animation", almost, none, none},
        {"the counting alone", unknown, none, none},
        {"nothing", {}, none, none},
    };
    IPicture* still = new ImagePicture(Frames(1, 1, 1), {}, {});
    IPicture* stepping = new GdiPlusPicture(Frames(1, 1, 1));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        for (IPicture* picture : {still, stepping}) {
            void* object = picture;
            const HRESULT result = picture->QueryInterface(row.id, &object);
            EXPECT_EQ(result, picture == still ? row.still : row.stepping);
            EXPECT_EQ(object != nullptr, result == kInterfaceOk);
            if (result == kInterfaceOk && row.id == kPictureId) picture->Release();
            EXPECT_EQ(picture->QueryInterface(row.id, nullptr), kInterfacePointer);
        }
    }
    EXPECT_EQ(still->Release(), 0u);
    EXPECT_EQ(stepping->Release(), 0u);
}

TEST(ImagePicture, SizesAreHundredthsOfAMillimetre) {
    struct Row {
        const char* label;
        int pixels;
        PictureScale scale;
        long expected;
    };
    const std::vector<Row> rows = {
        {"an inch of points", 72, {72, false}, 2540},
        {"16 points, cut", 16, {72, false}, 564},
        {"one point", 1, {72, false}, 35},
        {"an inch at 96", 96, {96, true}, 2540},
        {"16 pixels at 96, rounded", 16, {96, true}, 423},
        {"one pixel at 96", 1, {96, true}, 26},
        {"the largest", 16384, {72, false}, 577991},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IPicture* picture = new ImagePicture(Frames(row.pixels, 1, 1), row.scale, {96, true});
        long width = -1, height = -1;
        EXPECT_EQ(picture->get_Width(&width), kInterfaceOk);
        EXPECT_EQ(picture->get_Height(&height), kInterfaceOk);
        EXPECT_EQ(width, row.expected);
        EXPECT_EQ(height, 26);
        EXPECT_EQ(picture->get_Width(nullptr), kInterfacePointer);
        EXPECT_EQ(picture->get_Height(nullptr), kInterfacePointer);
        picture->Release();
    }
    for (const int dpi : {72, 96, 120, 144, 192, 300})
        for (const bool rounded : {false, true})
            for (int pixels = 1; pixels <= 16384; ++pixels) {
                const PictureScale scale{dpi, rounded};
                ASSERT_EQ(scale.ToPixels(scale.ToMetric(pixels)), pixels) << dpi << " comes back";
            }
}

TEST(ImagePicture, ThePartAskedForIsDrawn) {
    struct Row {
        const char* label;
        long x, y, cx, cy, sourceX, sourceY, sourceCx, sourceCy;
        const char* expected;  // empty: a failure
    };
    constexpr long w = 10 * 2540 / 72, h = 20 * 2540 / 72;  // 352 and 705
    const std::vector<Row> rows = {
        {"whole and upright", 5, 6, 30, 40, 0, h, w, -h, "part 0 0 10 20 into 5 6 35 46"},
        {"from the lower edge up: upside down", 5, 6, 30, 40, 0, 0, w, h,
         "part 0 0 10 20 into 5 6 35 46 upside down"},
        {"a negative height too: upright again", 5, 46, 30, -40, 0, 0, w, h, "part 0 0 10 20 into 5 6 35 46"},
        {"mirrored by the source", 5, 6, 30, 40, w, h, -w, -h, "part 0 0 10 20 into 5 6 35 46 mirrored"},
        {"mirrored by the target", 35, 6, -30, 40, 0, h, w, -h, "part 0 0 10 20 into 5 6 35 46 mirrored"},
        {"the upper left quarter", 0, 0, 5, 10, 0, h, w / 2, -h / 2, "part 0 0 5 10 into 0 0 5 10"},
        {"the lower right quarter", 0, 0, 5, 10, w / 2, h / 2, w / 2, -h / 2,
         "part 5 10 10 20 into 0 0 5 10"},
        {"beyond the left and the top", 0, 0, 40, 60, -w, h + h / 2, 2 * w, -h - h / 2,
         "part 0 0 10 20 into 20 20 40 60"},
        {"beyond the right, mirrored", 0, 0, 40, 20, 2 * w, h, -2 * w, -h,
         "part 0 0 10 20 into 20 0 40 20 mirrored"},
        {"wholly outside", 0, 0, 10, 20, w, h, w, -h, ""},
        {"no width", 0, 0, 0, 20, 0, h, w, -h, ""},
        {"no height", 0, 0, 10, 0, 0, h, w, -h, ""},
        {"no source", 0, 0, 10, 20, 0, h, 0, -h, ""},
        {"less than half a pixel of the source", 0, 0, 10, 20, 0, h, 17, -h, ""},
        {"far away", 1'000'000'000, -1'000'000'000, 10, 20, 0, h, w, -h,
         "part 0 0 10 20 into 1000000000 -1000000000 1000000010 -999999980"},
        {"too far", 1'000'000'001, 0, 10, 20, 0, h, w, -h, ""},
        {"too wide a source", 0, 0, 10, 20, 0, h, -1'000'000'001, -h, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IPicture* picture = new GdiPlusPicture(Frames(10, 20, 1));
        brindle::RecordingSurface surface;
        CDC dc(surface);
        const CRect bounds{0, 0, 1, 1};
        const bool drawn = *row.expected != 0;
        EXPECT_EQ(picture->Render(&dc, row.x, row.y, row.cx, row.cy, row.sourceX, row.sourceY, row.sourceCx,
                                  row.sourceCy, &bounds),
                  drawn ? kInterfaceOk : kInterfaceFailed);
        EXPECT_EQ(surface.Text(),
                  drawn ? "picture 10x20 frame 0 of 1 " + std::string(row.expected) + "\n" : std::string());
        EXPECT_EQ(picture->Render(nullptr, 0, 0, 1, 1, 0, h, w, -h, nullptr), kInterfacePointer);
        picture->Release();
    }
}

TEST(GdiPlusPicture, StepsThroughItsFrames) {
    IPicture* picture = new GdiPlusPicture(Frames(1, 1, 3, {5, 10, 20}));
    IPictureAnimation* animation = AnimationOf(picture);
    EXPECT_TRUE(animation->IsAnimated());
    brindle::RecordingSurface surface;
    CDC dc(surface);
    const auto shown = [&] {
        surface.Clear();
        picture->Render(&dc, 0, 0, 1, 1, 0, 35, 35, -35, nullptr);
        return surface.Text().substr(0, surface.Text().find(" part"));
    };
    EXPECT_EQ(shown(), "picture 1x1 frame 0 of 3");
    for (const auto& [frame, expected] :
         std::vector<std::pair<int, std::uint32_t>>{{1, 100}, {2, 200}, {0, 50}, {1, 100}}) {
        std::uint32_t delay = 7;
        EXPECT_TRUE(animation->Advance(12345, delay));
        EXPECT_EQ(delay, expected);
        EXPECT_EQ(shown(), "picture 1x1 frame " + std::to_string(frame) + " of 3");
    }
    picture->Release();
}

TEST(GdiPlusPicture, Delays) {
    struct Row {
        const char* label;
        std::uint32_t frames;
        std::vector<std::uint32_t> delays;
        bool animated;
        std::uint32_t expected;  // after one step
    };
    const std::vector<Row> rows = {
        {"one frame is not animated", 1, {}, false, 10},
        {"none are given", 2, {}, true, 10},
        {"0 stays 0", 2, {9, 0}, true, 0},
        {"1 stays 1", 2, {9, 1}, true, 10},
        {"the longest", 2, {9, 65535}, true, 655350},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        IPicture* picture = new GdiPlusPicture(Frames(1, 1, row.frames, row.delays));
        IPictureAnimation* animation = AnimationOf(picture);
        EXPECT_EQ(animation->IsAnimated(), row.animated);
        std::uint32_t delay = 7;
        EXPECT_TRUE(animation->Advance(0, delay));
        EXPECT_EQ(delay, row.expected);
        picture->Release();
    }
}

TEST(PictureLayout, VirtualOperationsStandInSlotOrder) {
    using brindle::testing::SlotOf;
    struct Slot {
        const char* label;
        std::size_t actual, expected;
    };
    const std::vector<Slot> rows = {
        {"QueryInterface", SlotOf(&IPicture::QueryInterface), 0},
        {"AddRef", SlotOf(&IPicture::AddRef), 1},
        {"Release", SlotOf(&IPicture::Release), 2},
        {"get_Width", SlotOf(&IPicture::get_Width), 3},
        {"get_Height", SlotOf(&IPicture::get_Height), 4},
        {"Render", SlotOf(&IPicture::Render), 5},
        {"IsAnimated", SlotOf(&IPictureAnimation::IsAnimated), 0},
        {"Advance", SlotOf(&IPictureAnimation::Advance), 1},
    };
    for (const Slot& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
}

}  // namespace
