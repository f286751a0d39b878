#include "brindle/skin/sorted_texts.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace brindle {
namespace {

std::string Written(const SortedTexts& texts) {
    std::string written;
    for (const auto& [name, value] : texts.Entries()) written += name.str() + "=" + value.str() + ",";
    return written;
}

TEST(SortedTextsTest, NamesAreInByteOrderHoweverTheyCame) {
    SortedTexts texts;
    for (const char* name : {"b", "a", "B", "", "\xE9", "ab"}) texts.Set(name, name);
    EXPECT_EQ(Written(texts), "=,B=B,a=a,ab=ab,b=b,\xE9=\xE9,");
    EXPECT_EQ(*texts.Find(""), "");
    EXPECT_EQ(*texts.Find("ab"), "ab");
    EXPECT_EQ(texts.Find("A"), nullptr);
    EXPECT_EQ(texts.Find("c"), nullptr);
    EXPECT_EQ(texts.Find("\xFF"), nullptr);
}

TEST(SortedTextsTest, TheLastTextOfAName) {
    SortedTexts texts;
    texts.Set("b", "1");
    texts.Set("b", "2");
    EXPECT_EQ(Written(texts), "b=2,");
    for (const char* value : {"3", "4", "5"}) {
        texts.Append("b", value);
        texts.Append("a", value);
    }
    texts.Append("c", "6");
    texts.Sort();
    EXPECT_EQ(Written(texts), "a=5,b=5,c=6,");
}

TEST(SortedTextsTest, NothingIsThereAtFirst) {
    SortedTexts texts;
    texts.Sort();
    EXPECT_TRUE(texts.IsEmpty());
    EXPECT_EQ(texts.Find(""), nullptr);
    texts.Reserve(3);
    EXPECT_TRUE(texts.IsEmpty());
}

TEST(SortedTextsTest, LikeATableOfNames) {
    std::mt19937 random(7);
    SortedTexts texts;
    std::map<std::string, std::string> table;
    for (int step = 0; step < 2000; ++step) {
        const std::string name = std::to_string(random() % 300);
        const std::string value = std::to_string(step);
        table[name] = value;
        if (step % 100 < 50) {
            texts.Set(name.c_str(), value.c_str());
        } else {
            texts.Append(name.c_str(), value.c_str());
            if (step % 100 == 99) texts.Sort();
        }
    }
    std::string expected;
    for (const auto& [name, value] : table) expected += name + "=" + value + ",";
    EXPECT_EQ(Written(texts), expected);
    for (const auto& [name, value] : table) EXPECT_EQ(*texts.Find(name), value.c_str());
}

}  // namespace
}  // namespace brindle
