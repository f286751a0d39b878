// brindle watch as a process: what it prints while files are written, and what it refuses.
#include <stdlib.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "apps/brindle/tool_test_rows.h"
#include "testing/saving_ways.h"

namespace brindle::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class ToolWatch : public ::testing::Test {
  protected:
    ToolWatch() {
        std::string pattern = fs::temp_directory_path() / "brindle_tool_watch_XXXXXX";
        m_folder = ::mkdtemp(pattern.data());
        std::ofstream(Path()) << "before";
    }
    ~ToolWatch() override { fs::remove_all(m_folder); }
    fs::path Path() const { return m_folder / "list.xml"; }
    // Runs the tool while the file is saved again and again.
    ToolResult WatchWhileSaving(Saving way, std::vector<std::string> arguments) {
        std::atomic<bool> over{false};
        std::thread saving([&] {
            while (!over) SaveBy(way, Path(), "new"), std::this_thread::yield();
        });
        arguments.insert(arguments.begin(), "watch");
        const ToolResult result = RunTool({std::move(arguments), {}, {{"TZ", "UTC-5:30"}}, OutputTo::kPipe});
        over = true;
        saving.join();
        return result;
    }

    fs::path m_folder;
};

TEST_F(ToolWatch, PrintsTimeAndPath) {
    const ToolResult result =
        WatchWhileSaving(Saving::kTruncateAndWrite, {(m_folder / "LIST.XML").string(), "--for", "1"});
    EXPECT_EQ(result.code, 0);
    const std::string line = result.out.substr(0, result.out.find('\n'));
    EXPECT_THAT(line,
                MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}\\+0530 .*/"
                             "list\\.xml"));
    EXPECT_THAT(line, HasSubstr(" " + Path().string()));
}

TEST_F(ToolWatch, PrintsJson) {
    const ToolResult result = WatchWhileSaving(Saving::kInPlace, {"--json", Path().string(), "--for", "1"});
    EXPECT_EQ(result.code, 0);
    const nlohmann::json line = nlohmann::json::parse(result.out.substr(0, result.out.find('\n')));
    EXPECT_EQ(line["path"], Path().string());
    EXPECT_THAT(line["time"].get<std::string>(), MatchesRegex(".*T.*\\+0530"));
}

TEST_F(ToolWatch, ReplacedFilesOnlyWhenAsked) {
    EXPECT_EQ(WatchWhileSaving(Saving::kRenameOver, {Path().string(), "--for", "1"}).out, "");
    EXPECT_THAT(WatchWhileSaving(Saving::kRenameOver, {"--replaced", Path().string(), "--for", "1"}).out,
                HasSubstr(Path().string() + "\n"));
}

TEST_F(ToolWatch, RefusesWhatItCannotWatch) {
    const ToolRow rows[] = {
        {"a folder", {"watch", m_folder.string()}, "", "is a folder", 2},
        {"no such folder", {"watch", (m_folder / "none" / "x").string()}, "", "missing", 2},
        {"no file", {"watch"}, "", "FILE", 2},
        {"negative time", {"watch", Path().string(), "--for", "-1"}, "", "negative", 2},
        {"no time", {"watch", Path().string(), "--for", "0"}, "", "", 0},
        {"a bare name", {"watch", "some_file", "--for", "0"}, "", "", 0},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

}  // namespace
}  // namespace brindle::testing
