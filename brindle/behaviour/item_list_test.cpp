// Item lists and walks over them while the list changes.
#include "brindle/behaviour/item_list.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using brindle::ItemList;
using brindle::ItemWalk;

std::string Text(const ItemList<int>& list) {
    std::string text;
    for (POSITION position = list.GetHeadPosition(); position;) {
        const int* item = list.GetNext(position);
        text += item ? std::to_string(*item) : "-";
    }
    return text;
}

std::vector<int> Numbers(int count) {
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i) numbers.push_back(i);
    return numbers;
}

TEST(ItemList, KeepsItemsInOrder) {
    std::vector<int> n = Numbers(4);
    ItemList<int> list(false);
    EXPECT_EQ(list.GetCount(), 0);
    list.AddTail(&n[1]);
    list.AddTail(nullptr);
    list.AddHead(&n[0]);
    list.AddTail(&n[2]);
    EXPECT_EQ(Text(list), "01-2");
    EXPECT_EQ(list.GetCount(), 4);
    EXPECT_EQ(list.Find(&n[3]), nullptr);
    EXPECT_EQ(list.RemoveAt(list.Find(&n[1])), &n[1]);
    EXPECT_EQ(list.RemoveAt(list.Find(nullptr)), nullptr);
    EXPECT_EQ(Text(list), "02");
}

TEST(ItemList, OutdatesEventPlansOnlyWhenTold) {
    int item = 0;
    for (const bool planned : {true, false}) {
        SCOPED_TRACE(planned);
        ItemList<int> list(planned);
        const auto changes = [&](const std::function<void()>& change) {
            const std::uint64_t before = brindle::PlanGeneration();
            change();
            return brindle::PlanGeneration() != before;
        };
        EXPECT_EQ(changes([&] { list.AddTail(&item); }), planned);
        EXPECT_EQ(changes([&] { list.AddHead(nullptr); }), planned);
        EXPECT_EQ(changes([&] { list.Move(&item, nullptr); }), planned);
        EXPECT_EQ(changes([&] { list.RemoveAt(list.Find(&item)); }), planned);
        EXPECT_FALSE(changes([&] { list.Move(&item, nullptr); })) << "it is not there any more";
        EXPECT_FALSE(changes([&] { (void)list.Find(&item); }));
    }
}

class WalkSizes : public ::testing::TestWithParam<int> {};
// Small walks keep their items inside, larger ones outside; large lists answer from a set.
INSTANTIATE_TEST_SUITE_P(Sizes, WalkSizes, ::testing::Values(3, 8, 9, 32, 33, 100));

TEST_P(WalkSizes, VisitsWhatWasThereAndStillIs) {
    std::vector<int> n = Numbers(GetParam());
    ItemList<int> list(false);
    for (int& number : n) list.AddTail(&number);
    int added = 1000;
    std::vector<int> seen;
    ItemWalk<int> walk(list);
    while (const int* item = walk.Next()) {
        seen.push_back(*item);
        EXPECT_TRUE(walk.HoldsCurrent());
        if (*item != 0) continue;
        list.AddTail(&added);
        list.AddHead(&added);
        list.RemoveAt(list.Find(&n[0]));
        EXPECT_FALSE(walk.HoldsCurrent());
        list.RemoveAt(list.Find(&n[1]));
        list.Move(&n.back(), &n[2]);  // still the same member
    }
    std::vector<int> expected = n;
    expected.erase(expected.begin() + 1);
    EXPECT_EQ(seen, expected);
}

TEST_P(WalkSizes, TakesAnItemPutBackForANewOne) {
    std::vector<int> n = Numbers(GetParam());
    ItemList<int> list(false);
    for (int& number : n) list.AddTail(&number);
    ItemWalk<int> walk(list);
    walk.Next();
    list.RemoveAt(list.Find(&n[1]));
    list.AddTail(&n[1]);
    int visits = 0;
    while (const int* item = walk.Next()) visits += *item == 1 ? 1 : 0;
    EXPECT_EQ(visits, 0);
    ItemWalk<int> next(list);
    while (const int* item = next.Next()) visits += *item == 1 ? 1 : 0;
    EXPECT_EQ(visits, 1);
}

TEST_P(WalkSizes, EndsWithTheList) {
    std::vector<int> n = Numbers(GetParam());
    auto list = std::make_unique<ItemList<int>>(false);
    for (int& number : n) list->AddTail(&number);
    ItemWalk<int> outer(*list);
    {
        ItemWalk<int> inner(*list);
        EXPECT_NE(outer.Next(), nullptr);
        EXPECT_NE(inner.Next(), nullptr);
        list.reset();
        EXPECT_EQ(inner.Next(), nullptr);
        EXPECT_TRUE(inner.ListGone());
        EXPECT_FALSE(inner.HoldsCurrent());
    }
    EXPECT_EQ(outer.Next(), nullptr);
    EXPECT_TRUE(outer.ListGone());
}

TEST(ItemWalk, EndsWhenToldAndLeavesTheListUsable) {
    std::vector<int> n = Numbers(3);
    ItemList<int> list(false);
    for (int& number : n) list.AddTail(&number);
    {
        ItemWalk<int> outer(list);
        ItemWalk<int> inner(list);
        inner.Next();
        list.EndWalks();
        EXPECT_EQ(inner.Next(), nullptr);
        EXPECT_EQ(outer.Next(), nullptr);
        ItemWalk<int> later(list);
        EXPECT_EQ(later.Next(), &n[0]);
    }
    ItemWalk<int> walk(list);
    EXPECT_EQ(walk.Next(), &n[0]);
    EXPECT_FALSE(walk.ListGone());
}

TEST(ItemWalk, PassesOverNullItems) {
    std::vector<int> n = Numbers(2);
    ItemList<int> list(false);
    for (int* item : {static_cast<int*>(nullptr), &n[0], static_cast<int*>(nullptr), &n[1]})
        list.AddTail(item);
    ItemWalk<int> walk(list);
    EXPECT_EQ(walk.Next(), &n[0]);
    EXPECT_EQ(walk.Next(), &n[1]);
    EXPECT_EQ(walk.Next(), nullptr);
    EXPECT_EQ(walk.Next(), nullptr);
}

}  // namespace
