// The defaults of tree items and how their enabled flag is kept.
#include "brindle/behaviour/tree_item.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

#include "testing/behaviour_kit.h"

namespace {

using brindle::testing::ReaderOf;
using brindle::testing::Written;

class PlainItem : public CCommandTreeItem {
  public:
    POSITION GetFirstChildPosition() const override { return nullptr; }
    const CCommandTreeItem* GetNextChild(POSITION&) const override { return nullptr; }
    int GetChildCount() const override { return 0; }
    bool IsVisible() const override { return true; }
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
};

static_assert(std::is_abstract_v<CCommandTreeItem>);
static_assert(std::has_virtual_destructor_v<CCommandTreeItem>);

TEST(TreeItem, Defaults) {
    PlainItem item;
    EXPECT_TRUE(item.IsEnabled());
    EXPECT_EQ(item.GetImage(), 0);
    EXPECT_EQ(item.GetNextTime(), 0);
    EXPECT_EQ(item.GetRealObject(), &item);
    EXPECT_EQ(item.CreateConfigDialog(), nullptr);
    EXPECT_FALSE(item.CanRename());
    EXPECT_FALSE(item.IsSysCreated());
    EXPECT_FALSE(item.IsTemplate());
    item.SetTemplate(true);
    EXPECT_FALSE(item.IsTemplate());
    item.Rename("x");
    EXPECT_EQ(item.GetText(0), "");
}

TEST(TreeItem, ReplaceDataAndResultInfoDoNothing) {
    PlainItem item;
    XMLReader reader = ReaderOf("<a b='1'/>");
    XMLWriter writer;
    ASSERT_TRUE(writer.Initialize());
    std::string before;
    ASSERT_TRUE(writer.SaveToString(before));
    item.ReplaceData(reader, writer, "a", "b", "c", "d");
    std::string after;
    ASSERT_TRUE(writer.SaveToString(after));
    EXPECT_EQ(after, before);
    EXPECT_TRUE(reader.EnterSection("a", false));

    CStringA first = "one";
    CStringA second = "two";
    item.GetResultInfo(first, second);
    EXPECT_EQ(first, "one");
    EXPECT_EQ(second, "two");
}

TEST(TreeItem, CopiesCarryTheEnabledFlag) {
    for (const bool enabled : {true, false}) {
        SCOPED_TRACE(enabled);
        PlainItem source;
        source.SetEnabled(enabled);
        const PlainItem copy(source);
        EXPECT_EQ(copy.IsEnabled(), enabled);
        PlainItem assigned;
        assigned.SetEnabled(!enabled);
        assigned = source;
        EXPECT_EQ(assigned.IsEnabled(), enabled);
    }
}

TEST(TreeItem, SavesTheFlagAsAnEnabledSection) {
    for (const bool enabled : {true, false}) {
        PlainItem item;
        item.SetEnabled(enabled);
        const std::string xml = Written([&](XMLWriter& writer) {
            writer.EnterSection("Item");
            item.Save(writer);
            writer.WriteAttribute("after", "1");  // the section is closed again
            writer.CloseSection();
        });
        const std::string value = enabled ? "TRUE" : "FALSE";
        EXPECT_NE(xml.find("<Item after=\"1\"><Enabled value=\"" + value + "\"/></Item>"), std::string::npos)
            << xml;
    }
}

TEST(TreeItem, LoadsTheFlag) {
    struct Row {
        const char* label;
        const char* xml;
        bool before;
        bool after;
    };
    const Row rows[] = {
        {"written by us, true", "<i><Enabled value='TRUE'/></i>", false, true},
        {"written by us, false", "<i><Enabled value='FALSE'/></i>", true, false},
        {"any case", "<i><Enabled value='false'/></i>", true, false},
        {"digit", "<i><Enabled value='0'/></i>", true, false},
        {"word", "<i><Enabled value='oN'/></i>", false, true},
        {"unreadable keeps true", "<i><Enabled value='yes'/></i>", true, true},
        {"unreadable keeps false", "<i><Enabled value='yes'/></i>", false, false},
        {"empty keeps", "<i><Enabled value=''/></i>", false, false},
        {"no attribute keeps", "<i><Enabled/></i>", false, false},
        {"no section keeps true", "<i/>", true, true},
        {"no section keeps false", "<i><Other value='TRUE'/></i>", false, false},
        {"name is case-sensitive", "<i><enabled value='FALSE'/></i>", true, true},
        {"behind other children", "<i><a/><Enabled value='FALSE'/></i>", true, false},
        {"first of two", "<i><Enabled value='FALSE'/><Enabled value='TRUE'/></i>", true, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        XMLReader reader = ReaderOf(row.xml);
        ASSERT_TRUE(reader.EnterSection("i", false));
        PlainItem item;
        item.SetEnabled(row.before);
        item.Load(reader);
        EXPECT_EQ(item.IsEnabled(), row.after);
        reader.CloseSection();
        EXPECT_TRUE(reader.EnterSection("i", false)) << "a section was left open";
    }
}

TEST(TreeItem, LoadContinuesFromTheReadersPosition) {
    XMLReader reader = ReaderOf("<i><Enabled value='FALSE'/><b/><Enabled value='TRUE'/></i>");
    ASSERT_TRUE(reader.EnterSection("i", false));
    ASSERT_TRUE(reader.EnterSection("b", false));
    reader.CloseSection();
    PlainItem item;
    item.SetEnabled(false);
    item.Load(reader);
    EXPECT_TRUE(item.IsEnabled());
}

TEST(TraveralFunct, HoldsNoState) {
    static_assert(sizeof(TraveralFunct) == sizeof(void*));
    static_assert(std::is_abstract_v<TraveralFunct>);
    class Count final : public TraveralFunct {
      public:
        void operator()(CCommandTreeItem*) const override { ++calls; }
        mutable int calls = 0;
    };
    Count one;
    PlainItem item;
    one(&item);
    Count two(one);
    two(&item);
    static_cast<TraveralFunct&>(one) = two;
    EXPECT_EQ(one.calls, 1);
    EXPECT_EQ(two.calls, 2);
}

}  // namespace
