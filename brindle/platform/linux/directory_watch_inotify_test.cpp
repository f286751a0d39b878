// What only the inotify backend can show: one read of many events, the queue's overflow, directories that are
// moved, replaced and missing together with their parents.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "brindle/platform/directory_watch.h"
#include "testing/watch_taker.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;
using Lost = DirectoryCompletion::Lost;
using Wants = DirectoryWatch::Wants;

class InotifyTest : public ::testing::Test {
  protected:
    InotifyTest() {
        std::string pattern = fs::temp_directory_path() / "brindle_inotify_XXXXXX";
        m_root = ::mkdtemp(pattern.data());
        fs::create_directories(m_root / "a" / "b");
        Result result;
        m_watch = BackendDirectoryWatches().Open(result);
        EXPECT_TRUE(result.ok()) << result.text;
    }
    ~InotifyTest() override { fs::remove_all(m_root); }
    void Add(std::uint64_t number, const fs::path& folder, Wants wants = Wants::kModified) {
        const Result result = m_watch->Add(number, folder.string(), wants);
        EXPECT_TRUE(result.ok()) << result.text;
    }
    static void Write(const fs::path& path) { std::ofstream(path, std::ios::app) << "x"; }

    fs::path m_root;
    std::unique_ptr<DirectoryWatch> m_watch;
};

TEST_F(InotifyTest, AFileWrittenAndReplacedInOneReadIsReplaced) {
    Add(1, m_root / "a", Wants::kModifiedAndReplaced);
    Write(m_root / "a" / "x");
    Write(m_root / "a" / "x.tmp");
    fs::rename(m_root / "a" / "x.tmp", m_root / "a" / "x");
    DirectoryCompletion completion;
    ASSERT_TRUE(m_watch->Wait(completion));
    ASSERT_EQ(completion.changes.size(), 2u);
    EXPECT_EQ(completion.changes[0].name, "x");
    EXPECT_EQ(completion.changes[0].what, DirectoryChange::What::kReplaced);
    EXPECT_EQ(completion.changes[1].what, DirectoryChange::What::kModified);
}

// Nobody reads while the files are written: all of it comes in one read, as one completion a directory.
TEST_F(InotifyTest, OneReadIsOneCompletionOfEachDirectory) {
    Add(1, m_root / "a");
    Add(2, m_root / "a" / "b");
    for (int i = 0; i < 100; ++i) {
        Write(m_root / "a" / ("file " + std::to_string(i)));
        Write(m_root / "a" / "b" / ("other " + std::to_string(i)));
        Write(m_root / "a" / "again");
    }
    DirectoryCompletion completion;
    ASSERT_TRUE(m_watch->Wait(completion));
    EXPECT_EQ(completion.directory, 1u);
    ASSERT_EQ(completion.changes.size(), 101u) << "each name once";
    EXPECT_EQ(completion.changes[0].name, "file 0");
    EXPECT_EQ(completion.changes[1].name, "again");
    EXPECT_EQ(completion.changes[100].name, "file 99");
    ASSERT_TRUE(m_watch->Wait(completion));
    EXPECT_EQ(completion.directory, 2u);
    EXPECT_EQ(completion.changes.size(), 100u);
}

TEST_F(InotifyTest, OverflowIsToldForEveryDirectoryAndEnds) {
    std::size_t most = 16'384;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    // The administrator's setting, 16,384 unless raised; as many writes are needed to overflow it.
    if (most > 200'000) GTEST_SKIP() << "the queue of this system is too long to fill";
    Add(1, m_root / "a");
    Add(2, m_root / "a" / "b");
    const int files[] = {::open((m_root / "a" / "x").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600),
                         ::open((m_root / "a" / "y").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)};
    for (std::size_t i = 0; i < most + 100; ++i) ASSERT_EQ(::pwrite(files[i % 2], "x", 1, 0), 1);
    for (const int file : files) ::close(file);
    std::set<std::uint64_t> lost;
    DirectoryCompletion completion;
    while (lost.size() < 2) {
        ASSERT_TRUE(m_watch->Wait(completion));
        if (completion.lost == Lost::kOverflow)
            lost.insert(completion.directory);
        else
            EXPECT_EQ(completion.directory, 1u);
    }
    Write(m_root / "a" / "b" / "z");
    ASSERT_TRUE(m_watch->Wait(completion));
    EXPECT_EQ(completion.lost, Lost::kNothing);
    ASSERT_EQ(completion.changes.size(), 1u);
    EXPECT_EQ(completion.changes[0].name, "z");
}

TEST_F(InotifyTest, AReplacedDirectoryIsWatchedAnew) {
    testing::WatchTaker taker(std::move(m_watch));
    m_watch = nullptr;
    ASSERT_TRUE(taker.Watch().Add(1, (m_root / "a" / "b").string(), Wants::kModified).ok());
    fs::create_directory(m_root / "new");
    fs::rename(m_root / "a" / "b", m_root / "old");
    fs::rename(m_root / "new", m_root / "a" / "b");
    ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
    // The second notice comes only if the worker looked in between; what was moved away is not told in any case.
    Write(m_root / "old" / "x");
    for (;;) {
        Write(m_root / "a" / "b" / "y");
        const auto completion = taker.Next();
        ASSERT_TRUE(completion);
        if (completion->lost == Lost::kDirectory) continue;
        ASSERT_EQ(completion->changes.size(), 1u);
        EXPECT_EQ(completion->changes[0].name, "y");
        return;
    }
}

TEST_F(InotifyTest, AwaitsADirectoryWhoseParentsAreGone) {
    testing::WatchTaker taker(std::move(m_watch));
    ASSERT_TRUE(taker.Watch().Add(1, (m_root / "a" / "b/").string(), Wants::kModified).ok());
    fs::remove_all(m_root / "a");
    ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
    fs::create_directory(m_root / "other");
    fs::create_directory(m_root / "a");
    fs::create_directory(m_root / "a" / "bb");
    fs::create_directory(m_root / "a" / "b");
    ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
    Write(m_root / "a" / "b" / "x");
    ASSERT_EQ(taker.Next()->changes.size(), 1u);
    // Once more, together with what waits for it.
    fs::remove_all(m_root / "a");
    ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
    fs::create_directory(m_root / "a");
    fs::remove(m_root / "a");
    std::ofstream(m_root / "a") << "a file of that name";
    fs::remove(m_root / "a");
    fs::create_directories(m_root / "a" / "b");
    ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
}

// What is waited for stands in a directory that goes as well: it is waited for further up.
TEST_F(InotifyTest, AwaitsFurtherUpWhenTheAncestorGoesAfterIt) {
    testing::WatchTaker taker(std::move(m_watch));
    ASSERT_TRUE(taker.Watch().Add(1, (m_root / "a" / "b").string(), Wants::kModified).ok());
    for (const bool moved : {false, true}) {
        SCOPED_TRACE(moved);
        fs::remove_all(m_root / "a" / "b");
        ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
        moved ? fs::rename(m_root / "a", m_root / "aside") : static_cast<void>(fs::remove(m_root / "a"));
        fs::create_directories(m_root / "a" / "b");
        ASSERT_EQ(taker.Next()->lost, Lost::kDirectory);
        Write(m_root / "a" / "b" / "x");
        const auto completion = taker.Next();
        ASSERT_TRUE(completion);
        ASSERT_EQ(completion->changes.size(), 1u);
        EXPECT_EQ(completion->changes[0].name, "x");
    }
}

TEST_F(InotifyTest, ARelativePathIsThatOfTheCurrentDirectoryThen) {
    const fs::path before = fs::current_path();
    fs::current_path(m_root / "a");
    Add(1, "b");
    fs::create_directory(m_root / "gone");
    fs::current_path(m_root / "gone");
    fs::remove(m_root / "gone");
    EXPECT_EQ(m_watch->Add(2, "b", Wants::kModified).code, ErrorCode::kNotFound);
    fs::current_path(before);
    Write(m_root / "a" / "b" / "x");
    DirectoryCompletion completion;
    ASSERT_TRUE(m_watch->Wait(completion));
    EXPECT_EQ(completion.directory, 1u);
}

TEST_F(InotifyTest, ErrorsWithoutANameOfTheirOwnGiveTheNumber) {
    const Result result = m_watch->Add(1, (m_root / std::string(300, 'x')).string(), Wants::kModified);
    EXPECT_EQ(result.code, ErrorCode::kFailed);
    EXPECT_NE(result.text.find("system error " + std::to_string(ENAMETOOLONG)), std::string::npos)
        << result.text;
}

TEST_F(InotifyTest, PathsAreReadAsHostPaths) {
    testing::WatchTaker taker(std::move(m_watch));
    std::string path = (m_root / "A" / "B").string();
    path = m_root.string() + "\\A\\B\\";
    ASSERT_TRUE(taker.Watch().Add(1, path, Wants::kModified).ok());
    std::ofstream(m_root / "a" / "b" / "\xC3\xA9\xE4\xB8\xAD.xml") << "x";
    const auto completion = taker.Next();
    ASSERT_EQ(completion->changes.size(), 1u);
    EXPECT_EQ(completion->changes[0].name, "\xE9?.xml") << "names are bytes in the code page";
}

TEST_F(InotifyTest, UnlinkedFilesAreNotTold) {
    Add(1, m_root / "a");
    const int file = ::open((m_root / "a" / "x").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    fs::remove(m_root / "a" / "x");
    ASSERT_EQ(::write(file, "x", 1), 1);
    ::close(file);
    Write(m_root / "a" / "y");
    DirectoryCompletion completion;
    ASSERT_TRUE(m_watch->Wait(completion));
    ASSERT_EQ(completion.changes.size(), 1u);
    EXPECT_EQ(completion.changes[0].name, "y");
}

// Documented: a limit of the system, pinned so that a change of it is noticed.
TEST_F(InotifyTest, MemoryMapsAreNotSeen) {
    const fs::path path = m_root / "a" / "mapped";
    std::ofstream(path) << "content";
    Add(1, m_root / "a");
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    void* memory = ::mmap(nullptr, 7, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ASSERT_NE(memory, MAP_FAILED);
    *static_cast<char*>(memory) = 'X';
    ASSERT_EQ(::msync(memory, 7, MS_SYNC), 0);
    ::munmap(memory, 7);
    ::close(file);
    Write(m_root / "a" / "y");
    DirectoryCompletion completion;
    ASSERT_TRUE(m_watch->Wait(completion));
    ASSERT_EQ(completion.changes.size(), 1u);
    EXPECT_EQ(completion.changes[0].name, "y");
}

TEST_F(InotifyTest, FilesAreNoDirectories) {
    Write(m_root / "file");
    EXPECT_EQ(m_watch->Add(1, (m_root / "file").string(), Wants::kModified).code, ErrorCode::kNotFound);
    EXPECT_EQ(m_watch->Add(1, "", Wants::kModified).code, ErrorCode::kNotFound);
}

TEST_F(InotifyTest, NoDescriptorLeftIsAFailure) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 3;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    Result result;
    const std::unique_ptr<DirectoryWatch> watch = BackendDirectoryWatches().Open(result);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(watch, nullptr);
    EXPECT_EQ(result.code, ErrorCode::kLimit);
}

}  // namespace
}  // namespace brindle
