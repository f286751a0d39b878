// Saving when the system fails: at every system call of every way to save, with every fault, the file is the old or
// the new one, whole, and the answer says which; nothing else is left in the folder, save for at most one temporary
// file where the process itself ended.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "brindle/library/host_path_access.h"
#include "brindle/platform/files.h"
#include "brindle/platform/ini_store.h"
#include "brindle/skin/ov_skin.h"
#include "brindle/variables/variable_manager.h"
#include "brindle/xml/xml_writer.h"
#include "testing/failing_system_calls.h"

namespace {

using namespace brindle::testing;
namespace fs = std::filesystem;

constexpr const char* kOldIni = "[section]\nkey=old\nother=kept\n";
constexpr int kErrors[] = {EIO, ENOSPC, EACCES, EINTR};

// A long text, so that half of a write is a part of it.
std::string Long(const char* word) {
    std::string text;
    for (int i = 0; i < 200; ++i) text += word;
    return text;
}

bool SaveXml(const std::string& path) {
    XMLWriter writer;
    if (!writer.Initialize()) return false;
    writer.EnterSection("Document");
    writer.WriteData(Long("new ").c_str());
    return writer.Save(path.c_str());
}
bool SaveIni(const std::string& path) {
    return brindle::CurrentIniStore().Write("section", "key", Long("new").c_str(), path.c_str()).ok();
}
bool SaveVariables(const std::string& path) {
    VariableManager scope;
    scope.addVariable(Variable("name", Long("new ")));
    return scope.save(path);
}
bool SaveSkin(const std::string& path) {
    OVSkin skin;
    skin.SetExactProp("default", "button", "caption", CStringA(Long("new ")));
    return brindle::WriteHostFile(path, skin.GetXML().view()).ok();
}

struct Way {
    const char* label;
    bool (*save)(const std::string& path);
    std::string old;
};

std::vector<Way> Ways() {
    return {{"an XML document", SaveXml, Long("old")},
            {"an INI value", SaveIni, kOldIni},
            {"variables", SaveVariables, Long("old")},
            {"a skin", SaveSkin, Long("old")}};
}

std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int OpenFiles() {
    const fs::directory_iterator all("/proc/self/fd");
    return static_cast<int>(std::distance(begin(all), end(all)));
}

enum class Start { kExisting, kMissing, kBehindLink };

class SaveFaultsTest : public ::testing::Test {
  protected:
    SaveFaultsTest() { fs::create_directories(m_folder / "behind"); }
    ~SaveFaultsTest() override { fs::remove_all(m_folder); }

    std::string Path() const { return (m_folder / "file").string(); }

    // The folder as it is before a save.
    void Prepare(Start start, const std::string& old) {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder / "behind");
        m_target = start == Start::kBehindLink ? m_folder / "behind" / "target" : m_folder / "file";
        if (start == Start::kMissing) return;
        std::ofstream(m_target, std::ios::binary) << old;
        EXPECT_EQ(chmod(m_target.c_str(), 0640), 0);
        if (start == Start::kBehindLink) fs::create_symlink(m_target, m_folder / "file");
    }

    // Everything in the folder but the file itself.
    std::set<std::string> Others() const {
        std::set<std::string> others;
        for (const fs::path& folder : {m_folder, m_folder / "behind"})
            for (const auto& entry : fs::directory_iterator(folder))
                if (entry.path() != m_target && entry.path() != m_folder / "file" && !entry.is_directory())
                    others.insert(entry.path().filename().string());
        return others;
    }

    // What must hold after any fault. An empty `expected` stands for either.
    void ExpectOldOrNew(Start start, const std::string& old, const std::string& fresh) {
        const bool exists = fs::exists(m_target);
        EXPECT_TRUE(exists || start == Start::kMissing) << "the file is gone";
        const std::string bytes = exists ? Bytes(m_target) : "";
        EXPECT_TRUE(bytes == fresh || (exists ? start != Start::kMissing && bytes == old : true))
            << bytes.size() << " bytes: " << bytes.substr(0, 100);
        if (start == Start::kMissing) return;
        struct stat status {};
        EXPECT_EQ(stat(m_target.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0640u) << "its permissions";
        EXPECT_EQ(fs::is_symlink(m_folder / "file"), start == Start::kBehindLink);
    }

    // The file that a save without a fault makes.
    std::string Fresh(const Way& way, Start start) {
        Prepare(start, way.old);
        EXPECT_TRUE(way.save(Path()));
        return Bytes(m_target);
    }

    // One save with a fault in this process. False when the save makes fewer calls.
    bool SaveWith(const Way& way, Start start, const std::string& fresh, std::uint64_t n, SystemFault fault,
                  int error) {
        Prepare(start, way.old);
        const int open = OpenFiles();
        bool saved = false;
        {
            const FailingSystemCalls failing(n, fault, error);
            saved = way.save(Path());
        }
        SCOPED_TRACE(std::string(FailingSystemCalls::Call()) + ", error " + std::to_string(error));
        ExpectOldOrNew(start, way.old, fresh);
        EXPECT_EQ(saved, fs::exists(m_target) && Bytes(m_target) == fresh) << "the answer";
        EXPECT_TRUE(Others().empty()) << *Others().begin() << " is left behind";
        EXPECT_EQ(OpenFiles(), open) << "a file is left open";
        EXPECT_TRUE(saved || FailingSystemCalls::Happened());
        return FailingSystemCalls::Happened();
    }

    // One save in a process of its own, which the fault ends. False when the save makes fewer calls.
    bool EndIn(const Way& way, Start start, const std::string& fresh, std::uint64_t n, SystemFault fault) {
        Prepare(start, way.old);
        const pid_t child = fork();
        if (child == 0) {
            const FailingSystemCalls failing(n, fault);
            _exit(way.save(Path()) ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == kFaultExit))
            << status;
        ExpectOldOrNew(start, way.old, fresh);
        EXPECT_LE(Others().size(), 1u);
        for (const std::string& other : Others())
            EXPECT_TRUE(other.starts_with(".brindle-") && other.ends_with(".tmp")) << other;
        EXPECT_TRUE(way.save(Path())) << "the next save is not hindered";
        EXPECT_EQ(Bytes(m_target), fresh);
        return WEXITSTATUS(status) == kFaultExit;
    }

    // For every n until the save makes fewer calls than that; the number of calls it makes.
    static std::uint64_t ForEveryCall(const std::function<bool(std::uint64_t)>& attempt) {
        constexpr std::uint64_t kMost = 200;
        for (std::uint64_t n = 1; n < kMost; ++n) {
            SCOPED_TRACE("call " + std::to_string(n));
            if (!attempt(n) || HasFailure()) return n - 1;
        }
        ADD_FAILURE() << "no end of calls";
        return kMost;
    }

    void Sweep(const std::function<void(const Way&, Start, const std::string&)>& test) {
        const std::pair<const char*, Start> starts[] = {{"existing", Start::kExisting},
                                                        {"missing", Start::kMissing},
                                                        {"behind a link", Start::kBehindLink}};
        for (const Way& way : Ways()) {
            for (const auto& [label, start] : starts) {
                SCOPED_TRACE(std::string(way.label) + ", " + label);
                const std::string fresh = Fresh(way, start);
                EXPECT_GT(fresh.size(), 500u);
                test(way, start, fresh);
                if (HasFailure()) return;
            }
        }
    }

    brindle::Result m_result;

  private:
    fs::path m_folder = fs::path(::testing::TempDir()) / ("save_faults_" + std::to_string(getpid()));
    fs::path m_target;
};

TEST_F(SaveFaultsTest, AnErrorOfAnyCall) {
    Sweep([this](const Way& way, Start start, const std::string& fresh) {
        for (const int error : kErrors) {
            const std::uint64_t calls = ForEveryCall(
                [&](std::uint64_t n) { return SaveWith(way, start, fresh, n, SystemFault::kError, error); });
            EXPECT_GE(calls, 7u) << "open, write, fsync, close, rename, open and fsync of the folder";
        }
    });
}

TEST_F(SaveFaultsTest, WritesThatTakeOnlyAPart) {
    Sweep([this](const Way& way, Start start, const std::string& fresh) {
        EXPECT_TRUE(SaveWith(way, start, fresh, 1, SystemFault::kShortWrite, 0));
        EXPECT_EQ(Bytes(Path()), fresh) << "the rest is written too";
    });
}

TEST_F(SaveFaultsTest, ADiskThatFillsUp) {
    Sweep([this](const Way& way, Start start, const std::string& fresh) {
        EXPECT_TRUE(SaveWith(way, start, fresh, 1, SystemFault::kFullDisk, ENOSPC));
        EXPECT_NE(Bytes(Path()), fresh);
    });
}

TEST_F(SaveFaultsTest, TheEndOfTheProcessInFrontOfAnyCallAndInAWrite) {
    Sweep([this](const Way& way, Start start, const std::string& fresh) {
        const std::uint64_t calls =
            ForEveryCall([&](std::uint64_t n) { return EndIn(way, start, fresh, n, SystemFault::kExit); });
        EXPECT_GE(calls, 7u);
        EXPECT_TRUE(EndIn(way, start, fresh, 1, SystemFault::kExitInWrite));
    });
}

// Lines added to a log: all of a line or nothing of it.
TEST_F(SaveFaultsTest, AppendedLines) {
    const std::string line = Long("line ");
    const Way append{"append",
                     [](const std::string& path) {
                         return brindle::CurrentFiles().Append(path, Long("line "), 1'000'000).ok();
                     },
                     "old\n"};
    for (const int error : kErrors)
        ForEveryCall([&](std::uint64_t n) {
            Prepare(Start::kExisting, append.old);
            {
                const FailingSystemCalls failing(n, SystemFault::kError, error);
                append.save(Path());
            }
            const std::string bytes = Bytes(Path());
            EXPECT_TRUE(bytes == append.old || bytes == append.old + line) << FailingSystemCalls::Call();
            return FailingSystemCalls::Happened();
        });
    Prepare(Start::kExisting, append.old);
    const FailingSystemCalls failing(1, SystemFault::kFullDisk);
    EXPECT_FALSE(append.save(Path()));
    EXPECT_EQ(Bytes(Path()), append.old);
}

// The first call of that name fails; false when the work makes none.
bool FailsAt(const char* call, int error, const std::function<void()>& work) {
    for (std::uint64_t n = 1; n < 20; ++n) {
        const FailingSystemCalls failing(n, SystemFault::kError, error);
        work();
        if (!FailingSystemCalls::Happened()) return false;
        if (std::string(FailingSystemCalls::Call()) == call) return true;
    }
    return false;
}

TEST_F(SaveFaultsTest, ErrorsOfTheSystemHaveTheirWords) {
    using brindle::ErrorCode;
    struct Row {
        int error;
        ErrorCode code;
        const char* words;
    };
    const Row rows[] = {{ENOENT, ErrorCode::kNotFound, "no such file or folder"},
                        {ENOTDIR, ErrorCode::kNotFound, "no such file or folder"},
                        {EACCES, ErrorCode::kAccess, "access denied"},
                        {EPERM, ErrorCode::kAccess, "access denied"},
                        {EROFS, ErrorCode::kAccess, "read-only file system"},
                        {EISDIR, ErrorCode::kAccess, "is a folder"},
                        {ELOOP, ErrorCode::kFailed, "too many links in the path"},
                        {ENAMETOOLONG, ErrorCode::kInvalidArgument, "name too long"},
                        {ENOSPC, ErrorCode::kFailed, "disk full"},
                        {EDQUOT, ErrorCode::kFailed, "disk full"},
                        {EFBIG, ErrorCode::kLimit, "file too large"},
                        {EIO, ErrorCode::kFailed, "input/output error"},
                        {ENODEV, ErrorCode::kFailed, "system error 19"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.words);
        Prepare(Start::kExisting, "old");
        brindle::Result result;
        const auto append = [&] { result = brindle::CurrentFiles().Append(Path(), "line", 1'000); };
        ASSERT_TRUE(FailsAt("open", row.error, append));
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.text, Path() + ": " + row.words);
    }
}

// A log on a file system without locks is written all the same.
TEST_F(SaveFaultsTest, AppendsWhereThereAreNoLocks) {
    const auto append = [this] { m_result = brindle::CurrentFiles().Append(Path(), "line\n", 1'000); };
    for (const int error : {ENOLCK, ENOTSUP, EINVAL, EBADF}) {
        SCOPED_TRACE(error);
        Prepare(Start::kExisting, "old\n");
        ASSERT_TRUE(FailsAt("flock", error, append));
        EXPECT_TRUE(m_result.ok()) << m_result.text;
        EXPECT_TRUE(Bytes(Path()).ends_with("line\n"));
    }
    Prepare(Start::kExisting, "old\n");
    ASSERT_TRUE(FailsAt("flock", EIO, append));
    EXPECT_EQ(m_result.text, Path() + ": input/output error");
}

}  // namespace
