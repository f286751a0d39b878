#include "brindle/skin/named_list.h"

#include <gtest/gtest.h>

#include <string>

namespace brindle {
namespace {

std::string Names(const NamedList<int>& list) {
    std::string names;
    for (const auto& entry : list.Entries()) names += entry.name.str() + ",";
    return names;
}

TEST(NamedListTest, KeepsTheOrderOfFirstAddition) {
    NamedList<int> list;
    for (const char* name : {"b", "a", "B", "", "a", "b"}) ++list.FindOrAdd(name);
    EXPECT_EQ(Names(list), "b,a,B,,");
    EXPECT_EQ(*list.Find("b"), 2);
    EXPECT_EQ(*list.Find("a"), 2);
    EXPECT_EQ(*list.Find("B"), 1);
    EXPECT_EQ(*list.Find(""), 1);
    EXPECT_EQ(list.Find("c"), nullptr);
}

TEST(NamedListTest, CopiesAreDeep) {
    NamedList<int> list;
    list.FindOrAdd("a") = 1;
    NamedList<int> copy = list;
    copy.FindOrAdd("a") = 2;
    copy.FindOrAdd("b") = 3;
    EXPECT_EQ(*list.Find("a"), 1);
    EXPECT_EQ(Names(list), "a,");
    list = copy;
    EXPECT_EQ(*list.Find("b"), 3);
}

}  // namespace
}  // namespace brindle
