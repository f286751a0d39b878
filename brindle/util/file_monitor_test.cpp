// The monitor's rules on directories and a clock that a test moves.
#include "brindle/util/file_monitor.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/fake/directory_watch_fake.h"
#include "brindle/platform/service.h"
#include "testing/layout.h"

namespace brindle {
namespace {

using What = DirectoryChange::What;

// Keeps what it was called with, and does something more where a test wants it.
class Recorder final : public FileMonitor::Handler {
  public:
    void OnFileChanged(const CStringA& path) override { Take(path.str()); }
    void OnChangesLost(const CStringA& path) override { Take("lost " + path.str()); }
    void OnChangePassedOver(const CStringA& path) override { Take("passed over " + path.str()); }
    std::string Calls() {
        const std::lock_guard lock(m_mutex);
        std::string text;
        for (const std::string& call : m_calls) text += (text.empty() ? "" : " | ") + call;
        m_calls.clear();
        return text;
    }
    std::function<void(const std::string&)> also;

  private:
    void Take(const std::string& call) {
        {
            const std::lock_guard lock(m_mutex);
            m_calls.push_back(call);
        }
        if (also) also(call);
    }
    std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

class FileMonitorTest : public ::testing::Test {
  protected:
    FileMonitorTest() {
        m_watches.AddDirectory("/w/a");
        m_watches.AddDirectory("/w/b");
    }
    // Waits until everything told so far is dealt with.
    std::string Calls() {
        m_watches.WaitUntilTaken();
        return m_recorder.Calls();
    }
    void Modify(const std::string& directory, const std::string& name) {
        m_watches.WaitUntilTaken();
        m_watches.Modify(directory, name);
    }
    void Advance(std::uint64_t milliseconds) {
        m_watches.WaitUntilTaken();  // the worker reads the clock
        m_clock.AdvanceMilliseconds(milliseconds);
    }

    FakeClock m_clock;
    FakeDirectoryWatches m_watches;
    Recorder m_recorder;

  private:
    ScopedService<Clock> m_installedClock{&SetClock, m_clock};
    ScopedService<DirectoryWatches> m_installed{&SetDirectoryWatches, m_watches};
};

TEST_F(FileMonitorTest, CallsWithTheDirectoryAsGivenAndTheNameAsTheSystemSpellsIt) {
    FileMonitor monitor;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/Skin.XML", &m_recorder));
    m_watches.Modify("/w/a", "skin.xml");
    EXPECT_EQ(Calls(), "/w/a/skin.xml");
    Advance(100);
    m_watches.Change("/w/a", {{What::kModified, "SKIN.xml"}, {What::kModified, "other.xml"}});
    EXPECT_EQ(Calls(), "/w/a/SKIN.xml") << "unwatched files call nothing";
}

TEST_F(FileMonitorTest, LettersFoldByTheCodePage) {
    FileMonitor monitor;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/\xC9t\xE9.xml", &m_recorder));
    m_watches.Modify("/w/a", "\xE9T\xC9.XML");
    EXPECT_EQ(Calls(), "/w/a/\xE9T\xC9.XML");
}

TEST_F(FileMonitorTest, PathsThatCannotBeWatched) {
    FileMonitor monitor;
    struct Row {
        const char* label;
        const char* path;
    };
    for (const Row& row : {Row{"empty", ""}, Row{"no directory", "file.xml"}, Row{"no name", "/w/a/"},
                           Row{"missing directory", "/w/none/file.xml"}}) {
        SCOPED_TRACE(row.label);
        EXPECT_FALSE(monitor.StartMonitoringFile(row.path, &m_recorder));
        EXPECT_FALSE(monitor.StopMonitoringFile(row.path));
    }
    EXPECT_FALSE(monitor.StartMonitoringFile("/w/a/x", nullptr));
    EXPECT_FALSE(monitor.IsMonitoringDirectory("/w/a"));
    EXPECT_TRUE(monitor.StartMonitoringFile("/w/a\\x", &m_recorder)) << "both separators count";
}

TEST_F(FileMonitorTest, WithoutWatchesNothingStarts) {
    m_watches.FailOpening(true);
    FileMonitor monitor;
    EXPECT_FALSE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    m_watches.FailOpening(false);
    EXPECT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder)) << "the next attempt begins anew";
    m_watches.Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "/w/a/x");
}

TEST_F(FileMonitorTest, MonitoredDirectories) {
    FileMonitor monitor;
    EXPECT_FALSE(monitor.IsMonitoringDirectory("/w/a"));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/y", &m_recorder));
    for (const char* same : {"/w/a", "/w/a/", "/W/A", "/W/a/"}) {
        SCOPED_TRACE(same);
        EXPECT_TRUE(monitor.IsMonitoringDirectory(same));
    }
    for (const char* other : {"", "/", "/w", "/w/a/x", "/w/b", "/w/a//"}) {
        SCOPED_TRACE(other);
        EXPECT_FALSE(monitor.IsMonitoringDirectory(other));
    }
    EXPECT_TRUE(monitor.StopMonitoringFile("/w/A/X"));
    EXPECT_TRUE(monitor.IsMonitoringDirectory("/w/a"));
    EXPECT_TRUE(monitor.StopMonitoringFile("/w/a/y"));
    EXPECT_FALSE(monitor.IsMonitoringDirectory("/w/a"));
    EXPECT_FALSE(monitor.StopMonitoringFile("/w/a/y"));
    m_watches.Modify("/w/a", "y");
    EXPECT_EQ(Calls(), "");
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/y", &m_recorder));
    m_watches.Modify("/w/a", "y");
    EXPECT_EQ(Calls(), "/w/a/y") << "a directory may be watched again";
}

// Kept: directories are told apart without regard to case, so the second path joins the first one's directory.
TEST_F(FileMonitorTest, DirectoriesCompareWithoutCaseKept) {
    m_watches.AddDirectory("/w/A");
    FileMonitor monitor;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/A/y", &m_recorder));
    m_watches.Modify("/w/A", "y");
    EXPECT_EQ(Calls(), "");
    m_watches.Modify("/w/a", "y");
    EXPECT_EQ(Calls(), "/w/a/y");
}

TEST_F(FileMonitorTest, OnlyTheFirstHandlerOfAFileIsCalled) {
    FileMonitor monitor;
    Recorder second;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/X", &second));
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "/w/a/x");
    EXPECT_EQ(second.Calls(), "");
    ASSERT_TRUE(monitor.StopMonitoringFile("/w/a/X")) << "takes the first one back";
    Advance(100);
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(second.Calls(), "/w/a/x");
}

// Each completion of a directory, its distance from the one before, and whether it calls.
TEST_F(FileMonitorTest, CompletionsTooSoonArePassedOver) {
    struct Row {
        const char* label;
        std::uint64_t after;
        const char* directory;
        const char* name;
        const char* expected;
    };
    const Row rows[] = {
        {"the first", 0, "/w/a", "x", "/w/a/x"},
        {"at once", 0, "/w/a", "x", "passed over /w/a/x"},
        {"99 ms", 99, "/w/a", "x", "passed over /w/a/x"},
        {"100 ms", 100, "/w/a", "x", "/w/a/x"},
        {"another directory's first", 1, "/w/b", "x", "/w/b/x"},
        {"99 ms since the last of this one", 98, "/w/a", "x", "passed over /w/a/x"},
        {"another file of it", 50, "/w/a", "y", "passed over /w/a/y"},
        {"passed over, yet remembered", 60, "/w/a", "x", "passed over /w/a/x"},
        {"100 ms of quiet", 100, "/w/a", "y", "/w/a/y"},
        {"an unwatched file ...", 100, "/w/a", "unwatched", ""},
        {"... is a completion, too", 99, "/w/a", "x", "passed over /w/a/x"},
        {"much later", 1'000'000, "/w/a", "x", "/w/a/x"},
    };
    FileMonitor monitor;
    for (const char* path : {"/w/a/x", "/w/a/y", "/w/b/x"})
        ASSERT_TRUE(monitor.StartMonitoringFile(path, &m_recorder));
    m_clock.AdvanceMilliseconds(0);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Advance(row.after);
        Modify(row.directory, row.name);
        EXPECT_EQ(Calls(), row.expected);
    }
}

TEST_F(FileMonitorTest, TheFirstCompletionCountsEvenAtTickZero) {
    FileMonitor monitor;
    ASSERT_EQ(m_clock.MonotonicMilliseconds(), 0u);
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "/w/a/x");
}

TEST_F(FileMonitorTest, AThousandFilesAtOnce) {
    FileMonitor monitor;
    std::vector<DirectoryChange> changes;
    for (int i = 0; i < 1000; ++i) {
        changes.push_back({What::kModified, "file" + std::to_string(i)});
        ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/" + changes.back().name, &m_recorder));
    }
    m_watches.Change("/w/a", changes);
    m_watches.WaitUntilTaken();
    std::string expected;
    for (const DirectoryChange& change : changes)
        expected += (expected.empty() ? "" : " | ") + ("/w/a/" + change.name);
    EXPECT_EQ(Calls(), expected);
}

TEST_F(FileMonitorTest, ReplacementCountsOnlyWhenAsked) {
    FileMonitor plain;
    FileMonitor asked(FileMonitor::AlsoCounts::kReplacement);
    Recorder other;
    ASSERT_TRUE(plain.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(asked.StartMonitoringFile("/w/a/x", &other));
    m_watches.Change("/w/a", {{What::kReplaced, "x"}});
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(other.Calls(), "/w/a/x");
}

// A program that saves through a rename writes the other file first, and that is a completion.
TEST_F(FileMonitorTest, AReplacementIsNeverPassedOver) {
    FileMonitor monitor(FileMonitor::AlsoCounts::kReplacement);
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/y", &m_recorder));
    Modify("/w/a", "x.tmp");
    Advance(1);
    m_watches.Change("/w/a", {{What::kReplaced, "x"}, {What::kModified, "y"}});
    EXPECT_EQ(Calls(), "/w/a/x | passed over /w/a/y");
    Advance(99);
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "passed over /w/a/x") << "it is a completion like any other";
}

TEST_F(FileMonitorTest, LostChangesAreToldForEveryFile) {
    FileMonitor monitor;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "/w/a/x");
    Advance(50);
    m_watches.Overflow();
    EXPECT_EQ(Calls(), "lost /w/a/x") << "however soon";
    Advance(60);
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "passed over /w/a/x") << "an overflow is a completion";
    m_watches.RemoveDirectory("/w/a");
    EXPECT_EQ(Calls(), "lost /w/a/x");
    EXPECT_TRUE(monitor.IsMonitoringDirectory("/w/a"));
    m_watches.AddDirectory("/w/a");
    EXPECT_EQ(Calls(), "lost /w/a/x");
    Modify("/w/a", "x");
    EXPECT_EQ(Calls(), "/w/a/x") << "the first completion of a new directory counts";
}

TEST_F(FileMonitorTest, WhatIsNotOverriddenDoesNothing) {
    class Plain final : public FileMonitor::Handler {
      public:
        void OnFileChanged(const CStringA&) override { ++calls; }
        int calls = 0;
    };
    Plain plain;
    FileMonitor monitor;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &plain));
    m_watches.Overflow();
    Modify("/w/a", "x");
    m_watches.WaitUntilTaken();
    EXPECT_EQ(plain.calls, 0);
}

TEST_F(FileMonitorTest, HandlersMayCallTheMonitor) {
    FileMonitor monitor;
    Recorder added;
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/x", &m_recorder));
    ASSERT_TRUE(monitor.StartMonitoringFile("/w/a/y", &m_recorder));
    m_recorder.also = [&](const std::string&) {
        EXPECT_TRUE(monitor.IsMonitoringDirectory("/w/a"));
        EXPECT_TRUE(monitor.StartMonitoringFile("/w/b/z", &added));
        EXPECT_TRUE(monitor.StopMonitoringFile("/w/a/x"));
        EXPECT_TRUE(monitor.StopMonitoringFile("/w/a/y"));
    };
    m_watches.Change("/w/a", {{What::kModified, "x"}, {What::kModified, "y"}});
    EXPECT_EQ(Calls(), "/w/a/x") << "the second was stopped before its turn";
    m_watches.Modify("/w/b", "z");
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(added.Calls(), "/w/b/z");
}

TEST_F(FileMonitorTest, AHandlerMayDestroyTheMonitor) {
    for (const bool lost : {false, true}) {
        SCOPED_TRACE(lost);
        auto monitor = std::make_unique<FileMonitor>();
        ASSERT_TRUE(monitor->StartMonitoringFile("/w/a/x", &m_recorder));
        ASSERT_TRUE(monitor->StartMonitoringFile("/w/a/y", &m_recorder));
        m_recorder.also = [&](const std::string&) { monitor.reset(); };
        if (lost)
            m_watches.Overflow();
        else
            m_watches.Change("/w/a", {{What::kModified, "x"}, {What::kModified, "y"}});
        m_watches.WaitUntilTaken();
        const std::string calls = m_recorder.Calls();
        EXPECT_EQ(calls.find('|'), std::string::npos) << calls << ": nobody is called after the end";
        EXPECT_NE(calls, "");
        EXPECT_EQ(monitor, nullptr);
        m_recorder.also = nullptr;
    }
}

TEST_F(FileMonitorTest, TheDestructorWaitsForARunningHandler) {
    auto monitor = std::make_unique<FileMonitor>();
    std::mutex mutex;
    std::condition_variable changed;
    bool running = false;
    bool release = false;
    bool left = false;
    m_recorder.also = [&](const std::string&) {
        std::unique_lock lock(mutex);
        running = true;
        changed.notify_all();
        changed.wait(lock, [&] { return release; });
        left = true;
    };
    ASSERT_TRUE(monitor->StartMonitoringFile("/w/a/x", &m_recorder));
    m_watches.Modify("/w/a", "x");
    {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(30), [&] { return running; }));
    }
    std::thread releasing([&] {
        const std::lock_guard lock(mutex);
        release = true;
        changed.notify_all();
    });
    monitor.reset();
    {
        const std::lock_guard lock(mutex);
        EXPECT_TRUE(left);
    }
    releasing.join();
}

TEST(FileMonitorLayout, TheHandlersCallComesFirst) {
    EXPECT_EQ(testing::SlotOf(&FileMonitor::Handler::OnFileChanged), 0u);
    EXPECT_EQ(testing::SlotOf(&FileMonitor::Handler::OnChangesLost), 1u);
    EXPECT_EQ(testing::SlotOf(&FileMonitor::Handler::OnChangePassedOver), 2u);
}

TEST(FileMonitorLayout, AMonitorThatWatchesNothingHasNoThread) {
    const FileMonitor monitor;
    EXPECT_FALSE(monitor.IsMonitoringDirectory("/"));
}

}  // namespace
}  // namespace brindle
