// The INI store's contract, over the system's files, over files in memory and over the fake store; and the recorded
// answers of the system these files come from.
#include "brindle/platform/ini_store.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/ini_store_fake.h"
#include "brindle/platform/files.h"
#include "brindle/platform/service.h"
#include "testing/vectors.h"

namespace brindle {
namespace {

using nlohmann::json;
using testing::BytesOf;

class IniWorld {
  public:
    virtual ~IniWorld() = default;
    virtual IniStore& Store() = 0;
    virtual std::string Path() = 0;
    virtual void Put(const std::string& text) = 0;
    virtual std::optional<std::string> Get() = 0;
};

class SystemIni final : public IniWorld {
  public:
    SystemIni() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_ini_XXXXXX";
        m_folder = mkdtemp(pattern.data());
    }
    ~SystemIni() override { std::filesystem::remove_all(m_folder); }
    IniStore& Store() override { return BackendIniStore(); }
    std::string Path() override { return m_folder + "/f.ini"; }
    void Put(const std::string& text) override { std::ofstream(Path(), std::ios::binary) << text; }
    std::optional<std::string> Get() override {
        std::ifstream file(Path(), std::ios::binary);
        if (!file) return {};
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

  private:
    std::string m_folder;
};

class MemoryFilesIni final : public IniWorld {
  public:
    IniStore& Store() override { return BackendIniStore(); }
    std::string Path() override { return "C:\\f.ini"; }
    void Put(const std::string& text) override { m_files.Add("/f.ini", FakeFiles::Kind::kFile, text); }
    std::optional<std::string> Get() override {
        std::string text;
        return m_files.ReadWhole("/f.ini", kIniMaxBytes, text).ok() ? std::optional(text) : std::nullopt;
    }

  private:
    FakeFiles m_files;
    ScopedService<Files> m_installed{&SetFiles, m_files};
};

class FakeIni final : public IniWorld {
  public:
    IniStore& Store() override { return m_store; }
    std::string Path() override { return "C:\\f.ini"; }
    void Put(const std::string& text) override { m_store.SetText(Path(), text); }
    std::optional<std::string> Get() override {
        const std::string* text = m_store.Text(Path());
        return text ? std::optional(*text) : std::nullopt;
    }

  private:
    FakeIniStore m_store;
};

enum WorldKind { kSystem, kMemoryFiles, kFake };

std::unique_ptr<IniWorld> MakeWorld(WorldKind kind) {
    if (kind == kSystem) return std::make_unique<SystemIni>();
    if (kind == kMemoryFiles) return std::make_unique<MemoryFilesIni>();
    return std::make_unique<FakeIni>();
}

class IniStoreContract : public ::testing::TestWithParam<WorldKind> {
  protected:
    IniWorld& world() { return *m_world; }
    // A fresh world, as for each recorded case.
    void Renew() {
        m_world.reset();
        m_world = MakeWorld(GetParam());
    }
    std::string Read(const char* section, const char* key, const char* defaultValue = "(none)",
                     std::size_t size = 4096) {
        std::vector<char> buffer(size + 1, '\x7F');
        const std::size_t length =
            world().Store().Read(section, key, defaultValue, buffer.data(), size, world().Path().c_str());
        EXPECT_EQ(buffer[size], '\x7F') << "nothing is written behind the buffer";
        return std::string(buffer.data(), length);
    }
    Result Write(const char* section, const char* key, const char* value) {
        return world().Store().Write(section, key, value, world().Path().c_str());
    }

  private:
    std::unique_ptr<IniWorld> m_world = MakeWorld(GetParam());
};

std::string WorldName(const ::testing::TestParamInfo<WorldKind>& test) {
    constexpr const char* kNames[] = {"System", "MemoryFiles", "Fake"};
    return kNames[test.param];
}

INSTANTIATE_TEST_SUITE_P(Stores, IniStoreContract, ::testing::Values(kSystem, kMemoryFiles, kFake),
                         WorldName);

TEST_P(IniStoreContract, CutsToTheBuffer) {
    world().Put("[s]\r\nk=value\r\n");
    struct Row {
        std::size_t size;
        const char* expected;
    };
    for (const Row& row :
         {Row{0, ""}, Row{1, ""}, Row{2, "v"}, Row{5, "valu"}, Row{6, "value"}, Row{7, "value"}}) {
        SCOPED_TRACE(row.size);
        EXPECT_EQ(Read("s", "k", "def", row.size), row.expected);
        EXPECT_EQ(Read("s", "none", "value", row.size), row.expected);
    }
}

TEST_P(IniStoreContract, ListsEndWithTwoZeros) {
    world().Put("[s]\nab=1\ncd=2\n");
    struct Row {
        std::size_t size;
        std::string expected;  // all of the buffer
        std::size_t length;
    };
    const std::vector<Row> rows = {
        {0, "", 0},
        {1, std::string("\0", 1), 0},
        {2, std::string("\0\0", 2), 0},
        {3, std::string("a\0\0", 3), 1},
        {6, std::string("ab\0c\0\0", 6), 4},
        {7, std::string("ab\0cd\0\0", 7), 5},
        {8, std::string("ab\0cd\0\0\x7F", 8), 6},
        {9, std::string("ab\0cd\0\0\x7F\x7F", 9), 6},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.size);
        std::string buffer(row.size, '\x7F');
        EXPECT_EQ(world().Store().Read("s", nullptr, "def", buffer.data(), row.size, world().Path().c_str()),
                  row.length);
        EXPECT_EQ(buffer, row.expected);
    }
    EXPECT_EQ(Read(nullptr, nullptr), std::string("s\0", 2));
    EXPECT_EQ(Read(nullptr, "ab"), std::string("s\0", 2));
    EXPECT_EQ(Read("none", nullptr), "(none)") << "an empty list is the default";
}

TEST_P(IniStoreContract, Defaults) {
    struct Row {
        const char* label;
        const char* given;
        const char* expected;
    };
    for (const Row& row : {Row{"null", nullptr, ""}, Row{"spaces behind it", "a b  ", "a b"},
                           Row{"spaces before it", "  a", "  a"}, Row{"quotes", "\"a\"", "a"}}) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Read("s", "k", row.given), row.expected);
    }
}

TEST_P(IniStoreContract, WritesAreSeenAtOnce) {
    EXPECT_EQ(Read("A", "k"), "(none)");
    EXPECT_TRUE(Write("A", "k", "1").ok());
    EXPECT_EQ(Read("A", "k"), "1");
    EXPECT_TRUE(Write("A", "k", "2").ok());
    EXPECT_EQ(Read("A", "k"), "2");
    world().Put("[A]\nk=3\n");
    EXPECT_EQ(Read("A", "k"), "3");
    EXPECT_TRUE(Write("A", "k", nullptr).ok());
    EXPECT_EQ(Read("A", "k"), "(none)");
}

TEST_P(IniStoreContract, RefusesWhatCouldNotBeReadBack) {
    struct Row {
        const char* label;
        const char* section;
        const char* key;
        const char* value;
    };
    const std::vector<Row> rows = {
        {"no section", nullptr, "k", "v"},        {"empty section", "", "k", "v"},
        {"section over lines", "a\nb", "k", "v"}, {"empty key", "s", "", "v"},
        {"key with =", "s", "a=b", "v"},          {"key like a comment", "s", ";k", "v"},
        {"key like a section", "s", "[k]", "v"},  {"value over lines", "s", "k", "v\r\nadmin=1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        world().Put("[s]\nk=1\n");
        const Result result = Write(row.section, row.key, row.value);
        EXPECT_EQ(result.code, ErrorCode::kInvalidArgument);
        EXPECT_NE(result.text, "");
        EXPECT_EQ(world().Get(), "[s]\nk=1\n");
    }
    EXPECT_FALSE(world().Store().Write("s", "k", "v", nullptr).ok());
    EXPECT_FALSE(world().Store().Write("s", "k", "v", "").ok());
}

TEST_P(IniStoreContract, RemovingFromAMissingFileMakesAnEmptyOne) {
    EXPECT_TRUE(Write("A", "k", nullptr).ok());
    EXPECT_EQ(world().Get(), "");
    Renew();
    EXPECT_TRUE(Write("A", nullptr, nullptr).ok());
    EXPECT_EQ(world().Get(), "");
}

// --- the recorded answers ---

const char* TextOrNull(const json& value, std::string& keep) {
    if (value.is_null()) return nullptr;
    keep = BytesOf(value);
    return keep.c_str();
}

// Cases of which the other system's answer is not known, and where ours differs.
bool IsOurOwnChoice(const json& row) {
    const std::string note = row["note"];
    for (const char* ours :
         {"asking for a commented key by its text", "line starting with '='",
          "line starting with '=', value of the empty key", "key without '=' before the same key with '='",
          "key before any section, empty section name", "case folding of a high byte", "key list, size 2",
          "default of blanks only", "duplicate sections: section list",
          "comment at the end of the section, new key", "line without '=' of the same name",
          "value with leading blanks", "value of blanks only", "section with outer blanks",
          "key with outer blanks", "value with a line break", "no final newline, replace"})
        if (note == ours) return true;
    return false;
}

TEST_P(IniStoreContract, ReadsAsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "ini_read.json");
    int compared = 0;
    for (const json& row : vectors["cases"]) {
        SCOPED_TRACE(row["note"].get<std::string>());
        const bool documented = row.contains("documented_length");
        if (row.value("quirk", false) && !documented) continue;
        if (row.value("unsure", false) && IsOurOwnChoice(row)) continue;
        Renew();
        if (!row["file"].is_null()) world().Put(BytesOf(row["file"]));
        std::string section, key, given;
        const std::size_t size = row["size"];
        std::string buffer(size + 2, '\x7F');
        const std::size_t length = world().Store().Read(
            TextOrNull(row["section"], section), TextOrNull(row["key"], key),
            TextOrNull(row["default"], given), buffer.data(), size, world().Path().c_str());
        const std::string raw = BytesOf(row[documented ? "documented_raw" : "raw"]);
        EXPECT_EQ(length, row[documented ? "documented_length" : "length"].get<std::size_t>());
        EXPECT_EQ(buffer.substr(0, raw.size()), raw);
        ++compared;
    }
    EXPECT_GE(compared, 120);
}

TEST_P(IniStoreContract, WritesAsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "ini_write.json");
    int compared = 0;
    for (const json& row : vectors["cases"]) {
        SCOPED_TRACE(row["note"].get<std::string>());
        const bool documented = row.contains("documented_after");
        if (row.value("quirk", false) && !documented) continue;
        if (row.value("unsure", false) && IsOurOwnChoice(row)) continue;
        Renew();
        if (!row["before"].is_null()) world().Put(BytesOf(row["before"]));
        for (const json& call : row["calls"]) {
            std::string section, key, value;
            const bool ok = Write(TextOrNull(call["section"], section), TextOrNull(call["key"], key),
                                  TextOrNull(call["value"], value))
                                .ok();
            EXPECT_EQ(ok, call["result"].get<bool>());
        }
        const json& after = row[documented ? "documented_after" : "after"];
        EXPECT_EQ(world().Get(), after.is_null() ? std::nullopt : std::optional(BytesOf(after)));
        ++compared;
    }
    EXPECT_GE(compared, 55);
}

TEST(IniStore, SlotFallsBackToTheBackend) {
    FakeIniStore fake;
    {
        const ScopedService<IniStore> installed(&SetIniStore, fake);
        EXPECT_EQ(&CurrentIniStore(), &fake);
    }
    EXPECT_EQ(&CurrentIniStore(), &BackendIniStore());
}

TEST(IniStore, FakeFaults) {
    FakeIniStore fake;
    fake.SetText("f", "[s]\nk=1\n");
    fake.FailWrites(true);
    EXPECT_FALSE(fake.Write("s", "k", "2", "f").ok());
    EXPECT_EQ(*fake.Text("f"), "[s]\nk=1\n");
}

// A folder in memory shows how often the file is really read.
TEST(IniStore, AnUnchangedFileIsReadOnce) {
    FakeFiles files;
    const ScopedService<Files> installed(&SetFiles, files);
    files.Add("/f.ini", FakeFiles::Kind::kFile, "[s]\nk=1\n");
    char buffer[10];
    EXPECT_EQ(BackendIniStore().Read("s", "k", "", buffer, sizeof buffer, "/f.ini"), 1u);
    files.FailReads(true);
    EXPECT_EQ(BackendIniStore().Read("s", "k", "", buffer, sizeof buffer, "/f.ini"), 1u) << "kept";
    files.Add("/f.ini", FakeFiles::Kind::kFile, "[s]\nk=22\n");
    EXPECT_EQ(BackendIniStore().Read("s", "k", "", buffer, sizeof buffer, "/f.ini"), 0u)
        << "read anew, in vain";
    files.FailReads(false);
    EXPECT_EQ(BackendIniStore().Read("s", "k", "", buffer, sizeof buffer, "/f.ini"), 2u);
    for (int i = 0; i < 10; ++i) {
        const std::string path = "/f" + std::to_string(i);
        files.Add(path, FakeFiles::Kind::kFile, "[s]\nk=" + std::to_string(i) + "\n");
        EXPECT_EQ(BackendIniStore().Read("s", "k", "", buffer, sizeof buffer, path.c_str()), 1u);
        EXPECT_EQ(buffer[0], static_cast<char>('0' + i));
    }
}

}  // namespace
}  // namespace brindle
