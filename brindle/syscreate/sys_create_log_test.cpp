// The log of system creation: one line, a file that does not grow for ever, several processes at a time.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"
#include "brindle/syscreate/sys_create.h"

namespace {

class Logger : public SysCreate {
  public:
    using SysCreate::AppendLog;
};

std::string Contents(brindle::FakeFiles& files, const char* path) {
    std::string bytes = "(none)";
    static_cast<void>(files.ReadWhole(path, 1u << 24, bytes));
    return bytes;
}

class SysCreateLog : public ::testing::Test {
  protected:
    SysCreateLog() : m_installedFiles(brindle::SetFiles, files), m_installedClock(brindle::SetClock, clock) {
        clock.SetUnixSeconds(1709964304);  // 06:05:04 UTC
        clock.SetUtcOffset(3600);
    }

    brindle::FakeFiles files;
    brindle::FakeClock clock;

  private:
    brindle::ScopedService<brindle::Files> m_installedFiles;
    brindle::ScopedService<brindle::Clock> m_installedClock;
};

const std::string kStamp = "09:03:2024 07:05:04   ";

TEST_F(SysCreateLog, WritesTheLineExactly) {
    Logger().AppendLog("/log.txt", "first");
    EXPECT_EQ(Contents(files, "/log.txt"), kStamp + "first\r\n");
    Logger().AppendLog("/log.txt", "");
    Logger().AppendLog("/log.txt", nullptr);
    Logger().AppendLog("/log.txt", "100% %s \xFC");
    EXPECT_EQ(Contents(files, "/log.txt"),
              kStamp + "first\r\n" + kStamp + "\r\n" + kStamp + "\r\n" + kStamp + "100% %s \xFC\r\n");
}

TEST_F(SysCreateLog, EmptiesALongFileFirst) {
    const struct {
        const char* label;
        std::size_t before;
        bool emptied;
    } rows[] = {{"short", 10, false},
                {"exactly the limit", 512'000, false},
                {"one more", 512'001, true},
                {"far more", 600'000, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        files.Add("/log.txt", brindle::FakeFiles::Kind::kFile, std::string(row.before, 'x'));
        Logger().AppendLog("/log.txt", "new");
        const std::string line = kStamp + "new\r\n";
        EXPECT_TRUE(Contents(files, "/log.txt") ==
                    (row.emptied ? line : std::string(row.before, 'x') + line));
    }
}

TEST_F(SysCreateLog, AFileThatCannotBeOpenedIsSkippedSilently) {
    files.Add("/folder", brindle::FakeFiles::Kind::kFolder);
    for (const char* path : {static_cast<const char*>(nullptr), "", "/none/log.txt", "/folder"})
        Logger().AppendLog(path, "lost");
    EXPECT_FALSE(files.Exists("/none"));
}

// On a real file, which one of them empties at the beginning: every process's lines are all there, whole and in
// order.
TEST(SysCreateLogProcesses, LoseNoLineAndTearNone) {
    constexpr int kProcesses = 4;
    constexpr int kLines = 300;
    std::string folder = (std::filesystem::temp_directory_path() / "brindle_log_XXXXXX").string();
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/log.txt";
    std::ofstream(path) << std::string(600'000, 'x');
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(::fork());
        if (children.back() != 0) continue;
        Logger logger;
        for (int i = 0; i < kLines; ++i) {
            const std::string text = std::to_string(process) + ":" + std::to_string(i) + " " +
                                     std::string(static_cast<std::size_t>(100 + i), '.') + "|";
            logger.AppendLog(path.c_str(), text.c_str());
        }
        ::_exit(0);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    std::ifstream file(path, std::ios::binary);
    std::vector<int> next(kProcesses, 0);
    for (std::string line; std::getline(file, line);) {
        ASSERT_GT(line.size(), kStamp.size() + 3) << line;
        ASSERT_TRUE(line.ends_with("|\r")) << line;
        const int process = line[kStamp.size()] - '0';
        ASSERT_TRUE(process >= 0 && process < kProcesses) << line;
        int& expected = next[static_cast<std::size_t>(process)];
        EXPECT_EQ(line.substr(kStamp.size()), std::to_string(process) + ":" + std::to_string(expected) + " " +
                                                  std::string(static_cast<std::size_t>(100 + expected), '.') +
                                                  "|\r");
        ++expected;
    }
    for (const int count : next) EXPECT_EQ(count, kLines);
    std::filesystem::remove_all(folder);
}

}  // namespace
