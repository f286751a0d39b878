// Where the keyboard goes next.
#include "host/map_focus.h"

#include <gtest/gtest.h>

namespace brindle::host {
namespace {

//  0 1
//  2     3
const std::vector<CRect> kTargets = {{0, 0, 10, 10}, {20, 0, 30, 10}, {0, 20, 10, 30}, {60, 22, 70, 32}};

TEST(NextTarget, GoesRoundAndAcross) {
    struct Row {
        const char* label;
        std::optional<std::size_t> from;
        MapDirection direction;
        std::size_t next;
    };
    const Row rows[] = {
        {"the first", {}, MapDirection::kNext, 0},
        {"the last", {}, MapDirection::kPrevious, 3},
        {"any arrow begins at the first", {}, MapDirection::kUp, 0},
        {"next", 1, MapDirection::kNext, 2},
        {"round", 3, MapDirection::kNext, 0},
        {"previous", 2, MapDirection::kPrevious, 1},
        {"round backwards", 0, MapDirection::kPrevious, 3},
        {"right", 0, MapDirection::kRight, 1},
        {"right, far away and a little lower", 2, MapDirection::kRight, 3},
        {"left", 1, MapDirection::kLeft, 0},
        {"left: the one that is level", 3, MapDirection::kLeft, 2},
        {"down", 0, MapDirection::kDown, 2},
        {"up", 2, MapDirection::kUp, 0},
        {"nothing up there", 1, MapDirection::kUp, 1},
        {"nothing to the left", 2, MapDirection::kLeft, 2},
        {"one that has gone begins anew", 9, MapDirection::kRight, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(NextTarget(kTargets, row.from, row.direction), row.next);
    }
    EXPECT_EQ(NextTarget({}, {}, MapDirection::kNext), std::nullopt);
}

}  // namespace
}  // namespace brindle::host
