#include "brindle/macro/file_box.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "brindle/library/string_table.h"
#include "brindle/platform/fake/desktop_fake.h"
#include "brindle/platform/service.h"

namespace {

HWND Window(int number) {
    static char windows[4];
    return reinterpret_cast<HWND>(&windows[number]);
}

class FileBox : public ::testing::Test {
  protected:
    brindle::FakeDesktop m_desktop;
    brindle::ScopedService<brindle::Desktop> m_installed{&brindle::SetDesktop, m_desktop};
};

TEST_F(FileBox, HandsEverythingOn) {
    CStringA file = "C:\\old.txt";
    m_desktop.choice = "C:\\new.txt";
    EXPECT_NE(SelectFileBox(Window(1), file, "Text|*.txt|All|*.*||", "C:\\dir", 0x1004, "Choose"), 0);
    EXPECT_EQ(file, "C:\\new.txt");
    ASSERT_EQ(m_desktop.requests.size(), 1u);
    const brindle::FileBoxRequest& request = m_desktop.requests[0];
    EXPECT_FALSE(request.save);
    EXPECT_EQ(request.owner, Window(1));
    EXPECT_EQ(request.file, "C:\\old.txt");
    EXPECT_EQ(request.filter, std::string("Text\0*.txt\0All\0*.*\0\0", 20));
    EXPECT_EQ(request.initialDirectory, "C:\\dir");
    EXPECT_EQ(request.flags, 0x1004u);
    EXPECT_EQ(request.title, "Choose");
    EXPECT_EQ(m_desktop.errorsAsked, 0);
}

TEST_F(FileBox, NullTextsAreTheDesktopsChoice) {
    CStringA file;
    EXPECT_EQ(SelectFileBox(nullptr, file, nullptr, nullptr, 0, nullptr), 0);
    EXPECT_EQ(m_desktop.requests.at(0).filter, "");
    EXPECT_EQ(m_desktop.requests.at(0).initialDirectory, "");
    EXPECT_EQ(m_desktop.requests.at(0).title, "");
}

TEST_F(FileBox, CancellingKeepsTheFileAndAsksForTheError) {
    CStringA file = "old";
    EXPECT_EQ(SelectFileBox(nullptr, file, "", "", 0, ""), 0);
    EXPECT_EQ(file, "old");
    EXPECT_EQ(m_desktop.errorsAsked, 1);
    m_desktop.error = 3;
    EXPECT_EQ(SelectFileBox(nullptr, file, "", "", 0, ""), 0);
    EXPECT_EQ(m_desktop.errorsAsked, 2);
    EXPECT_EQ(SaveFileBox(nullptr, file, "", "", 0, ""), 0);
    EXPECT_EQ(m_desktop.errorsAsked, 2) << "saving does not ask";
    EXPECT_EQ(file, "old");
}

TEST_F(FileBox, KeptSavingIgnoresItsOwner) {
    CStringA file = "old";
    m_desktop.choice = "new";
    EXPECT_NE(SaveFileBox(Window(1), file, "", "", 0, ""), 0);
    EXPECT_EQ(file, "new");
    EXPECT_TRUE(m_desktop.requests.at(0).save);
    EXPECT_EQ(m_desktop.requests.at(0).owner, nullptr) << "no main window";
    m_desktop.mainWindow = Window(2);
    SaveFileBox(Window(1), file, "", "", 0, "");
    EXPECT_EQ(m_desktop.requests.at(1).owner, Window(2));
}

TEST_F(FileBox, BuffersHold259Bytes) {
    struct Row {
        std::size_t given;
        std::size_t kept;
    };
    for (const Row& row : {Row{258, 258}, Row{259, 259}, Row{260, 259}, Row{1000, 259}}) {
        SCOPED_TRACE(row.given);
        m_desktop.requests.clear();
        CStringA file = std::string(row.given, 'f');
        SelectFileBox(nullptr, file, std::string(row.given, '|').c_str(), "", 0, "");
        EXPECT_EQ(m_desktop.requests.at(0).file.size(), row.kept);
        EXPECT_EQ(m_desktop.requests.at(0).filter, std::string(row.kept, '\0'));
        EXPECT_EQ(file, std::string(row.given, 'f'));
    }
}

TEST_F(FileBox, TheFilterOfProgramsFits) {
    CStringA file;
    const CStringA filter = brindle::LoadStringResource(brindle::kTextExecutableFilter);
    SelectFileBox(nullptr, file, filter, "", 0, "");
    EXPECT_EQ(m_desktop.requests.at(0).filter.size(), filter.view().size());
    EXPECT_TRUE(m_desktop.requests.at(0).filter.ends_with(std::string("*.*\0\0", 5)));
}

TEST(SafeCopy, Rows) {
    struct Row {
        const char* label;
        const char* text;
        int size;
        std::string expected;  // of a buffer of six "#"
    };
    const std::vector<Row> rows = {
        {"shorter", "ab", 5, std::string("ab\0\0\0#", 6)},
        {"exactly", "abcd", 5, std::string("abcd\0#", 6)},
        {"longer", "abcdefgh", 5, std::string("abcd\0#", 6)},
        {"empty", "", 5, std::string("\0\0\0\0\0#", 6)},
        {"null", nullptr, 2, std::string("\0\0####", 6)},
        {"one byte", "ab", 1, std::string("\0#####", 6)},
        {"nothing", "ab", 0, "######"},
        {"below nothing", "ab", -1, "######"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        char buffer[6];
        std::memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(SafeCopy(buffer, row.text, row.size), buffer);
        EXPECT_EQ(std::string(buffer, sizeof buffer), row.expected);
    }
}

}  // namespace
