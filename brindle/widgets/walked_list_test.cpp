// A list that changes while it is walked.
#include "brindle/widgets/walked_list.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using List = brindle::WalkedList<int>;

void Remove(List& list, int number) {
    list.Remove([&](int each) { return each == number; });
}

// The numbers a walk visits; `act` is done at each of them.
std::string Visited(List& list, const std::function<void(int)>& act = nullptr) {
    std::string text;
    list.Walk([&](int number, const bool&) {
        text += std::to_string(number);
        if (act) act(number);
    });
    return text;
}

TEST(WalkedList, ChangesDuringAWalk) {
    struct Row {
        const char* label;
        void (*act)(List& list, int at);  // at each number
        const char* visited;
        const char* after;
    };
    const std::vector<Row> rows = {
        {"nothing", [](List&, int) {}, "123", "123"},
        {"each removes itself", [](List& list, int at) { Remove(list, at); }, "123", ""},
        {"the first removes the second",
         [](List& list, int at) {
             if (at == 1) Remove(list, 2);
         },
         "13", "13"},
        {"the first removes the last",
         [](List& list, int at) {
             if (at == 1) Remove(list, 3);
         },
         "12", "12"},
        {"the last removes the first",
         [](List& list, int at) {
             if (at == 3) Remove(list, 1);
         },
         "123", "23"},
        {"the first removes all", [](List& list, int) { Remove(list, 1), Remove(list, 2), Remove(list, 3); },
         "1", ""},
        {"what is added waits",
         [](List& list, int at) {
             if (at == 1) list.Add(4);
         },
         "123", "1234"},
        {"removed and added again",
         [](List& list, int at) {
             if (at == 1) Remove(list, 2), list.Add(2);
         },
         "13", "132"},
        {"itself removed and added again", [](List& list, int at) { Remove(list, at), list.Add(at); }, "123",
         "123"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        List list;
        for (const int number : {1, 2, 3}) list.Add(number);
        EXPECT_EQ(Visited(list, [&](int at) { row.act(list, at); }), row.visited);
        EXPECT_EQ(Visited(list), row.after);
        EXPECT_EQ(list.IsEmpty(), *row.after == 0);
        EXPECT_EQ(list.IsAtRest(), *row.after == 0);
    }
}

TEST(WalkedList, AVisitHearsOfItsRemovalAndKeepsItsItem) {
    List list;
    list.Add(1);
    list.Add(2);
    list.Walk([&](int& number, const bool& removed) {
        EXPECT_FALSE(removed);
        Remove(list, 1);
        for (int i = 0; i < 100; ++i) list.Add(9);
        EXPECT_EQ(removed, number == 1);
        number = 7;
        EXPECT_FALSE(list.IsAtRest());
    });
    EXPECT_EQ(*list.Find([](int) { return true; }), 7) << "the second, written through its reference";
}

TEST(WalkedList, WalksMayBeNested) {
    List list;
    for (const int number : {1, 2, 3}) list.Add(number);
    std::string inner;
    const std::string outer = Visited(list, [&](int at) {
        if (at == 1) inner = Visited(list, [&](int number) { Remove(list, number == 2 ? 3 : 0); });
    });
    EXPECT_EQ(inner, "12");
    EXPECT_EQ(outer, "12");
    Remove(list, 1);
    Remove(list, 2);
    EXPECT_TRUE(list.IsAtRest());
}

TEST(WalkedList, AVisitThatThrowsEndsTheWalk) {
    List list;
    list.Add(1);
    list.Add(2);
    EXPECT_THROW(list.Walk([&](int number, const bool&) {
        Remove(list, number);
        throw std::runtime_error("host");
    }),
                 std::runtime_error);
    EXPECT_EQ(Visited(list), "2");
    Remove(list, 2);
    EXPECT_TRUE(list.IsAtRest());
    EXPECT_FALSE(list.Remove([](int) { return true; }));
    EXPECT_EQ(Visited(list), "") << "an empty list may be walked";
}

}  // namespace
