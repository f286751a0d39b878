// The contract of drawing surfaces, over the recording one, and how that tells what breaks the rules.
#include "testing/drawing_surface_contract.h"

#include "brindle/platform/fake/recording_surface.h"

namespace brindle {
namespace {

class Recording final : public testing::SurfaceUnderTest {
  public:
    DrawingSurface& Surface() override { return m_surface; }

  private:
    RecordingSurface m_surface;
};

std::unique_ptr<testing::SurfaceUnderTest> MakeRecording() {
    return std::make_unique<Recording>();
}

TEST(RecordingSurface, TellsWhatBreaksTheRules) {
    struct Row {
        const char* label;
        void (*act)(DrawingSurface&);
        const char* expected;
    };
    const Row rows[] = {
        {"restore without save", [](DrawingSurface& s) { s.Restore(); }, "error: restore without save\n"},
        {"save and restore", [](DrawingSurface& s) { s.Save(), s.Restore(); }, "save\nrestore\n"},
        {"save inside shapes", [](DrawingSurface& s) { s.BeginShapes(), s.Save(); },
         "shapes\nerror: inside shapes: save\n"},
        {"shapes inside shapes", [](DrawingSurface& s) { s.BeginShapes(), s.BeginShapes(); },
         "shapes\nerror: inside shapes: shapes\n"},
        {"end without beginning", [](DrawingSurface& s) { s.EndShapes(); },
         "error: end of shapes that have not begun\nend\n"},
        {"shapes outside", [](DrawingSurface& s) { s.UnclipShapes(); }, "error: outside shapes: unclip\n"},
        {"a picture",
         [](DrawingSurface& s) {
             Image image;
             image.width = 3;
             image.height = 2;
             image.frames = 4;
             s.DrawPicture({image, 1, {0, 0, 3, 2}, {5, 6, 7, 8}});
             s.DrawPicture({image, 0, {0, 1, 2, 2}, {5, 6, 7, 8}, true, true});
             s.BeginShapes();
             s.DrawPicture({image, 0, {0, 0, 3, 2}, {5, 6, 7, 8}});
         },
         "picture 3x2 frame 1 of 4 part 0 0 3 2 into 5 6 7 8\n"
         "picture 3x2 frame 0 of 4 part 0 1 2 2 into 5 6 7 8 mirrored upside down\n"
         "shapes\nerror: inside shapes: picture 3x2 frame 0 of 4 part 0 0 3 2 into 5 6 7 8\n"},
        {"text inside shapes",
         [](DrawingSurface& s) {
             s.BeginShapes();
             s.DrawRun({"a", {1, 2}, {3, 4, 5, 6}, LOGFONTA(), 0x0000FF, true});
         },
         "shapes\nerror: inside shapes: text \"a\" at 1 2 within 3 4 5 6 font \"\" 0 colour #0000FF "
         "opaque\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RecordingSurface surface;
        row.act(surface);
        EXPECT_EQ(surface.Text(), row.expected);
    }
}

TEST(RecordingSurface, WritesEveryKindOfShape) {
    RecordingSurface surface;
    surface.BeginShapes();
    surface.SetSmooth(false);
    surface.ClipShapes(ShapePath().Ellipse({1, 2, 3, 4}), true);
    surface.FillArea({0.5f, -1, 3, 4}, Paint::Centre({1, 2, 3, 4}, {2.25f, 3}, 0x7FFFFFFF, 0x00FFFFFF));
    surface.EndShapes();
    EXPECT_EQ(surface.Text(),
              "shapes\n  not smooth\n  clip also\n    ellipse 1 2 3 4\n"
              "  fill area 0.5 -1 3 4 centre #7FFFFFFF #00FFFFFF over 1 2 3 4 from 2.25 3\nend\n");
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Recording, DrawingSurfaceContract, ::testing::Values(&MakeRecording));
}

}  // namespace brindle
