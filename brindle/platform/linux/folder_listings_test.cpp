// Remembered names of folders: what is remembered, what is not, and that every change is seen at once.
#include "brindle/platform/linux/folder_listings.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "brindle/platform/backend.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;
using Set = std::set<std::string>;

// As if everything had been left alone for a minute.
std::int64_t AMinuteLater() noexcept {
    return StampSeconds() + 60;
}

class FolderListingsTest : public ::testing::Test {
  protected:
    FolderListingsTest() {
        const fs::path temporary = fs::temp_directory_path(), inMemory = "/dev/shm";
        const fs::path place = FolderListings::Trusts(temporary) ? temporary : inMemory;
        std::string pattern = place / "brindle_listings_XXXXXX";
        m_base = mkdtemp(pattern.data());
        m_folder = m_base + "/folder";
        fs::create_directory(m_folder);
    }
    ~FolderListingsTest() override { fs::remove_all(m_base); }
    void SetUp() override { ASSERT_TRUE(FolderListings::Trusts(m_base)) << m_base; }

    void Put(const std::string& name) const { std::ofstream(m_folder + "/" + name) << "x"; }
    Set List(const std::string& folder, bool* remembered = nullptr) {
        Set names;
        const bool memory =
            m_listings.ForEachName(folder, [&](std::string_view name) { names.emplace(name); });
        if (remembered) *remembered = memory;
        names.erase(".");
        names.erase("..");
        return names;
    }
    bool Remembered(const std::string& folder) {
        bool remembered = false;
        List(folder, &remembered);
        return remembered;
    }
    // Until a change has another time than the last one in `folder`: the clock that changes are stamped with ticks
    // slowly, which in earnest the seconds of waiting allow for.
    void WaitForTick(const std::string& folder) const {
        struct stat last {
        }, probe{};
        ASSERT_EQ(stat(folder.c_str(), &last), 0);
        do {
            std::ofstream(m_base + "/tick") << "x";
            ASSERT_EQ(stat((m_base + "/tick").c_str(), &probe), 0);
        } while (probe.st_mtim.tv_sec == last.st_ctim.tv_sec &&
                 probe.st_mtim.tv_nsec <= last.st_ctim.tv_nsec);
    }

    std::string m_base, m_folder;
    FolderListings m_listings{AMinuteLater};
};

TEST_F(FolderListingsTest, RemembersAFolderThatDoesNotChange) {
    Put("a");
    Put("B with \xE9");
    bool remembered = true;
    EXPECT_EQ(List(m_folder, &remembered), (Set{"a", "B with \xE9"}));
    EXPECT_FALSE(remembered);
    EXPECT_EQ(List(m_folder, &remembered), (Set{"a", "B with \xE9"}));
    EXPECT_TRUE(remembered);
    EXPECT_TRUE(Remembered(m_folder + "/../folder")) << "by any path";
}

TEST_F(FolderListingsTest, SeesEveryChangeAtOnce) {
    struct Row {
        const char* label;
        std::function<void()> change;
        Set expected;
    };
    const std::vector<Row> rows = {
        {"created", [&] { Put("a"); }, {"a"}},
        {"another", [&] { Put("b"); }, {"a", "b"}},
        {"renamed", [&] { fs::rename(m_folder + "/a", m_folder + "/A"); }, {"A", "b"}},
        {"removed", [&] { fs::remove(m_folder + "/b"); }, {"A"}},
        {"a folder", [&] { fs::create_directory(m_folder + "/sub"); }, {"A", "sub"}},
        {"a link", [&] { fs::create_symlink("nowhere", m_folder + "/link"); }, {"A", "link", "sub"}},
        {"with the old time put back",
         [&] {
             const auto before = fs::last_write_time(m_folder);
             Put("c");
             fs::last_write_time(m_folder, before);
         },
         {"A", "c", "link", "sub"}},
        {"another folder of that name",
         [&] {
             fs::rename(m_folder, m_base + "/old");
             fs::create_directory(m_folder);
             Put("new");
         },
         {"new"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        List(m_folder);
        ASSERT_TRUE(Remembered(m_folder));
        WaitForTick(m_folder);
        row.change();
        EXPECT_EQ(List(m_folder), row.expected);
    }
}

TEST_F(FolderListingsTest, AContentsChangeIsNone) {
    Put("a");
    List(m_folder);
    WaitForTick(m_folder);
    std::ofstream(m_folder + "/a") << "another content";
    EXPECT_TRUE(Remembered(m_folder));
}

// As if the folder had been changed this moment, whatever this machine is doing.
std::int64_t AtTheSameTime() noexcept {
    return 0;
}

TEST_F(FolderListingsTest, DoesNotTrustAFolderThatHasJustChanged) {
    FolderListings now(AtTheSameTime);
    const auto nothing = [](std::string_view) {};
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(now.ForEachName(m_folder, nothing));
        Put("f" + std::to_string(i));
        bool seen = false;
        now.ForEachName(m_folder, [&](std::string_view name) { seen |= name == "f" + std::to_string(i); });
        EXPECT_TRUE(seen) << "however soon";
    }
}

TEST_F(FolderListingsTest, WhatCannotBeReadHasNoNames) {
    Put("file");
    for (const std::string& path : {m_base + "/missing", m_folder + "/file", std::string()}) {
        EXPECT_EQ(List(path), Set()) << path;
        EXPECT_FALSE(Remembered(path)) << path;
    }
    fs::create_directory(m_base + "/missing");
    std::ofstream(m_base + "/missing/now") << "x";
    EXPECT_EQ(List(m_base + "/missing"), Set{"now"});
}

TEST_F(FolderListingsTest, SpecialFileSystemsAreReadEachTime) {
    EXPECT_TRUE(List("/proc/self").count("status"));
    EXPECT_FALSE(Remembered("/proc/self"));
}

TEST_F(FolderListingsTest, LargeFoldersAreReadEachTime) {
    const std::size_t files = FolderListings::kMostBytes / 201 + 1;
    for (std::size_t i = 0; i < files; ++i) {
        const std::string number = std::to_string(i);
        Put(number + std::string(200 - number.size(), 'x'));
    }
    EXPECT_EQ(List(m_folder).size(), files);
    EXPECT_FALSE(Remembered(m_folder));
    for (const auto& entry : fs::directory_iterator(m_folder)) {
        fs::remove(entry);
        break;
    }
    EXPECT_EQ(List(m_folder).size(), files - 1);
}

TEST_F(FolderListingsTest, TheFolderThatWasNotUsedForLongestIsForgotten) {
    const auto folder = [&](std::size_t i) { return m_folder + "/" + std::to_string(i); };
    constexpr std::size_t kMost = FolderListings::kMostFolders;
    for (std::size_t i = 0; i <= kMost; ++i) fs::create_directory(folder(i));
    for (std::size_t i = 0; i < kMost; ++i) List(folder(i));
    EXPECT_TRUE(Remembered(folder(0)));
    List(folder(kMost));
    EXPECT_TRUE(Remembered(folder(0))) << "it was used in between";
    EXPECT_TRUE(Remembered(folder(kMost)));
    EXPECT_FALSE(Remembered(folder(1)));
}

TEST_F(FolderListingsTest, AChangedFolderTakesItsOldPlace) {
    for (std::size_t i = 0; i < 2 * FolderListings::kMostFolders; ++i) {
        List(m_base);
        List(m_folder);
        WaitForTick(m_folder);
        Put(std::to_string(i));
    }
    EXPECT_FALSE(Remembered(m_folder));
    EXPECT_TRUE(Remembered(m_folder));
}

TEST_F(FolderListingsTest, ACallbackMayAskAgain) {
    Put("a");
    List(m_folder);
    int names = 0;
    m_listings.ForEachName(m_folder,
                           [&](std::string_view) { names += static_cast<int>(List(m_folder).size()); });
    EXPECT_EQ(names, 3) << "once for each of \".\", \"..\" and \"a\"";
}

// What one thread reads and remembers the others are given.
TEST_F(FolderListingsTest, ThreadsSeeWhatIsThere) {
    for (int i = 0; i < 20; ++i) {
        Put("here");
        std::atomic<int> wrong{0};
        const auto look = [&](const char* name) {
            std::vector<std::thread> threads;
            for (int t = 0; t < 4; ++t)
                threads.emplace_back([&] {
                    for (int n = 0; n < 20; ++n) {
                        Set names;
                        m_listings.ForEachName(m_folder, [&](std::string_view each) { names.emplace(each); });
                        if (names != Set{".", "..", name}) ++wrong;
                    }
                });
            for (std::thread& each : threads) each.join();
        };
        look("here");
        WaitForTick(m_folder);
        fs::rename(m_folder + "/here", m_folder + "/there");
        look("there");
        WaitForTick(m_folder);
        fs::remove(m_folder + "/there");
        EXPECT_EQ(wrong, 0);
        WaitForTick(m_folder);
    }
}

// Through the service, with the real clock: what a look-up without regard to letter case finds follows the folder
// after it has come to rest.
TEST_F(FolderListingsTest, TheFilesServiceFollowsAFolderAtRest) {
    Put("Name");
    Files& files = BackendFiles();
    EXPECT_TRUE(files.Exists(m_folder + "/NAME"));
    struct stat status {};
    ASSERT_EQ(stat(m_folder.c_str(), &status), 0);
    while (!StampOf(status, StampSeconds()).settled) std::this_thread::yield();
    const auto exists = [&](const char* name) { return files.Exists(m_folder + "/" + name); };
    EXPECT_TRUE(exists("NAME"));
    EXPECT_FALSE(exists("OTHER"));
    Put("Other");
    EXPECT_TRUE(exists("OTHER"));
    fs::rename(m_folder + "/Name", m_folder + "/Renamed");
    EXPECT_FALSE(exists("NAME"));
    EXPECT_TRUE(exists("RENAMED"));
    fs::remove(m_folder + "/Other");
    EXPECT_FALSE(exists("OTHER"));
}

}  // namespace
}  // namespace brindle
