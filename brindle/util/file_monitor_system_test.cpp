// The monitor over the system's own directory watches: ways of saving, many files, one thread, several callers.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "brindle/util/file_monitor.h"
#include "testing/saving_ways.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class Counter final : public FileMonitor::Handler {
  public:
    void OnFileChanged(const CStringA& path) override {
        const std::lock_guard lock(m_mutex);
        ++m_calls[path.str()];
        m_changed.notify_all();
    }
    // Waits until `count` different files were told; false when that takes half a minute.
    bool WaitForFiles(std::size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(30), [&] { return m_calls.size() >= count; });
    }
    int Calls(const fs::path& path) {
        const std::lock_guard lock(m_mutex);
        return m_calls[path.string()];
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::string, int> m_calls;
};

class FileMonitorSystem : public ::testing::Test {
  protected:
    FileMonitorSystem() {
        std::string pattern = fs::temp_directory_path() / "brindle_monitor_XXXXXX";
        m_root = ::mkdtemp(pattern.data());
    }
    ~FileMonitorSystem() override { fs::remove_all(m_root); }
    fs::path MakeFile(const std::string& name) const {
        const fs::path path = m_root / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "as it was before";
        return path;
    }

    fs::path m_root;
};

std::size_t ThreadsOfThisProcess() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/task")) ++count;
    return count;
}

// Each in a directory of its own, so that no save falls into the quiet time of the one before. A marker file in the
// same directory is written last: what the plain monitor did not tell until then, it does not tell at all.
TEST_F(FileMonitorSystem, WaysOfSaving) {
    for (const auto also : {FileMonitor::AlsoCounts::kNothing, FileMonitor::AlsoCounts::kReplacement}) {
        for (const testing::SavingWay& way : testing::kSavingWays) {
            const bool all = also == FileMonitor::AlsoCounts::kReplacement;
            SCOPED_TRACE(std::string(way.label) + (all ? ", replacement counts" : ""));
            Counter counter;
            FileMonitor monitor(also);
            const std::string folder = std::string(way.label) + (all ? " all" : "");
            const fs::path path = MakeFile(folder + "/list.xml");
            const fs::path marker = MakeFile(folder + " marker/marker");
            ASSERT_TRUE(monitor.StartMonitoringFile(path.string(), &counter));
            ASSERT_TRUE(monitor.StartMonitoringFile(marker.string(), &counter));
            testing::SaveBy(way.way, path, "new");
            std::ofstream(marker) << "x";
            const bool told = all || !way.replaces;
            ASSERT_TRUE(counter.WaitForFiles(told ? 2 : 1));
            EXPECT_EQ(counter.Calls(path), told ? 1 : 0);
        }
    }
}

// A machine that is busy may not manage two writes within 100 ms, so it gets several chances, each in directories of
// its own. The rule itself is tested on a clock that stands still.
TEST_F(FileMonitorSystem, TwoWritesAtOnceGiveOneCall) {
    constexpr int kAttempts = 50;
    auto between = std::chrono::steady_clock::duration::max();
    for (int attempt = 0; attempt < kAttempts && between >= std::chrono::milliseconds(100); ++attempt) {
        Counter counter;
        FileMonitor monitor;
        const fs::path path = MakeFile("a" + std::to_string(attempt) + "/x");
        const fs::path marker = MakeFile("b" + std::to_string(attempt) + "/marker");
        ASSERT_TRUE(monitor.StartMonitoringFile(path.string(), &counter));
        ASSERT_TRUE(monitor.StartMonitoringFile(marker.string(), &counter));
        const auto begin = std::chrono::steady_clock::now();
        std::ofstream(path, std::ios::app) << "1";
        ASSERT_TRUE(counter.WaitForFiles(1));
        std::ofstream(path, std::ios::app) << "2";
        std::ofstream(marker) << "x";
        ASSERT_TRUE(counter.WaitForFiles(2));  // so the second write has been handled, too
        between = std::chrono::steady_clock::now() - begin;
        if (between < std::chrono::milliseconds(100)) {
            EXPECT_EQ(counter.Calls(path), 1);
        }
    }
    EXPECT_LT(between, std::chrono::milliseconds(100)) << "no attempt was quick enough to tell";
}

TEST_F(FileMonitorSystem, AThousandFilesChangedAtOnce) {
    Counter counter;
    FileMonitor monitor;
    std::vector<fs::path> paths;
    for (int i = 0; i < 1000; ++i) paths.push_back(MakeFile(std::to_string(i) + "/file.xml"));
    for (const fs::path& path : paths) ASSERT_TRUE(monitor.StartMonitoringFile(path.string(), &counter));
    for (const fs::path& path : paths) std::ofstream(path, std::ios::app) << "x";
    EXPECT_TRUE(counter.WaitForFiles(paths.size()));
    for (const fs::path& path : paths) EXPECT_EQ(counter.Calls(path), 1) << path;
}

TEST_F(FileMonitorSystem, TenThousandFilesUseOneThread) {
    Counter counter;
    const std::size_t before = ThreadsOfThisProcess();
    FileMonitor monitor;
    EXPECT_EQ(ThreadsOfThisProcess(), before) << "none before the first file";
    for (int i = 0; i < 100; ++i) fs::create_directory(m_root / std::to_string(i));
    for (int i = 0; i < 10'000; ++i) {
        const fs::path path = m_root / std::to_string(i % 100) / ("file" + std::to_string(i));
        ASSERT_TRUE(monitor.StartMonitoringFile(path.string(), &counter));
    }
    EXPECT_EQ(ThreadsOfThisProcess(), before + 1);
    std::ofstream(m_root / "42" / "file4242") << "x";
    EXPECT_TRUE(counter.WaitForFiles(1));
    EXPECT_EQ(counter.Calls(m_root / "42" / "file4242"), 1);
}

// Threads start and stop files of the same directories while others write them and monitors end.
TEST_F(FileMonitorSystem, SeveralThreadsUnderLoad) {
    constexpr int kFolders = 4;
    constexpr int kRounds = 200;
    Counter counter;
    auto monitor = std::make_unique<FileMonitor>(FileMonitor::AlsoCounts::kReplacement);
    for (int i = 0; i < kFolders; ++i) MakeFile(std::to_string(i) + "/kept");
    for (int i = 0; i < kFolders; ++i)
        ASSERT_TRUE(monitor->StartMonitoringFile((m_root / std::to_string(i) / "kept").string(), &counter));
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < kRounds; ++round) {
                const std::string path =
                    (m_root / std::to_string(round % kFolders) / std::to_string(t)).string();
                EXPECT_TRUE(monitor->StartMonitoringFile(path, &counter));
                EXPECT_TRUE(monitor->IsMonitoringDirectory(fs::path(path).parent_path().string()));
                EXPECT_TRUE(monitor->StopMonitoringFile(path));
            }
        });
    }
    threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round)
            std::ofstream(m_root / std::to_string(round % kFolders) / std::to_string(round % 3)) << round;
    });
    threads.emplace_back([&] {
        for (int round = 0; round < kRounds / 10; ++round) {
            FileMonitor shortLived;
            EXPECT_TRUE(shortLived.StartMonitoringFile((m_root / "0" / "1").string(), &counter));
        }
    });
    for (std::thread& thread : threads) thread.join();
    // What was replaced is never passed over, however busy the folder was.
    testing::SaveBy(testing::Saving::kRenameOver, m_root / "0" / "kept", "new");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (counter.Calls(m_root / "0" / "kept") == 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(counter.Calls(m_root / "0" / "kept"), 1);
    monitor.reset();
}

TEST_F(FileMonitorSystem, AReplacedFolderIsWatchedAgain) {
    class Lost final : public FileMonitor::Handler {
      public:
        void OnFileChanged(const CStringA&) override { ++changes; }
        void OnChangesLost(const CStringA&) override { ++losses; }
        std::atomic<int> changes{0};
        std::atomic<int> losses{0};
    };
    Lost lost;
    FileMonitor monitor;
    const fs::path path = MakeFile("site/list.xml");
    ASSERT_TRUE(monitor.StartMonitoringFile(path.string(), &lost));
    fs::rename(m_root / "site", m_root / "site.old");
    MakeFile("site/list.xml");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (lost.changes == 0 && std::chrono::steady_clock::now() < end) {
        if (lost.losses > 0) std::ofstream(path, std::ios::app) << "x";
        std::this_thread::yield();
    }
    EXPECT_GT(lost.losses, 0);
    EXPECT_GT(lost.changes, 0);
}

}  // namespace
}  // namespace brindle
