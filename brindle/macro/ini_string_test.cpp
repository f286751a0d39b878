#include "brindle/macro/ini_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "brindle/macro/substitute_path.h"
#include "brindle/platform/fake/ini_store_fake.h"
#include "brindle/platform/files.h"
#include "brindle/platform/service.h"

namespace {

class IniString : public ::testing::Test {
  protected:
    ~IniString() override { SetSearchPathIniFile(""); }
    brindle::FakeIniStore m_store;
    brindle::ScopedService<brindle::IniStore> m_installed{&brindle::SetIniStore, m_store};
};

TEST_F(IniString, ReadsValuesOfAnyLengthInAnyChunk) {
    for (const int length : {0, 1, 508, 509, 510, 511, 512, 513, 1021, 1022, 1023, 5000, 70'000}) {
        const std::string value(static_cast<std::size_t>(length), 'v');
        m_store.SetText("f.ini", "[s]\nk=" + value + "\n");
        for (const int chunk : {1, 2, 3, 512, 4096, 1'000'000}) {
            SCOPED_TRACE(std::to_string(length) + " in " + std::to_string(chunk));
            CStringA out = "before";
            EXPECT_EQ(GetIniString("s", "k", "default", out, "f.ini", chunk), length);
            EXPECT_TRUE(out == value);
        }
    }
}

TEST_F(IniString, ReadsListsWhole) {
    std::string text = "[s]\n";
    std::string list;
    for (int i = 0; i < 500; ++i) {
        text += "key" + std::to_string(i) + "=1\n";
        list += "key" + std::to_string(i) + '\0';
        if (i % 7 != 0 && i != 499) continue;
        m_store.SetText("f.ini", text);
        for (const int chunk : {1, 64, 512}) {
            CStringA out;
            EXPECT_EQ(GetIniString("s", nullptr, "", out, "f.ini", chunk), static_cast<int>(list.size()));
            EXPECT_TRUE(out == list);
            EXPECT_STREQ(out.GetString() + list.size(), "") << "an empty name ends it";
        }
    }
}

TEST_F(IniString, Defaults) {
    m_store.SetText("f.ini", "[s]\nk=v\nempty=\n");
    struct Row {
        const char* label;
        const char* section;
        const char* key;
        const char* given;
        const char* file;
        int chunk;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"found", "S", "K", "d", "f.ini", 512, "v"},
        {"an empty value is one", "s", "empty", "d", "f.ini", 512, ""},
        {"no such key", "s", "x", "d", "f.ini", 512, "d"},
        {"no such section", "x", "k", "d", "f.ini", 512, "d"},
        {"no such file", "s", "k", "d", "x.ini", 512, "d"},
        {"no file", "s", "k", "d", nullptr, 512, "d"},
        {"no default", "s", "x", nullptr, "f.ini", 512, ""},
        {"an empty list is the default", "x", nullptr, "d", "f.ini", 512, "d"},
        {"no buffer", "s", "k", "d ", "f.ini", 0, "d "},
        {"less than none", "s", "k", "d", "f.ini", -5, "d"},
        {"no buffer, no default", "s", "k", nullptr, "f.ini", 0, ""},
        {"a long default", "s", "x", "0123456789", "f.ini", 4, "0123456789"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA out = "before";
        EXPECT_EQ(GetIniString(row.section, row.key, row.given, out, row.file, row.chunk),
                  static_cast<int>(std::strlen(row.expected)));
        EXPECT_EQ(out, row.expected);
    }
}

TEST_F(IniString, LastDirectoriesAreThreeKeys) {
    SetSearchPathIniFile("C:\\search.ini");
    struct Row {
        const char* key;
        CStringA (*get)();
        void (*set)(const char*);
    };
    const Row rows[] = {{"LastSchematicDir", &GetLastSchematicDir, &SetLastSchematicDir},
                        {"LastComponentDir", &GetLastComponentDir, &SetLastComponentDir},
                        {"LastGraphicsDir", &GetLastGraphicsDir, &SetLastGraphicsDir}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        m_store.SetText("C:\\search.ini", "; kept\r\n[SearchPath]\r\nLIB=C:\\A\r\n");
        EXPECT_EQ(row.get(), "");
        row.set("C:\\Maps\\Site A\\");
        EXPECT_EQ(row.get(), "C:\\Maps\\Site A\\");
        EXPECT_EQ(*m_store.Text("C:\\search.ini"),
                  "; kept\r\n[SearchPath]\r\nLIB=C:\\A\r\n[Directories]\r\n" + std::string(row.key) +
                      "=C:\\Maps\\Site A\\\r\n");
        row.set(std::string(300, 'd').c_str());
        EXPECT_EQ(row.get(), std::string(259, 'd'));
        row.set(nullptr);
        EXPECT_EQ(row.get(), "");
    }
}

std::string g_warning;

TEST_F(IniString, AFailedWriteIsToldToTheWarningSink) {
    SetSearchPathIniFile("C:\\search.ini");
    m_store.FailWrites(true);
    const brindle::WarningSink before = brindle::SetWarningSink([](const char* text) { g_warning = text; });
    SetLastSchematicDir("C:\\Maps");
    brindle::SetWarningSink(before);
    EXPECT_NE(g_warning.find("search.ini"), std::string::npos) << g_warning;
    EXPECT_EQ(GetLastSchematicDir(), "");
}

}  // namespace
