// The dropper's states on a screen of a few pixels.
#include "brindle/platform/dropper.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "brindle/platform/fake/screen_pixels_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

class RecordedHost final : public DropperHost {
  public:
    void CaptureMouse() override { log += "capture "; }
    void ReleaseMouse() override { log += "release "; }
    std::uint32_t CurrentColour() override { return colour; }
    void SetCurrentColour(std::uint32_t now) override {
        colour = now;
        log += "colour" + std::to_string(now) + " ";
    }

    std::string log;
    std::uint32_t colour = 99;
};

TEST(Dropper, States) {
    using Step = std::function<void(Dropper&)>;
    const Step begin = [](Dropper& d) { d.Begin(); };
    const Step cancel = [](Dropper& d) { d.Cancel(); };
    const auto move = [](std::int32_t x) { return [x](Dropper& d) { EXPECT_TRUE(d.Move({x, 0})); }; };
    const auto release = [](std::int32_t x) { return [x](Dropper& d) { EXPECT_TRUE(d.Release({x, 0})); }; };
    const Step idle = [](Dropper& d) {
        EXPECT_FALSE(d.IsDropping());
        EXPECT_FALSE(d.Move({1, 0})) << "the framework's";
        EXPECT_FALSE(d.Release({1, 0})) << "the framework's";
    };
    struct Row {
        const char* label;
        std::vector<Step> steps;
        const char* log;
        std::uint32_t colour;
        int reads;
    };
    const std::vector<Row> rows = {
        {"nothing", {idle, cancel}, "", 99, 0},
        {"click", {begin}, "capture ", 99, 0},
        {"every move is a preview", {begin, move(1), move(2)}, "capture colour1 colour2 ", 2, 2},
        {"releasing picks once more",
         {begin, move(1), release(2), idle},
         "capture colour1 colour2 release ",
         2,
         2},
        {"released where it was clicked", {begin, release(1), idle}, "capture colour1 release ", 1, 1},
        {"off the screen nothing changes",
         {begin, move(1), move(50), release(51), idle},
         "capture colour1 release ",
         1,
         3},
        {"clicking again changes nothing",
         {begin, move(1), begin, release(2)},
         "capture colour1 colour2 release ",
         2,
         2},
        {"cancelled", {begin, move(1), cancel, idle}, "capture colour1 colour99 release ", 99, 1},
        {"and again",
         {begin, release(1), begin, move(2), cancel},
         "capture colour1 release capture colour2 colour1 release ",
         1,
         2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        FakeScreenPixels pixels;
        pixels.pixels = {{{1, 0}, 1}, {{2, 0}, 2}};
        const ScopedService<ScreenPixels> installed(&SetScreenPixels, pixels);
        RecordedHost host;
        Dropper dropper(host);
        for (const Step& step : row.steps) step(dropper);
        EXPECT_EQ(host.log, row.log);
        EXPECT_EQ(host.colour, row.colour);
        EXPECT_EQ(pixels.reads, row.reads);
    }
}

TEST(Dropper, DoesNotBeginWherePixelsCannotBeRead) {
    FakeScreenPixels pixels;
    pixels.why = "Not here.";
    const ScopedService<ScreenPixels> installed(&SetScreenPixels, pixels);
    RecordedHost host;
    Dropper dropper(host);
    dropper.Begin();
    EXPECT_FALSE(dropper.IsDropping());
    EXPECT_EQ(host.log, "");
}

}  // namespace
}  // namespace brindle
