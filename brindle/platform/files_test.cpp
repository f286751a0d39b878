// The files contract, over the system's files in a folder of their own and over the fake ones.
#include "brindle/platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "brindle/platform/backend.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

constexpr std::uint64_t kMegabyte = 1u << 20;

// A service under test and a way to put things into its world, below Root().
class World {
  public:
    virtual ~World() = default;
    virtual Files& Service() = 0;
    virtual std::string Root() = 0;
    virtual void AddFile(const std::string& name, const std::string& bytes) = 0;
    virtual void AddFolder(const std::string& name) = 0;
    virtual void AddPipe(const std::string& name) = 0;
};

class FakeWorld final : public World {
  public:
    FakeWorld() { AddFolder(""); }
    Files& Service() override { return m_files; }
    std::string Root() override { return "/root/w"; }
    void AddFile(const std::string& name, const std::string& bytes) override {
        m_files.Add(Root() + "/" + name, FakeFiles::Kind::kFile, bytes);
    }
    void AddFolder(const std::string& name) override {
        m_files.Add(Root() + "/" + name, FakeFiles::Kind::kFolder);
    }
    void AddPipe(const std::string& name) override {
        m_files.Add(Root() + "/" + name, FakeFiles::Kind::kPipe);
    }

  private:
    FakeFiles m_files;
};

class SystemWorld final : public World {
  public:
    SystemWorld() : m_before(std::filesystem::current_path()) {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_files_XXXXXX";
        m_root = mkdtemp(pattern.data());
    }
    ~SystemWorld() override {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_root);
        for (char letter = 'a'; letter <= 'z'; ++letter) BackendFiles().MapDrive(letter, "");
    }
    Files& Service() override { return BackendFiles(); }
    std::string Root() override { return m_root; }
    void AddFile(const std::string& name, const std::string& bytes) override {
        std::filesystem::create_directories(std::filesystem::path(m_root + "/" + name).parent_path());
        std::ofstream(m_root + "/" + name, std::ios::binary) << bytes;
    }
    void AddFolder(const std::string& name) override {
        std::filesystem::create_directories(m_root + "/" + name);
    }
    void AddPipe(const std::string& name) override {
        ASSERT_EQ(mkfifo((m_root + "/" + name).c_str(), 0600), 0);
    }

  private:
    std::filesystem::path m_before;
    std::string m_root;
};

std::vector<std::string>& Warnings() {
    static std::vector<std::string> warnings;
    return warnings;
}

class FilesContract : public ::testing::TestWithParam<bool> {
  protected:
    FilesContract() {
        if (GetParam()) {
            m_world = std::make_unique<SystemWorld>();
        } else {
            m_world = std::make_unique<FakeWorld>();
        }
        Warnings().clear();
        SetWarningSink([](const char* text) { Warnings().emplace_back(text); });
    }
    ~FilesContract() override { SetWarningSink(nullptr); }

    Files& files() { return m_world->Service(); }
    World& world() { return *m_world; }
    std::string In(const std::string& name) { return m_world->Root() + "/" + name; }
    // The bytes of a file, or why there are none.
    std::string Read(const std::string& hostPath) {
        std::string bytes;
        const Result result = files().ReadWhole(hostPath, kMegabyte, bytes);
        return result.ok() ? bytes : "(" + result.text + ")";
    }

  private:
    std::unique_ptr<World> m_world;
};

INSTANTIATE_TEST_SUITE_P(Services, FilesContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(FilesContract, ReadsWholeFilesWithinTheLimit) {
    world().AddFile("a", std::string("1\0\r\n2", 5));
    struct Row {
        const char* label;
        std::uint64_t limit;
        bool ok;
    };
    const Row rows[] = {{"far below", kMegabyte, true},
                        {"exactly", 5, true},
                        {"one too many", 4, false},
                        {"nothing allowed", 0, false},
                        {"no limit", ~std::uint64_t{0}, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = "before";
        const Result result = files().ReadWhole(In("a"), row.limit, bytes);
        EXPECT_EQ(result.ok(), row.ok);
        EXPECT_EQ(bytes, row.ok ? std::string("1\0\r\n2", 5) : "before");
        if (!row.ok) {
            EXPECT_EQ(result.code, ErrorCode::kLimit);
        }
    }
}

TEST_P(FilesContract, ReadFailuresSayWhy) {
    world().AddFolder("folder");
    world().AddPipe("pipe");
    world().AddFile("file", "x");
    struct Row {
        const char* label;
        std::string path;
        ErrorCode code;
    };
    const Row rows[] = {
        {"missing", In("missing"), ErrorCode::kNotFound},
        {"in a missing folder", In("no/file"), ErrorCode::kNotFound},
        {"below a file", In("file/x"), ErrorCode::kNotFound},
        {"a folder", In("folder"), ErrorCode::kAccess},
        {"a pipe, without waiting", In("pipe"), ErrorCode::kAccess},
        {"empty path", "", ErrorCode::kInvalidArgument},
        {"zero byte", In(std::string("fi\0le", 5)), ErrorCode::kInvalidArgument},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = "before";
        const Result result = files().ReadWhole(row.path, kMegabyte, bytes);
        EXPECT_EQ(result.code, row.code);
        EXPECT_NE(result.text, "");
        EXPECT_EQ(bytes, "before");
    }
}

TEST_P(FilesContract, WritesAndReplaces) {
    EXPECT_TRUE(files().WriteWhole(In("new"), "one").ok());
    EXPECT_EQ(Read(In("new")), "one");
    EXPECT_TRUE(files().WriteWhole(In("new"), std::string("t\0o", 3)).ok());
    EXPECT_EQ(Read(In("new")), std::string("t\0o", 3));
    EXPECT_TRUE(files().WriteWhole(In("new"), "").ok());
    EXPECT_EQ(Read(In("new")), "");
    const std::string large(300'000, 'L');
    EXPECT_TRUE(files().WriteWhole(In("new"), large).ok());
    EXPECT_TRUE(Read(In("new")) == large);
}

TEST_P(FilesContract, WriteFailuresSayWhy) {
    world().AddFolder("folder");
    world().AddPipe("pipe");
    world().AddFile("file", "x");
    struct Row {
        const char* label;
        std::string path;
        ErrorCode code;
    };
    const Row rows[] = {
        {"in a missing folder", In("no/file"), ErrorCode::kNotFound},
        {"below a file", In("file/x"), ErrorCode::kNotFound},
        {"a folder", In("folder"), ErrorCode::kAccess},
        {"a pipe", In("pipe"), ErrorCode::kAccess},
        {"empty path", "", ErrorCode::kInvalidArgument},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(files().WriteWhole(row.path, "y").code, row.code);
    }
    EXPECT_EQ(Read(In("file")), "x");
}

TEST_P(FilesContract, AppendsAndEmptiesWhatIsTooLong) {
    struct Row {
        const char* label;
        std::uint64_t emptyBeyond;
        const char* bytes;
        const char* expected;
    };
    const Row rows[] = {{"makes the file", 100, "one", "one"},
                        {"adds", 100, "+two", "one+two"},
                        {"exactly as long as allowed", 7, "+3", "one+two+3"},
                        {"too long: emptied first", 8, "4", "4"},
                        {"nothing to add", 0, "", ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_TRUE(files().Append(In("log"), row.bytes, row.emptyBeyond).ok());
        EXPECT_EQ(Read(In("log")), row.expected);
    }
    world().AddFolder("folder");
    world().AddPipe("pipe");
    EXPECT_EQ(files().Append(In("folder"), "x", 1).code, ErrorCode::kAccess);
    EXPECT_EQ(files().Append(In("pipe"), "x", 1).code, ErrorCode::kAccess);
    EXPECT_EQ(files().Append(In("none/x"), "x", 1).code, ErrorCode::kNotFound);
    EXPECT_EQ(files().Append("", "x", 1).code, ErrorCode::kInvalidArgument);
    world().AddFile("Site/Old.Log", "old");
    EXPECT_TRUE(files().Append(In("site\\old.LOG"), "+new", 100).ok());
    EXPECT_EQ(Read(In("Site/Old.Log")), "old+new") << "the file reading would find";
}

TEST_P(FilesContract, UpdatesAFileInPlaceOfItself) {
    world().AddFile("Site/a.ini", "old");
    std::string seen;
    bool existed = false;
    const auto edit = [&](bool write, const char* text) {
        return [&, write, text](std::string& bytes, bool exists) {
            seen = bytes;
            existed = exists;
            bytes = text;
            return write;
        };
    };
    EXPECT_TRUE(files().Update(In("Site/a.ini"), 10, edit(true, "new")).ok());
    EXPECT_EQ(seen, "old");
    EXPECT_TRUE(existed);
    EXPECT_EQ(Read(In("Site/a.ini")), "new");
    EXPECT_TRUE(files().Update(In("SITE\\A.INI"), 10, edit(true, "same file")).ok());
    EXPECT_EQ(Read(In("Site/a.ini")), "same file");
    EXPECT_TRUE(files().Update(In("Site/a.ini"), 10, edit(false, "unwritten")).ok());
    EXPECT_EQ(Read(In("Site/a.ini")), "same file");
    EXPECT_EQ(files().Update(In("Site/a.ini"), 8, edit(true, "x")).code, ErrorCode::kLimit);
    EXPECT_TRUE(files().Update(In("site/B.ini"), 10, edit(false, "x")).ok());
    EXPECT_FALSE(existed);
    EXPECT_FALSE(files().Exists(In("Site/B.ini")));
    EXPECT_TRUE(files().Update(In("site/B.ini"), 10, edit(true, "made")).ok());
    EXPECT_EQ(Read(In("Site/B.ini")), "made");
    EXPECT_EQ(files().Update(In("none/x"), 10, edit(true, "x")).code, ErrorCode::kNotFound);
    EXPECT_EQ(files().Update(In("Site"), 10, edit(true, "x")).code, ErrorCode::kAccess);
    EXPECT_EQ(files().Update("", 10, edit(true, "x")).code, ErrorCode::kInvalidArgument);
}

TEST_P(FilesContract, StampsChangeWithTheContent) {
    world().AddFile("a", "one");
    FileStamp before;
    FileStamp after;
    ASSERT_TRUE(files().Stamp(In("a"), before));
    ASSERT_TRUE(files().Stamp(In("A"), after));
    EXPECT_EQ(before.marks, after.marks);
    EXPECT_EQ(before.SameContent(after), before.settled);
    ASSERT_TRUE(files().WriteWhole(In("a"), "two").ok());
    ASSERT_TRUE(files().Stamp(In("a"), after));
    EXPECT_FALSE(before.SameContent(after));
    const FileStamp kept = after;
    EXPECT_FALSE(files().Stamp(In("missing"), after));
    EXPECT_FALSE(files().Stamp(In(""), after));
    EXPECT_FALSE(files().Stamp("", after));
    EXPECT_EQ(after.marks, kept.marks);
}

TEST_P(FilesContract, TellsFoldersFromFiles) {
    world().AddFile("Folder/File", "x");
    EXPECT_TRUE(files().IsFolder(In("folder")));
    EXPECT_TRUE(files().IsFolder(In("folder\\")));
    EXPECT_FALSE(files().IsFolder(In("Folder/File")));
    EXPECT_FALSE(files().IsFolder(In("none")));
    EXPECT_FALSE(files().IsFolder(""));
}

TEST_P(FilesContract, ExistsForFilesAndFolders) {
    world().AddFile("Folder/File", "x");
    EXPECT_TRUE(files().Exists(In("Folder")));
    EXPECT_TRUE(files().Exists(In("Folder/File")));
    EXPECT_TRUE(files().Exists(In("folder\\FILE")));
    EXPECT_FALSE(files().Exists(In("Folder/Other")));
    EXPECT_FALSE(files().Exists(""));
}

// Looking for its folders one after the other would take hours.
TEST_P(FilesContract, APathLongerThanTheSystemTakesDoesNotExist) {
    std::string path = "none";
    for (int i = 0; i < 500'000; ++i) path += "/X";
    EXPECT_FALSE(files().Exists(In(path)));
    EXPECT_FALSE(files().IsFolder(In(path)));
    EXPECT_FALSE(files().WriteWhole(In(path), "new").ok());
}

TEST_P(FilesContract, LooksForOtherSpellings) {
    world().AddFile("Site/Maps/Main.xml", "main");
    world().AddFile(
        "Site/\xC3\x9C"
        "ber.txt",
        "ue");
    world().AddFile("Site/raw\xE9.txt", "raw");
    world().AddFile("Site/a\\b", "backslash");
    struct Row {
        const char* label;
        std::string path;
        std::string expected;
    };
    const Row rows[] = {
        {"as spelled", In("Site/Maps/Main.xml"), "main"},
        {"backslashes", In("Site\\Maps\\Main.xml"), "main"},
        {"other case", In("SITE\\maps\\main.XML"), "main"},
        {"dots and doubled separators", In("Site\\.\\Maps\\\\Main.xml"), "main"},
        {"dot dot", In("Site\\Maps\\..\\maps\\MAIN.xml"), "main"},
        {"code page bytes",
         In("Site/\xDC"
            "ber.txt"),
         "ue"},
        {"letter case of the code page",
         In("site/\xFC"
            "BER.TXT"),
         "ue"},
        {"a name that is not UTF-8", In("Site/raw\xE9.txt"), "raw"},
        {"an existing backslash is kept", In("Site/a\\b"), "backslash"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Read(row.path), row.expected);
    }
    EXPECT_TRUE(Warnings().empty());
}

TEST_P(FilesContract, ExactSpellingWinsElseTheSmallestWithAWarning) {
    world().AddFile("name", "lower");
    world().AddFile("Name", "mixed");
    world().AddFile("NAME", "upper");
    EXPECT_EQ(Read(In("name")), "lower");
    EXPECT_EQ(Read(In("Name")), "mixed");
    EXPECT_TRUE(Warnings().empty());
    EXPECT_EQ(Read(In("nAmE")), "upper");
    ASSERT_EQ(Warnings().size(), 1u);
    EXPECT_NE(Warnings()[0].find("\"nAmE\""), std::string::npos) << Warnings()[0];
    EXPECT_NE(Warnings()[0].find("\"NAME\""), std::string::npos) << Warnings()[0];
}

TEST_P(FilesContract, OfAFileToBeCreatedOnlyTheFolderIsLookedFor) {
    world().AddFile("Folder/Old.txt", "old");
    EXPECT_TRUE(files().WriteWhole(In("FOLDER\\old.TXT"), "new").ok());
    EXPECT_EQ(Read(In("Folder/Old.txt")), "old");
    EXPECT_EQ(Read(In("Folder/old.TXT")), "new");
    EXPECT_EQ(files().SystemPath(In("folder/X"), true), In("Folder/X"));
    EXPECT_EQ(files().SystemPath(In("folder/X"), false), In("Folder/X"));
    EXPECT_EQ(files().SystemPath(In("none\\X"), true), In("none/X"));
}

TEST_P(FilesContract, DrivesAreMapped) {
    world().AddFile("c/Site/a.txt", "on c");
    world().AddFile("secret", "outside");
    EXPECT_FALSE(files().MapDrive('1', "/x"));
    EXPECT_FALSE(files().MapDrive('\xE4', "/x"));
    EXPECT_TRUE(files().MapDrive('C', In("c")));
    struct Row {
        const char* label;
        const char* path;
        const char* expected;
    };
    const Row rows[] = {
        {"backslashes", "C:\\Site\\a.txt", "on c"},
        {"small letter, other case", "c:\\SITE\\A.TXT", "on c"},
        {"slashes", "C:/Site/a.txt", "on c"},
        {"without separator", "C:Site\\a.txt", "on c"},
        {"dot dot inside", "C:\\Site\\..\\Site\\a.txt", "on c"},
        {"dot dot stops at the drive", "C:\\..\\..\\Site\\a.txt", "on c"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Read(row.path), row.expected);
    }
    EXPECT_EQ(files().SystemPath("C:\\..\\secret", false), In("c/secret")) << "never outside the drive";
    EXPECT_EQ(files().SystemPath("C:\\", false), In("c/"));
    EXPECT_TRUE(files().MapDrive('c', ""));
    EXPECT_EQ(files().SystemPath("C:\\no such\\x", true), "/no such/x") << "the root by default";
    EXPECT_EQ(Read("D:" + In("secret")), "outside");
}

TEST_P(FilesContract, CurrentDirectory) {
    world().AddFile("c/Site/a.txt", "a");
    world().AddFile("secret", "outside");
    ASSERT_TRUE(files().SetCurrentDirectory(In("c\\SITE")).ok());
    EXPECT_EQ(files().CurrentDirectory(), In("c/Site"));
    EXPECT_EQ(Read("a.txt"), "a");
    EXPECT_EQ(Read(".\\A.TXT"), "a");
    EXPECT_EQ(Read("..\\..\\secret"), "outside");
    EXPECT_EQ(files().SetCurrentDirectory("nowhere").code, ErrorCode::kNotFound);
    EXPECT_EQ(files().SetCurrentDirectory("a.txt").code, ErrorCode::kNotFound);
    EXPECT_EQ(files().SetCurrentDirectory("").code, ErrorCode::kInvalidArgument);
    EXPECT_EQ(files().CurrentDirectory(), In("c/Site"));
}

TEST_P(FilesContract, AKeptDirectoryComesBack) {
    world().AddFolder("a");
    world().AddFolder("b");
    ASSERT_TRUE(files().SetCurrentDirectory(In("a")).ok());
    {
        const auto kept = files().KeepDirectory();
        EXPECT_EQ(files().CurrentDirectory(), In("a"));
        ASSERT_TRUE(files().SetCurrentDirectory(In("b")).ok());
        {
            const auto inner = files().KeepDirectory();
            ASSERT_TRUE(files().SetCurrentDirectory(In("a")).ok());
        }
        EXPECT_EQ(files().CurrentDirectory(), In("b"));
    }
    EXPECT_EQ(files().CurrentDirectory(), In("a"));
}

TEST_P(FilesContract, RelativePathsStayOnTheMappedDriveToo) {
    world().AddFile("c/Site/a.txt", "a");
    world().AddFile("c/top", "top");
    world().AddFile("secret", "outside");
    ASSERT_TRUE(files().MapDrive('C', In("c")));
    ASSERT_TRUE(files().SetCurrentDirectory("C:\\Site").ok());
    EXPECT_EQ(Read("..\\top"), "top");
    EXPECT_EQ(Read("..\\..\\..\\top"), "top");
    EXPECT_EQ(files().SystemPath("..\\..\\secret", false), In("c/secret"));
    files().MapDrive('C', "");
}

TEST(Files, SlotFallsBackToTheSystem) {
    FakeFiles fake;
    EXPECT_EQ(SetFiles(&fake), nullptr);
    EXPECT_EQ(&CurrentFiles(), &fake);
    EXPECT_EQ(SetFiles(nullptr), &fake);
    EXPECT_EQ(&CurrentFiles(), &BackendFiles());
}

TEST(Files, WarningSinkIsReplaced) {
    const WarningSink sink = [](const char*) {};
    EXPECT_EQ(SetWarningSink(sink), nullptr);
    EXPECT_EQ(SetWarningSink(nullptr), sink);
    Warn("nobody hears this");
}

TEST(Files, FakeFaults) {
    FakeFiles fake;
    fake.Add("/a", FakeFiles::Kind::kFile, "old");
    fake.SetDiskSpace(4);
    EXPECT_FALSE(fake.WriteWhole("/a", "12345").ok());
    std::string bytes;
    EXPECT_TRUE(fake.ReadWhole("/a", 10, bytes).ok());
    EXPECT_EQ(bytes, "old");
    EXPECT_TRUE(fake.WriteWhole("/a", "123").ok());
    EXPECT_FALSE(fake.WriteWhole("/a", "12").ok()) << "what was written is used up";
    EXPECT_FALSE(fake.Append("/a", "12", 100).ok());
    EXPECT_FALSE(fake.Update("/a", 100, [](std::string& text, bool) { return text += "12", true; }).ok());
    EXPECT_TRUE(fake.ReadWhole("/a", 10, bytes).ok());
    EXPECT_EQ(bytes, "123");
    fake.FailReads(true);
    EXPECT_FALSE(fake.ReadWhole("/a", 10, bytes).ok());
    fake.Remove("/a");
    EXPECT_FALSE(fake.Exists("/a"));
}

}  // namespace
}  // namespace brindle
