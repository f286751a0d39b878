// CList, CArray and CMap.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/framework/array.h"
#include "brindle/framework/list.h"
#include "brindle/framework/map.h"

namespace {

std::string Forward(const CStringList& list) {
    std::string out;
    for (POSITION at = list.GetHeadPosition(); at;) out += list.GetNext(at).str();
    return out;
}

std::string Backward(const CStringList& list) {
    std::string out;
    for (POSITION at = list.GetTailPosition(); at;) out += list.GetPrev(at).str();
    return out;
}

void ExpectBothWays(const CStringList& list, const std::string& expected) {
    EXPECT_EQ(Forward(list), expected);
    EXPECT_EQ(Backward(list), std::string(expected.rbegin(), expected.rend()));
    EXPECT_EQ(list.GetCount(), static_cast<std::ptrdiff_t>(expected.size()));
    EXPECT_EQ(list.GetSize(), list.GetCount());
    EXPECT_EQ(list.IsEmpty(), expected.empty());
    EXPECT_EQ(list.GetHeadPosition() == nullptr, expected.empty());
    EXPECT_EQ(list.GetTailPosition() == nullptr, expected.empty());
}

TEST(List, InsertingAndRemovingEverywhere) {
    CStringList list;
    ExpectBothWays(list, "");
    const POSITION b = list.AddTail("b");
    ExpectBothWays(list, "b");
    list.AddHead("a");
    const POSITION d = list.AddTail("d");
    ExpectBothWays(list, "abd");
    const POSITION c = list.InsertBefore(d, "c");
    list.InsertAfter(d, "e");
    ExpectBothWays(list, "abcde");
    list.InsertBefore(nullptr, "<");
    list.InsertAfter(nullptr, ">");
    ExpectBothWays(list, "<abcde>");
    list.RemoveAt(c);
    ExpectBothWays(list, "<abde>");
    list.RemoveHead();
    list.RemoveTail();
    ExpectBothWays(list, "abde");
    list.SetAt(b, "B");
    EXPECT_EQ(list.GetAt(b), "B");
    EXPECT_EQ(list.GetHead(), "a");
    EXPECT_EQ(list.GetTail(), "e");
    list.RemoveAll();
    ExpectBothWays(list, "");
    list.AddTail("x");
    ExpectBothWays(list, "x");
}

TEST(List, PositionsStayValidWhileOthersComeAndGo) {
    CList<int, int> list(3);
    std::vector<POSITION> positions;
    for (int i = 0; i < 100; ++i) positions.push_back(list.AddTail(i));
    for (std::size_t i = 0; i < 100; i += 2) list.RemoveAt(positions[i]);
    for (int i = 0; i < 50; ++i) list.AddHead(-i);
    for (std::size_t i = 1; i < 100; i += 2) EXPECT_EQ(list.GetAt(positions[i]), static_cast<int>(i));
    EXPECT_EQ(list.GetCount(), 100);
}

TEST(List, NodesComeFromBlocksAndAreUsedAgain) {
    CList<int, int> list(4);
    const POSITION first = list.AddTail(1);
    const POSITION second = list.AddTail(2);
    const auto distance = reinterpret_cast<const char*>(second) - reinterpret_cast<const char*>(first);
    EXPECT_GT(distance, 0);
    EXPECT_LE(distance, 64) << "neighbours lie close together";
    list.RemoveAt(first);
    EXPECT_EQ(list.AddTail(3), first) << "a free node is taken before a new block";
    CList<int, int> defaulted(0);
    for (int i = 0; i < 25; ++i) defaulted.AddTail(i);
    EXPECT_EQ(defaulted.GetTail(), 24);
}

TEST(List, RemovingTheCurrentElementInAWalk) {
    CList<int, int> list;
    for (int i = 0; i < 10; ++i) list.AddTail(i);
    for (POSITION at = list.GetHeadPosition(); at;) {
        const POSITION current = at;
        if (list.GetNext(at) % 2 == 0) list.RemoveAt(current);
    }
    std::string left;
    for (POSITION at = list.GetHeadPosition(); at;) left += std::to_string(list.GetNext(at));
    EXPECT_EQ(left, "13579");
}

TEST(List, Finding) {
    CStringList list;
    const POSITION a = list.AddTail("a");
    const POSITION b = list.AddTail("b");
    const POSITION second = list.AddTail("a");
    EXPECT_EQ(list.Find("a"), a);
    EXPECT_EQ(list.Find("a", a), second);
    EXPECT_EQ(list.Find("a", second), nullptr);
    EXPECT_EQ(list.Find("x"), nullptr);
    EXPECT_EQ(list.FindIndex(0), a);
    EXPECT_EQ(list.FindIndex(1), b);
    EXPECT_EQ(list.FindIndex(3), nullptr);
    EXPECT_EQ(list.FindIndex(-1), nullptr);
}

TEST(List, ElementsAreDestroyedOnce) {
    auto counted = std::make_shared<int>(0);
    {
        CList<std::shared_ptr<int>> list;
        for (int i = 0; i < 30; ++i) list.AddTail(counted);
        EXPECT_EQ(counted.use_count(), 31);
        list.RemoveHead();
        EXPECT_EQ(counted.use_count(), 30);
        list.RemoveAll();
        EXPECT_EQ(counted.use_count(), 1);
        list.AddTail(counted);
    }
    EXPECT_EQ(counted.use_count(), 1);
}

struct ThrowsOnCopy {
    ThrowsOnCopy() = default;
    ThrowsOnCopy(const ThrowsOnCopy&) { throw std::runtime_error("copy"); }
};

TEST(List, AnElementThatCannotBeCopiedLeavesTheListAsItWas) {
    CList<ThrowsOnCopy> list;
    EXPECT_THROW(list.AddTail(ThrowsOnCopy()), std::runtime_error);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
}

std::string Joined(const CStringArray& array) {
    std::string out;
    for (const CStringA& text : array) out += text.str() + ",";
    return out;
}

TEST(Array, Operations) {
    CStringArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.Add("a"), 0);
    EXPECT_EQ(array.Add("c"), 1);
    array.InsertAt(1, "b");
    EXPECT_EQ(Joined(array), "a,b,c,");
    array.InsertAt(4, "e");
    EXPECT_EQ(Joined(array), "a,b,c,,e,") << "grows to reach the index";
    array.SetAtGrow(6, "g");
    EXPECT_EQ(Joined(array), "a,b,c,,e,,g,");
    array.SetAtGrow(8, array.GetAt(0));
    EXPECT_EQ(array[8], "a") << "the value may lie in the array";
    array.SetSize(3);
    array.SetAt(0, "A");
    array[1] = "B";
    EXPECT_EQ(Joined(array), "A,B,c,");
    array.RemoveAt(0, 2);
    EXPECT_EQ(Joined(array), "c,");
    array.Append(array);
    EXPECT_EQ(Joined(array), "c,c,");
    CStringArray copy;
    copy.Copy(array);
    EXPECT_EQ(copy.GetCount(), 2);
    EXPECT_EQ(copy.GetSize(), 2);
    copy.SetSize(-1);
    EXPECT_TRUE(copy.IsEmpty());
    array.RemoveAll();
    EXPECT_TRUE(array.IsEmpty());
    CDWordArray words;
    words.SetSize(2);
    EXPECT_EQ(words[1], 0u) << "new elements are value-initialised";
}

using NumberMap = CMap<CStringA, const CStringA&, int, int>;

std::string Walked(const NumberMap& map) {
    std::string out;
    for (POSITION at = map.GetStartPosition(); at;) {
        CStringA key;
        int value = 0;
        map.GetNextAssoc(at, key, value);
        out += key.str() + std::to_string(value) + " ";
    }
    return out;
}

TEST(Map, Operations) {
    NumberMap map;
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.GetStartPosition(), nullptr);
    EXPECT_EQ(map.PGetFirstAssoc(), nullptr);
    int value = 77;
    EXPECT_FALSE(map.Lookup("a", value));
    EXPECT_EQ(value, 77) << "unchanged";
    map.SetAt("b", 2);
    map["a"] = 1;
    EXPECT_EQ(map["c"], 0) << "a new entry is value-initialised";
    map.SetAt("b", 3);
    EXPECT_EQ(Walked(map), "b3 a1 c0 ") << "in the order the keys were first set";
    EXPECT_EQ(map.GetCount(), 3);
    EXPECT_EQ(map.GetSize(), 3);
    EXPECT_TRUE(map.Lookup("a", value));
    EXPECT_EQ(value, 1);
    ASSERT_NE(map.PLookup("a"), nullptr);
    map.PLookup("a")->value = 9;
    EXPECT_EQ(map["a"], 9);
    EXPECT_EQ(map.PGetFirstAssoc()->key, "b");
    EXPECT_TRUE(map.RemoveKey("b"));
    EXPECT_FALSE(map.RemoveKey("b"));
    EXPECT_EQ(Walked(map), "a9 c0 ");
    EXPECT_TRUE(map.RemoveKey(map.PGetFirstAssoc()->key)) << "the key may be the entry's own";
    map.RemoveAll();
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(Walked(map), "");
}

TEST(Map, AWalkMayRemoveWhatItHasSeen) {
    NumberMap map;
    for (int i = 0; i < 50; ++i) map.SetAt(CStringA(std::to_string(i)), i);
    for (POSITION at = map.GetStartPosition(); at;) {
        CStringA key;
        int value = 0;
        map.GetNextAssoc(at, key, value);
        if (value % 10 != 0) map.RemoveKey(key);
    }
    EXPECT_EQ(Walked(map), "00 1010 2020 3030 4040 ");
}

}  // namespace
