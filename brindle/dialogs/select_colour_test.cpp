// The colour picker's door over a fake dialog, and custom colours in real and fake INI files.
#include "brindle/dialogs/select_colour.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "brindle/behaviour/action_files.h"
#include "brindle/dialogs/custom_colours.h"
#include "brindle/platform/fake/colour_box_fake.h"
#include "brindle/platform/fake/ini_store_fake.h"
#include "brindle/platform/files.h"
#include "brindle/platform/service.h"

namespace {

using brindle::CustomColours;

constexpr char kFile[] = "ui.ini";

CustomColours White() {
    CustomColours colours;
    colours.fill(0xFFFFFF);
    return colours;
}

class SelectColour_ : public ::testing::Test {
  protected:
    SelectColour_() { SetUserInterfaceIniFile(kFile); }
    ~SelectColour_() override { SetUserInterfaceIniFile(""); }

    brindle::FakeIniStore m_store;
    brindle::ScopedService<brindle::IniStore> m_installed{&brindle::SetIniStore, m_store};
    brindle::FakeColourBox m_box;
    brindle::ScopedService<brindle::ColourBox> m_installedBox{&brindle::SetColourBox, m_box};
};

TEST_F(SelectColour_, LoadsTheEntries) {
    struct Row {
        const char* label;
        std::string entries;
        std::vector<std::uint32_t> expected;  // the first ones; the last of them goes on where `goesOn`
        bool goesOn = false;
    };
    const std::vector<Row> rows = {
        {"no section", "", {0xFFFFFF}},
        {"red, green, blue", "CustomColour0=1,2,3\n", {0x030201, 0xFFFFFF}},
        {"names in any case", "CUSTOMCOLOUR0=1,2,3\n", {0x030201, 0xFFFFFF}},
        {"the last one", "CustomColour15=9,8,7\n", std::vector<std::uint32_t>(15, 0xFFFFFF)},
        {"one component: the others were never read", "CustomColour0=12\n", {0xFFFF0C, 0xFFFFFF}},
        {"two components", "CustomColour0=12,13\n", {0xFF0D0C, 0xFFFFFF}},
        {"what is missing is the former entry's",
         "CustomColour0=1,2,3\nCustomColour1=12\n",
         {0x030201, 0x03020C, 0xFFFFFF}},
        {"empty: wholly the former entry's",
         "CustomColour0=1,2,3\nCustomColour1=\n",
         {0x030201, 0x030201, 0xFFFFFF}},
        {"not a number", "CustomColour0=red\n", {0xFFFFFF}},
        {"a letter ends it", "CustomColour0=1,x,3\n", {0xFFFF01, 0xFFFFFF}},
        {"blanks before numbers", "CustomColour0= 1,  2,\t3\n", {0x030201, 0xFFFFFF}},
        {"a blank before a comma ends it", "CustomColour0=1 ,2,3\n", {0xFFFF01, 0xFFFFFF}},
        {"more is ignored", "CustomColour0=1,2,3,4\n", {0x030201, 0xFFFFFF}},
        {"signs", "CustomColour0=+1,-0,3\n", {0x030001, 0xFFFFFF}},
        {"quotes are dropped", "CustomColour0=\"1,2,3\"\n", {0x030201, 0xFFFFFF}},
        {"larger than a byte: runs into the next", "CustomColour0=256,0,0\n", {0x000100, 0xFFFFFF}},
        {"no carrying out of 32 bits", "CustomColour0=0,0,256\n", {0x1000000, 0xFFFFFF}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_store.SetText(kFile, row.entries.empty() ? "" : "[CustomColours]\n" + row.entries);
        const CustomColours colours = brindle::LoadCustomColours();
        for (std::size_t i = 0; i < row.expected.size(); ++i) EXPECT_EQ(colours[i], row.expected[i]) << i;
    }
    m_store.SetText(kFile, "[CustomColours]\nCustomColour15=9,8,7\n");
    EXPECT_EQ(brindle::LoadCustomColours()[15], 0x070809u);
}

TEST_F(SelectColour_, EntriesAreReadInto512Bytes) {
    m_store.SetText(kFile, "[CustomColours]\nCustomColour0=1,2" + std::string(505, '0') + ",7,9\n");
    EXPECT_EQ(brindle::LoadCustomColours()[0] & 0xFF, 1u);
    m_store.SetText(kFile, "[CustomColours]\nCustomColour0=1,2," + std::string(506, '0') + "77\n");
    EXPECT_EQ(brindle::LoadCustomColours()[0], 0x070201u) << "cut behind the 511th byte";
}

TEST_F(SelectColour_, ConfirmingStoresTheColourAndAllSixteen) {
    m_store.SetText(kFile, "[Other]\nkept=1\n");
    m_box.choice = 0x563412;
    m_box.customChoice = {{0, 0x030201}, {15, 0x00FF00}};
    unsigned long colour = 0xFF0000FF;
    const auto parent = reinterpret_cast<HWND>(&m_box);
    EXPECT_NE(SelectColour(parent, colour), 0);
    EXPECT_EQ(colour, 0x563412u);
    ASSERT_EQ(m_box.requests.size(), 1u);
    EXPECT_EQ(m_box.requests[0].owner, parent);
    EXPECT_EQ(m_box.requests[0].colour, 0x0000FFu);
    EXPECT_EQ(m_box.requests[0].custom, White());
    std::string expected = "[Other]\nkept=1\n[CustomColours]\nCustomColour0=1,2,3\n";
    for (int i = 1; i < 15; ++i) expected += "CustomColour" + std::to_string(i) + "=255,255,255\n";
    EXPECT_EQ(*m_store.Text(kFile), expected + "CustomColour15=0,255,0\n");
}

TEST_F(SelectColour_, CancellingChangesNothing) {
    m_box.customChoice = {{0, 0x030201}};
    unsigned long colour = 0x112233;
    EXPECT_EQ(SelectColour(nullptr, colour), 0);
    EXPECT_EQ(colour, 0x112233u);
    EXPECT_EQ(m_store.Text(kFile), nullptr) << "not even an empty file";
}

TEST_F(SelectColour_, WithoutADesktopNobodyChooses) {
    brindle::SetColourBox(nullptr);
    unsigned long colour = 0x112233;
    EXPECT_EQ(SelectColour(nullptr, colour), 0);
    EXPECT_EQ(colour, 0x112233u);
    brindle::SetColourBox(&m_box);
}

TEST_F(SelectColour_, AFailedWriteIsToldAndIgnored) {
    static int warnings;
    warnings = 0;
    m_store.FailWrites(true);
    m_box.choice = 0x010203;
    unsigned long colour = 0;
    const auto before = brindle::SetWarningSink([](const char*) { ++warnings; });
    EXPECT_EQ(SelectColour(nullptr, colour), 1);
    brindle::SetWarningSink(before);
    EXPECT_EQ(colour, 0x010203u);
    EXPECT_EQ(warnings, 1) << "not sixteen times";
}

TEST(SelectColourFile, WritesARealFile) {
    const std::string path = ::testing::TempDir() + "custom_colours.ini";
    std::remove(path.c_str());
    SetUserInterfaceIniFile(path.c_str());
    brindle::FakeColourBox box;
    box.choice = 0;
    box.customChoice = {{3, 0x0000FF}};
    const brindle::ScopedService<brindle::ColourBox> installed(&brindle::SetColourBox, box);
    unsigned long colour = 0;
    EXPECT_EQ(SelectColour(nullptr, colour), 1);
    std::ifstream file(path);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    EXPECT_TRUE(text.starts_with("[CustomColours]")) << text;
    EXPECT_NE(text.find("CustomColour3=255,0,0"), std::string::npos) << text;
    CustomColours expected = White();
    expected[3] = 0x0000FF;
    EXPECT_EQ(brindle::LoadCustomColours(), expected) << "read back";
    SetUserInterfaceIniFile("");
}

}  // namespace
