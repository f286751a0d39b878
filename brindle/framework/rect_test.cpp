// Rectangles, and MulDiv beside recorded answers.
#include "brindle/framework/rect.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "brindle/framework/log_font.h"
#include "brindle/framework/mul_div.h"
#include "testing/vectors.h"

inline void PrintTo(const CRect& r, std::ostream* out) {
    *out << r.left << " " << r.top << " " << r.right << " " << r.bottom;
}

namespace {

constexpr std::int32_t kMax = 2147483647, kMin = -kMax - 1;

TEST(Rect, ExtentsAreDifferencesAndWrap) {
    struct Row {
        const char* label;
        CRect rect;
        std::int32_t width, height;
    };
    const std::vector<Row> rows = {
        {"empty", {}, 0, 0},
        {"plain", {5, 6, 105, 46}, 100, 40},
        {"reversed", {105, 46, 5, 6}, -100, -40},
        {"widest", {0, 0, kMax, kMax}, kMax, kMax},
        {"beyond 32 bits", {kMin, 1, kMax, kMin}, -1, kMax},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.rect.Width(), row.width);
        EXPECT_EQ(row.rect.Height(), row.height);
    }
}

TEST(Rect, Operations) {
    struct Row {
        const char* label;
        CRect rect;
        void (*change)(CRect&);
        CRect expected;
    };
    const std::vector<Row> rows = {
        {"normal stays", {1, 2, 3, 4}, [](CRect& r) { r.NormalizeRect(); }, {1, 2, 3, 4}},
        {"both reversed", {3, 4, 1, 2}, [](CRect& r) { r.NormalizeRect(); }, {1, 2, 3, 4}},
        {"one reversed", {3, 2, 1, 4}, [](CRect& r) { r.NormalizeRect(); }, {1, 2, 3, 4}},
        {"moved", {1, 2, 3, 4}, [](CRect& r) { r.OffsetRect(10, -20); }, {11, -18, 13, -16}},
        {"moved beyond 32 bits", {0, 0, kMax, 1}, [](CRect& r) { r.OffsetRect(1, 0); }, {1, 0, kMin, 1}},
        {"deflated", {0, 0, 100, 40}, [](CRect& r) { r.DeflateRect(5, 2); }, {5, 2, 95, 38}},
        {"deflated beyond itself", {0, 0, 4, 2}, [](CRect& r) { r.DeflateRect(5, 2); }, {5, 2, -1, 0}},
        {"inflated", {5, 2, 95, 38}, [](CRect& r) { r.DeflateRect(-5, -2); }, {0, 0, 100, 40}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CRect rect = row.rect;
        row.change(rect);
        EXPECT_EQ(rect, row.expected);
    }
}

TEST(Rect, HoldsLeftAndTopButNotRightAndBottom) {
    struct Row {
        const char* label;
        CRect rect;
        CPoint point;
        bool expected;
    };
    const CRect rect{10, 20, 30, 40};
    const std::vector<Row> rows = {
        {"left and top", rect, {10, 20}, true},
        {"last", rect, {29, 39}, true},
        {"left of it", rect, {9, 20}, false},
        {"above it", rect, {10, 19}, false},
        {"right", rect, {30, 20}, false},
        {"bottom", rect, {10, 40}, false},
        {"empty", {5, 5, 5, 5}, {5, 5}, false},
        {"reversed", {30, 40, 10, 20}, {20, 30}, false},
        {"all there is", {kMin, kMin, kMax, kMax}, {kMin, kMax - 1}, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.rect.PtInRect(row.point), row.expected);
    }
}

TEST(Rect, IntersectionsAndUnionsLeaveOutWhatIsEmpty) {
    struct Row {
        const char* label;
        CRect a, b, both, either;
    };
    const CRect rect{10, 20, 30, 40}, none;
    const std::vector<Row> rows = {
        {"the same", rect, rect, rect, rect},
        {"crossing", rect, {20, 0, 50, 30}, {20, 20, 30, 30}, {10, 0, 50, 40}},
        {"inside", rect, {15, 25, 20, 30}, {15, 25, 20, 30}, rect},
        {"apart", rect, {50, 60, 70, 80}, none, {10, 20, 70, 80}},
        {"side by side", rect, {30, 20, 50, 40}, none, {10, 20, 50, 40}},
        {"one below the other", rect, {10, 40, 30, 60}, none, {10, 20, 30, 60}},
        {"the second has no width", rect, {15, 0, 15, 90}, none, rect},
        {"the first has no height", {0, 25, 90, 25}, rect, none, rect},
        {"reversed", rect, {90, 90, 0, 0}, none, rect},
        {"both are empty", {5, 5, 5, 50}, {9, 9, 0, 0}, none, none},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CRect both{1, 2, 3, 4}, either{1, 2, 3, 4};
        EXPECT_EQ(both.IntersectRect(row.a, row.b), row.both != none);
        EXPECT_EQ(both, row.both);
        EXPECT_EQ(either.UnionRect(row.a, row.b), row.either != none);
        EXPECT_EQ(either, row.either);
        CRect self = row.a, other = row.b;
        self.IntersectRect(self, row.b);
        other.UnionRect(row.a, other);
        EXPECT_EQ(self, row.both) << "into one of its own operands";
        EXPECT_EQ(other, row.either);
    }
}

TEST(Point, MovesAndWraps) {
    CPoint point{1, 2};
    point.Offset(10, -20);
    EXPECT_EQ(point, (CPoint{11, -18}));
    point = {kMax, kMin};
    point.Offset(1, -1);
    EXPECT_EQ(point, (CPoint{kMin, kMax}));
}

TEST(LogFont, HasThePlatformsSixtyBytes) {
    EXPECT_EQ(sizeof(LOGFONTA), 60u);
}

TEST(MulDiv, RoundsHalvesAwayFromZero) {
    struct Row {
        const char* label;
        std::int32_t a, b, c, expected;
    };
    const std::vector<Row> rows = {
        {"exact", 10, 72, 9, 80},
        {"below a half", -13, 72, 96, -10},
        {"a half", 1, 1, 2, 1},
        {"a negative half", -1, 1, 2, -1},
        {"a negative divisor", 1, 1, -2, -1},
        {"no divisor", 1, 1, 0, -1},
        {"large on the way", kMax, kMax, kMax, kMax},
        {"too large", kMax, 2, 1, -1},
        {"the smallest divisor", kMin, kMin, kMin, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(brindle::MulDiv(row.a, row.b, row.c), row.expected);
    }
}

TEST(MulDiv, AnswersAsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "muldiv.json");
    int compared = 0;
    for (const auto& row : vectors["cases"]) {
        if (row.contains("quirk") || row.contains("unsure")) continue;
        SCOPED_TRACE(row.dump());
        EXPECT_EQ(brindle::MulDiv(row["a"], row["b"], row["c"]), row["result"].get<std::int32_t>());
        ++compared;
    }
    EXPECT_GT(compared, 20);
}

}  // namespace
