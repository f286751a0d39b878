#include "tests/soak/resource_use.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <thread>

namespace brindle::soak {
namespace {

constexpr std::uint64_t kHeap = LevelWatch::kHeapPlay;
constexpr std::uint64_t kAnonymous = LevelWatch::kAnonymousPlay;

struct Row {
    const char* label;
    int measurements;
    int from;  // the change begins with this measurement
    ResourceUse change;
    std::vector<std::string> expected;
};

TEST(LevelWatch, JudgesTheLaterHalfByTheEarlierOne) {
    const ResourceUse base{1000, 5000, 7, 2};
    const Row rows[] = {
        {"nothing measured", 0, 0, {}, {"only 0 measurements, too few"}},
        {"too few", 19, 0, {}, {"only 19 measurements, too few"}},
        {"level", 20, 20, {}, {}},
        {"heap within its play", 100, 99, {kHeap, 0, 0, 0}, {}},
        {"heap", 100, 99, {kHeap + 1, 0, 0, 0}, {"heap memory rises from 1000 to 66537"}},
        {"anonymous within its play", 100, 99, {0, kAnonymous, 0, 0}, {}},
        {"anonymous", 100, 60, {0, kAnonymous + 1, 0, 0}, {"anonymous memory rises from 5000 to 1053577"}},
        {"descriptors", 100, 99, {0, 0, 1, 0}, {"the number of descriptors rises from 7 to 8"}},
        {"threads", 100, 55, {0, 0, 0, 1}, {"the number of threads rises from 2 to 3"}},
        {"early enough to be the level", 100, 54, {kHeap * 2, kAnonymous * 2, 3, 4}, {}},
        {"two at once",
         100,
         99,
         {0, 0, 2, 1},
         {"the number of descriptors rises from 7 to 9", "the number of threads rises from 2 to 3"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        LevelWatch watch;
        for (int i = 0; i < row.measurements; ++i) {
            ResourceUse use = base;
            if (i >= row.from)
                use = {use.heap + row.change.heap, use.anonymous + row.change.anonymous,
                       use.descriptors + row.change.descriptors, use.threads + row.change.threads};
            watch.Add(use);
        }
        EXPECT_EQ(watch.Rises(), row.expected);
    }
}

TEST(LevelWatch, WhatTheWarmUpHeldDoesNotCount) {
    LevelWatch watch;
    for (int i = 0; i < 100; ++i) watch.Add({i < 10 ? 1'000'000U : 10U, 0, i < 99 ? 1U : 2U, 1});
    EXPECT_EQ(watch.Rises(), std::vector<std::string>{"the number of descriptors rises from 1 to 2"});
    EXPECT_EQ(watch.AfterWarmUp().heap, 10U);
    EXPECT_EQ(LevelWatch().AfterWarmUp().heap, 0U);
}

TEST(MeasureResources, SeesWhatIsTaken) {
    const ResourceUse before = MeasureResources();
    const auto bytes = std::make_unique<char[]>(1 << 20);
    const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    ResourceUse during;
    std::thread([&during] { during = MeasureResources(); }).join();
    ::close(descriptor);
    EXPECT_GE(during.heap, before.heap + (1 << 20));
    EXPECT_EQ(during.descriptors, before.descriptors + 1);
    EXPECT_EQ(during.threads, before.threads + 1);
    EXPECT_EQ(MeasureResources().descriptors, before.descriptors);
}

}  // namespace
}  // namespace brindle::soak
