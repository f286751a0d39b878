// Pictures on buttons: which is shown when and where, who holds references, what is animated.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/images_fake.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/platform/service.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/shared_picture.h"
#include "testing/golden.h"
#include "testing/picture_bytes.h"

namespace brindle {
namespace {

using OV::Button;
using testing::BmpBytes;
using testing::GifBytes;
using testing::PngBytes;

std::string Plain(int width, int height) {
    return PngBytes(width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width * height), 0));
}

class ButtonImages : public ::testing::Test {
  protected:
    ButtonImages() {
        using Kind = FakeFiles::Kind;
        m_files.Add("/site/wide.png", Kind::kFile, Plain(40, 10));
        m_files.Add("/site/tall.png", Kind::kFile, Plain(10, 40));
        m_files.Add("/site/like.png", Kind::kFile, Plain(25, 10));
        m_files.Add("/site/moving.gif", Kind::kFile, GifBytes(4, 4, {{1, 5}, {2, 10}, {3, 20}}));
        m_files.Add("/site/still.gif", Kind::kFile, GifBytes(4, 4, {{1, 5}}));
        m_files.Add("/site/photo.bmp", Kind::kFile, BmpBytes(2, 2, std::vector<std::uint32_t>(4, 0)));
        m_files.Add("/site/broken.png", Kind::kFile, "no picture");
        EXPECT_TRUE(m_files.SetCurrentDirectory("/site").ok());
        m_button.SetBounds({0, 0, 100, 40});
        m_button.SetFillMode(Button::FillNone);
        m_button.SetBorderThickness(0);
    }
    // How many there are of the picture while the test asks: 2 when nobody else holds it, the cache's and that one.
    unsigned long References(const char* path) {
        IPicture* picture = CreateSharedPicture(path);
        if (!picture) return 0;
        const unsigned long before = picture->AddRef() - 1;
        picture->Release();
        ReleaseSharedPicture(picture);
        return before;
    }
    static std::string Drawn(Button& button) {
        RecordingSurface surface;
        CDC dc(surface);
        button.Draw(&dc, 1);
        return surface.Text();
    }
    // The size of the picture that is drawn, or nothing.
    static std::string Shown(Button& button) {
        const std::string drawn = Drawn(button);
        const auto at = drawn.find("picture ");
        return at == std::string::npos ? "" : drawn.substr(at + 8, drawn.find(' ', at + 8) - at - 8);
    }
    static std::string Place(Button& button) {
        const std::string drawn = Drawn(button);
        const auto at = drawn.find("into ");
        return at == std::string::npos ? "" : drawn.substr(at + 5, drawn.find('\n', at) - at - 5);
    }

    FakeFiles m_files;
    FakeImages m_images;
    ScopedService<Files> m_filesScope{SetFiles, m_files};
    ScopedService<Images> m_imagesScope{SetImages, m_images};
    Button m_button;
};

TEST_F(ButtonImages, TheStateChoosesThePicture) {
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageNormal));
    ASSERT_TRUE(m_button.SetImage("tall.png", Button::ImagePressed));
    ASSERT_TRUE(m_button.SetImage("like.png", Button::ImageSelected));
    ASSERT_TRUE(m_button.SetImage("photo.bmp", Button::ImageMouseOver));
    struct Row {
        const char* label;
        bool selected, pressed, over;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"normal", false, false, false, "40x10"},
        {"mouse over", false, false, true, "2x2"},
        {"pressed", false, true, false, "10x40"},
        {"pressed before mouse over", false, true, true, "10x40"},
        {"selected", true, false, false, "25x10"},
        {"selected before mouse over", true, false, true, "25x10"},
        {"selected before pressed", true, true, false, "25x10"},
        {"selected before all", true, true, true, "25x10"},
    };
    const auto show = [&](const Row& row) {
        m_button.SetSelected(row.selected);
        row.pressed ? m_button.OnMouseDown() : m_button.OnMouseUp();
        row.over ? static_cast<OV::Widget&>(m_button).OnMouseOver() : m_button.OnMouseOut();
        return Shown(m_button);
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(show(row), row.expected);
    }
    for (const auto type : {Button::ImagePressed, Button::ImageSelected, Button::ImageMouseOver})
        EXPECT_TRUE(m_button.SetImage("", type));
    for (std::size_t i = 1; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].label);
        EXPECT_EQ(show(rows[i]), "") << "the normal one does not stand in";
    }
}

TEST_F(ButtonImages, ThePictureLiesBetweenBodyAndOutlineOrBehind) {
    m_button.SetFillMode(Button::FillGlossy);
    m_button.SetBorderThickness(2);
    m_button.SetSelected(true);
    m_button.SetText("ab");
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageSelected));
    std::string all = "# between\n" + Drawn(m_button);
    m_button.SetDrawImageBehindNormal(true);
    all += "# behind\n" + Drawn(m_button);
    m_button.SetFillMode(Button::FillNone);
    m_button.SetDrawImageBehindNormal(false);
    all += "# without a body\n" + Drawn(m_button);
    testing::ExpectGolden("button_images.txt", all);
}

TEST_F(ButtonImages, PicturesKeepTheirAspect) {
    struct Row {
        const char* label;
        const char* path;
        bool keep;
        CRect bounds;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"wider than the bounds: narrowed from above and below",
         "wide.png",
         true,
         {0, 0, 100, 40},
         "0 8 100 32"},
        {"narrower: from the sides", "tall.png", true, {0, 0, 100, 40}, "45 0 55 40"},
        {"of the same aspect", "like.png", true, {0, 0, 100, 40}, "0 0 100 40"},
        {"rounded", "wide.png", true, {0, 0, 102, 40}, "0 7 102 33"},
        {"where the bounds are", "wide.png", true, {10, 20, 110, 60}, "10 28 110 52"},
        {"not kept: all of the bounds", "wide.png", false, {0, 0, 100, 40}, "0 0 100 40"},
        {"no height", "wide.png", true, {0, 0, 100, 0}, ""},
        {"no width", "wide.png", false, {0, 0, 0, 40}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_button.SetBounds(row.bounds);
        m_button.SetKeepImageAspect(row.keep);
        ASSERT_TRUE(m_button.SetImage(row.path, Button::ImageNormal));
        EXPECT_EQ(Place(m_button), row.expected);
    }
}

TEST_F(ButtonImages, SettingTheSamePathAgainChangesNothing) {
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageNormal));
    EXPECT_EQ(References("wide.png"), 3u);
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageNormal));
    EXPECT_EQ(References("wide.png"), 3u);
    EXPECT_EQ(m_images.decoded, 1);
    ASSERT_TRUE(m_button.SetImage("WIDE.png", Button::ImageNormal));
    EXPECT_EQ(m_images.decoded, 2) << "another spelling releases the old one first";
    EXPECT_EQ(References("wide.png"), 3u);
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImagePressed));
    EXPECT_EQ(References("wide.png"), 4u) << "each state has its own reference";
}

TEST_F(ButtonImages, AFileThatCannotBeLoadedLeavesTheStateWithoutPictureAndIsTriedAgain) {
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageNormal));
    EXPECT_FALSE(m_button.SetImage("broken.png", Button::ImageNormal));
    EXPECT_EQ(Shown(m_button), "");
    EXPECT_FALSE(m_button.SetImage("broken.png", Button::ImageNormal));
    m_files.Add("/site/broken.png", FakeFiles::Kind::kFile, Plain(7, 7));
    EXPECT_TRUE(m_button.SetImage("broken.png", Button::ImageNormal)) << "the same path is tried again";
    EXPECT_EQ(Shown(m_button), "7x7");
    EXPECT_FALSE(m_button.SetImage("missing.png", Button::ImageNormal));
    EXPECT_TRUE(m_button.SetImage("", Button::ImageNormal));
    EXPECT_TRUE(m_button.SetImage("", Button::ImageNormal));
}

TEST_F(ButtonImages, AnimatedOnesStepThroughTheirFrames) {
    ASSERT_TRUE(m_button.SetImage("moving.gif", Button::ImageNormal));
    EXPECT_TRUE(m_button.IsImageAnimated(Button::ImageNormal));
    EXPECT_FALSE(m_button.IsImageAnimated(Button::ImagePressed));
    const auto frame = [&] {
        const std::string drawn = Drawn(m_button);
        return drawn.substr(drawn.find("frame "), 7);
    };
    EXPECT_EQ(frame(), "frame 0");
    struct Row {
        unsigned delay;
        const char* frame;
    };
    for (const Row& row : std::vector<Row>{{100, "frame 1"}, {200, "frame 2"}, {50, "frame 0"}}) {
        unsigned delay = 7;
        m_button.UpdateAnimation(Button::ImageNormal, 0, delay);
        EXPECT_EQ(delay, row.delay);
        EXPECT_EQ(frame(), row.frame);
    }
}

TEST_F(ButtonImages, WhatIsNotAnimatedKeepsTheDelay) {
    struct Row {
        const char* label;
        const char* path;
    };
    for (const Row& row :
         std::vector<Row>{{"one frame", "still.gif"}, {"no facet", "photo.bmp"}, {"none", ""}}) {
        SCOPED_TRACE(row.label);
        Button button;
        EXPECT_TRUE(button.SetImage(row.path, Button::ImageNormal));
        EXPECT_FALSE(button.IsImageAnimated(Button::ImageNormal));
        unsigned delay = 7;
        button.UpdateAnimation(Button::ImageNormal, 0, delay);
        EXPECT_EQ(delay, 7u);
    }
}

TEST_F(ButtonImages, TheAnimatedFlagStaysWhenALaterPictureHasNoFacet) {
    for (const char* path : {"photo.bmp", "", "missing.png"}) {
        SCOPED_TRACE(path);
        ASSERT_TRUE(m_button.SetImage("moving.gif", Button::ImageNormal));
        m_button.SetImage(path, Button::ImageNormal);
        EXPECT_TRUE(m_button.IsImageAnimated(Button::ImageNormal));
        unsigned delay = 7;
        m_button.UpdateAnimation(Button::ImageNormal, 0, delay);
        EXPECT_EQ(delay, 7u) << "there is nothing to advance";
    }
    ASSERT_TRUE(m_button.SetImage("still.gif", Button::ImageNormal));
    EXPECT_FALSE(m_button.IsImageAnimated(Button::ImageNormal)) << "one with a facet says no";
}

TEST_F(ButtonImages, CopiesHoldReferencesOfTheirOwn) {
    ASSERT_TRUE(m_button.SetImage("wide.png", Button::ImageNormal));
    ASSERT_TRUE(m_button.SetImage("moving.gif", Button::ImagePressed));
    ASSERT_TRUE(m_files.SetCurrentDirectory("/").ok());  // paths are told from where they were set
    auto copy = std::make_unique<Button>(m_button);
    EXPECT_EQ(References("site/wide.png"), 4u);
    Button assigned;
    ASSERT_TRUE(assigned.SetImage("site/tall.png", Button::ImageNormal));
    assigned = m_button;
    assigned = *&assigned;
    EXPECT_EQ(References("site/wide.png"), 5u);
    EXPECT_EQ(References("site/tall.png"), 2u) << "the one it had is given back";
    EXPECT_EQ(Drawn(*copy), Drawn(m_button));
    EXPECT_EQ(Drawn(assigned), Drawn(m_button));
    EXPECT_TRUE(copy->IsImageAnimated(Button::ImagePressed));
    unsigned delay = 0;
    copy->UpdateAnimation(Button::ImagePressed, 0, delay);
    EXPECT_EQ(delay, 100u);
    EXPECT_TRUE(m_button.SetImage("", Button::ImageNormal));
    EXPECT_EQ(Shown(*copy), "40x10") << "the copy's stays";
    copy.reset();
    EXPECT_EQ(References("site/wide.png"), 3u);
    const int decoded = m_images.decoded;
    assigned = Button();
    EXPECT_EQ(References("site/wide.png"), 2u);
    EXPECT_EQ(m_images.decoded, decoded + 1) << "after the last release it is read anew";
    ASSERT_TRUE(m_files.SetCurrentDirectory("/site").ok());
}

}  // namespace
}  // namespace brindle
