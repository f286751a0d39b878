// Moving pictures of a map: one step for all that show the same one, and only those are drawn anew.
#include "host/map_motion.h"

#include <gtest/gtest.h>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/images_fake.h"
#include "brindle/platform/fake/recording_surface.h"
#include "host/map_view.h"
#include "host/virtual_clock.h"
#include "host/written_site_test.h"
#include "testing/picture_bytes.h"

namespace brindle::host {
namespace {

class MapMotionTest : public ::testing::Test {
  protected:
    MapMotionTest() : m_previousImages(SetImages(&m_images)), m_previousClock(SetClock(&m_clock)) {
        m_written.Write("moving.gif", testing::GifBytes(4, 4, {{1, 5}, {2, 10}, {3, 20}}));
        m_written.Write("other.gif", testing::GifBytes(4, 4, {{1, 100}, {2, 100}}));
        m_written.Write("fast.gif", testing::GifBytes(4, 4, {{1, 0}, {2, 0}}));
        m_written.Write("still.png", testing::PngBytes(1, 1, {0xFFFFFFFF}));
        m_site.plan.folder = m_written.Folder();
    }
    ~MapMotionTest() override {
        m_view.reset();
        SetClock(m_previousClock);
        SetImages(m_previousImages);
    }
    MapView& Show(const std::string& elements) {
        MapDocument document;
        Problems problems;
        EXPECT_TRUE(
            ReadMapText("<map width='200' height='100'>" + elements + "</map>", "map", document, problems));
        m_view.emplace(m_site, document, nullptr);
        m_view->Refresh();
        m_view->TakeDirty();
        return *m_view;
    }
    // The left edges of what is to be drawn anew.
    std::string Dirty() {
        std::string text;
        for (const CRect& place : m_view->TakeDirty()) text += std::to_string(place.left) + " ";
        return text;
    }

    WrittenSite m_written;
    Site m_site;
    FakeImages m_images;
    VirtualClock m_clock{1'714'975'190};
    Images* m_previousImages;
    Clock* m_previousClock;
    std::optional<MapView> m_view;
};

TEST_F(MapMotionTest, OneStepForAllThatShowThePicture) {
    Show(
        "<picture x='10' y='0' width='5' height='5' picture='moving.gif'/>"
        "<picture x='20' y='0' width='5' height='5' picture='moving.gif'/>"
        "<picture x='30' y='0' width='5' height='5' picture='still.png'/>"
        "<picture x='40' y='0' width='5' height='5' picture='other.gif'/>"
        "<picture x='50' y='0' width='5' height='5' picture='missing.gif'/>");
    EXPECT_EQ(MoveWhatIsDue(), 100u) << "the second frame of the one that moves faster";
    EXPECT_EQ(Dirty(), "9 19 39 ");
    EXPECT_EQ(MoveWhatIsDue(), 100u);
    EXPECT_EQ(Dirty(), "");
    m_clock.MoveTo(100);
    EXPECT_EQ(MoveWhatIsDue(), 200u) << "the third";
    EXPECT_EQ(Dirty(), "9 19 ");
    m_clock.MoveTo(300);
    EXPECT_EQ(MoveWhatIsDue(), 50u) << "the first again";
    m_clock.MoveTo(1'000);
    MoveWhatIsDue();
    EXPECT_EQ(Dirty(), "9 19 9 19 39 ");
}

TEST_F(MapMotionTest, AFrameHasItsTime) {
    Show("<picture x='10' y='0' width='5' height='5' picture='fast.gif'/>");
    EXPECT_EQ(MoveWhatIsDue(), MapMotion::kShortest);
}

TEST_F(MapMotionTest, NothingMovesOnceTheMapIsAnother) {
    Show("<picture x='10' y='0' width='5' height='5' picture='moving.gif'/>");
    EXPECT_LT(MoveWhatIsDue(), 1'000u);
    MapDocument document;
    Problems problems;
    ASSERT_TRUE(ReadMapText("<map width='10' height='10'/>", "map", document, problems));
    m_view->Replace(document);
    m_clock.MoveTo(1'000);
    EXPECT_GT(MoveWhatIsDue(), 1'000'000u);
}

TEST_F(MapMotionTest, PicturesAreDrawn) {
    Show(
        "<picture x='10' y='0' width='5' height='5' picture='STILL.png'/><button event='none' x='20' y='0' "
        "width='5' "
        "height='5' picture='still.png' pictureBehind='TRUE'/>");
    RecordingSurface surface;
    CDC dc(surface);
    m_view->Draw(dc, {0, 0, 200, 100});
    const std::string drawn = surface.Text();
    const auto first = drawn.find("picture ");
    ASSERT_NE(first, std::string::npos) << drawn;
    EXPECT_NE(drawn.find("picture ", first + 1), std::string::npos) << drawn;
}

}  // namespace
}  // namespace brindle::host
