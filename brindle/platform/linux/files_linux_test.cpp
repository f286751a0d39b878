// What only the real files service has: permission bits, links, disks that fill up, files that change.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "brindle/platform/backend.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class LinuxFilesTest : public ::testing::Test {
  protected:
    LinuxFilesTest() {
        std::string pattern = fs::temp_directory_path() / "brindle_linux_XXXXXX";
        m_root = mkdtemp(pattern.data());
    }
    ~LinuxFilesTest() override { fs::remove_all(m_root); }

    std::string In(const std::string& name) const { return m_root + "/" + name; }
    void Put(const std::string& name, const std::string& bytes) const { std::ofstream(In(name)) << bytes; }
    std::string Get(const std::string& name) const {
        std::ifstream file(In(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }
    mode_t ModeOf(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(stat(In(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }
    std::size_t EntryCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_root), fs::directory_iterator()));
    }

    std::string m_root;
};

TEST_F(LinuxFilesTest, ReplacementKeepsTheMode) {
    for (const mode_t mode : {0600u, 0644u, 0640u, 0755u, 0666u}) {
        SCOPED_TRACE(mode);
        Put("file", "old");
        ASSERT_EQ(chmod(In("file").c_str(), mode), 0);
        ASSERT_TRUE(BackendFiles().WriteWhole(In("file"), "new").ok());
        EXPECT_EQ(ModeOf("file"), mode);
        EXPECT_EQ(Get("file"), "new");
    }
    EXPECT_EQ(EntryCount(), 1u) << "no temporary file stays";
}

TEST_F(LinuxFilesTest, NewFilesFollowTheUmask) {
    const mode_t before = umask(027);
    const bool written = BackendFiles().WriteWhole(In("file"), "x").ok();
    umask(before);
    ASSERT_TRUE(written);
    EXPECT_EQ(ModeOf("file"), 0640u);
}

TEST_F(LinuxFilesTest, WritesThroughSymbolicLinks) {
    fs::create_directory(In("real"));
    Put("real/file", "old");
    fs::create_symlink("real/file", In("link"));
    ASSERT_TRUE(BackendFiles().WriteWhole(In("link"), "new").ok());
    EXPECT_TRUE(fs::is_symlink(In("link")));
    EXPECT_EQ(Get("real/file"), "new");
}

TEST_F(LinuxFilesTest, ReplacesInOneStep) {
    Put("file", "old");
    fs::create_hard_link(In("file"), In("witness"));
    ASSERT_TRUE(BackendFiles().WriteWhole(In("file"), "new").ok());
    EXPECT_EQ(Get("witness"), "old") << "the old file was not written into";
    EXPECT_EQ(Get("file"), "new");
}

// In a child without root's rights, for which permission bits mean nothing.
TEST_F(LinuxFilesTest, ReadOnlyFilesAreNotReplaced) {
    Put("file", "old");
    ASSERT_EQ(chmod(In("file").c_str(), 0444), 0);
    ASSERT_EQ(chmod(m_root.c_str(), 0777), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(65534) != 0) _exit(3);
        _exit(BackendFiles().WriteWhole(In("file"), "new").code == ErrorCode::kAccess ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Get("file"), "old");
    EXPECT_EQ(EntryCount(), 1u);
}

// A child that may write no file longer than 1000 bytes: the write fails in the middle.
TEST_F(LinuxFilesTest, FullDiskLeavesTheOldFileAndNothingElse) {
    Put("file", "old");
    const std::string path = In("file");
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1000, 1000};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(3);
        _exit(BackendFiles().WriteWhole(path, std::string(5000, 'x')).ok() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Get("file"), "old");
    EXPECT_EQ(EntryCount(), 1u);
}

// The same for what is added to a log: half a line is worse than none.
TEST_F(LinuxFilesTest, FullDiskLeavesTheLogAsItWas) {
    Put("log", "old");
    const std::string path = In("log");
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1000, 1000};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(3);
        _exit(BackendFiles().Append(path, std::string(5000, 'x'), 100'000).ok() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Get("log"), "old");
}

TEST_F(LinuxFilesTest, ALogThatSomebodyKeepsLockedLosesNoLine) {
    Put("log", "old");
    const int holder = open(In("log").c_str(), O_RDONLY);
    ASSERT_EQ(flock(holder, LOCK_EX), 0);
    EXPECT_TRUE(BackendFiles().Append(In("log"), "+new", 1).ok());
    EXPECT_EQ(Get("log"), "old+new") << "added, though not emptied";
    close(holder);
    EXPECT_TRUE(BackendFiles().Append(In("log"), "last", 1).ok());
    EXPECT_EQ(Get("log"), "last");
}

// Every process adds its lines by reading, changing and writing the file.
TEST_F(LinuxFilesTest, UpdatesOfSeveralProcessesLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kUpdates = 25;
    const std::string path = In("shared");
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        bool ok = true;
        for (int i = 0; i < kUpdates; ++i)
            ok = BackendFiles()
                     .Update(path, 1u << 20,
                             [](std::string& text, bool) {
                                 text += '.';
                                 return true;
                             })
                     .ok() &&
                 ok;
        _exit(ok ? 0 : 1);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Get("shared").size(), std::size_t{kProcesses * kUpdates});
    EXPECT_EQ(EntryCount(), 1u) << "neither a lock nor a temporary file stays";
}

TEST_F(LinuxFilesTest, AFreshFileIsNotSettled) {
    Put("file", "x");
    FileStamp stamp;
    ASSERT_TRUE(BackendFiles().Stamp(In("file"), stamp));
    EXPECT_FALSE(stamp.settled);
    ASSERT_TRUE(BackendFiles().Stamp("/proc/self/exe", stamp));
}

TEST_F(LinuxFilesTest, DevicesAreRefused) {
    std::string bytes;
    for (const char* path : {"/dev/zero", "/dev/full", "/dev/null"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(BackendFiles().ReadWhole(path, 100, bytes).code, ErrorCode::kAccess);
        EXPECT_EQ(BackendFiles().WriteWhole(path, "x").code, ErrorCode::kAccess);
    }
}

// Files of the process folder say they hold nothing, and yet they do.
TEST_F(LinuxFilesTest, LimitHoldsForFilesOfUnknownSize) {
    std::string bytes;
    EXPECT_TRUE(BackendFiles().ReadWhole("/proc/self/status", 1u << 20, bytes).ok());
    EXPECT_GT(bytes.size(), 100u);
    EXPECT_EQ(BackendFiles().ReadWhole("/proc/self/status", 10, bytes).code, ErrorCode::kLimit);
}

TEST_F(LinuxFilesTest, SystemErrorsAreMapped) {
    std::string bytes;
    EXPECT_EQ(BackendFiles().ReadWhole(In(std::string(300, 'n')), 1, bytes).code,
              ErrorCode::kInvalidArgument);
    fs::create_symlink("loop", In("loop"));
    EXPECT_EQ(BackendFiles().ReadWhole(In("loop"), 1, bytes).code, ErrorCode::kFailed);
}

TEST_F(LinuxFilesTest, CurrentDirectoryThatIsGone) {
    const fs::path before = fs::current_path();
    fs::create_directory(In("gone"));
    fs::current_path(In("gone"));
    fs::remove(In("gone"));
    EXPECT_EQ(BackendFiles().CurrentDirectory(), "");
    fs::current_path(before);
    EXPECT_EQ(BackendFiles().CurrentDirectory(), before.string());
}

TEST_F(LinuxFilesTest, AKeptDirectoryComesBackWhateverItsName) {
    const fs::path before = fs::current_path();
    const std::string name = In("\xE4\xB8\xAD");
    fs::create_directory(name);
    fs::current_path(name);
    {
        const auto kept = BackendFiles().KeepDirectory();
        ASSERT_TRUE(BackendFiles().SetCurrentDirectory("/").ok());
        fs::rename(name, In("renamed"));
    }
    EXPECT_EQ(fs::current_path(), In("renamed"));
    fs::current_path(before);
}

TEST_F(LinuxFilesTest, NamesWithoutCodePageByteAreLeftAlone) {
    Put("\xE4\xB8\xAD", "cjk");
    std::string bytes;
    EXPECT_EQ(BackendFiles().ReadWhole(In("?"), 10, bytes).code, ErrorCode::kNotFound);
}

}  // namespace
}  // namespace brindle
