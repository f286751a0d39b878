// brindle watch: prints a line for each time a file is written. Tests: command_watch_test.cpp.
#include <brindle/framework/time_text.h>
#include <brindle/library/host_text.h>
#include <brindle/platform/clock.h>
#include <brindle/util/file_monitor.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <nlohmann/json.hpp>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "host/host_files.h"

namespace brindle::tool {
namespace {

struct WatchOptions {
    std::vector<std::string> files;
    std::optional<int> seconds;
    bool replaced = false;
    bool json = false;
};

// The local time now, to the millisecond, with the zone's offset.
std::string TimeText() {
    const std::uint64_t milliseconds = SystemMilliseconds();
    LocalTime local;
    if (!CurrentClock().ToLocalTime(UnixSeconds(), local)) return "?";
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    return FormatTime(local, "%Y-%m-%dT%H:%M:%S." + fraction + "%z", 64);
}

// Takes the monitor's calls to the thread that prints.
class Changes final : public FileMonitor::Handler {
  public:
    struct Change {
        std::string time;
        std::string path;
        bool lost = false;
    };

    void OnFileChanged(const CStringA& path) override { Put({TimeText(), path.str(), false}); }
    void OnChangesLost(const CStringA& path) override { Put({{}, path.str(), true}); }

    // The next change; nothing when none came within that time.
    std::optional<Change> Next(std::uint64_t milliseconds) {
        std::unique_lock lock(m_mutex);
        const auto some = [this] { return !m_changes.empty(); };
        if (!m_came.wait_for(lock, std::chrono::milliseconds(milliseconds), some)) return {};
        Change change = std::move(m_changes.front());
        m_changes.pop_front();
        return change;
    }

  private:
    void Put(Change change) {
        const std::lock_guard lock(m_mutex);
        m_changes.push_back(std::move(change));
        m_came.notify_one();
    }
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::deque<Change> m_changes;
};

void Show(const Changes::Change& change, bool json) {
    if (change.lost) return Complain(change.path, "changes may have gone unnoticed");
    if (!json) {
        Print(change.time + " " + change.path);
    } else {
        nlohmann::ordered_json line;
        line["time"] = change.time;
        line["path"] = TextToSystem(change.path);
        PrintUtf8(line.dump());
    }
    FlushOutput();
}

// A bare name lies in the current directory.
std::string WithDirectory(const std::string& file) {
    return file.find_first_of("/\\") == std::string::npos ? "./" + file : file;
}

int Watch(const WatchOptions& options) {
    if (options.seconds && *options.seconds < 0)
        throw Failure(kWrongUsage, "--for", "\"" + std::to_string(*options.seconds) + "\" is negative");
    Changes changes;
    FileMonitor monitor(options.replaced ? FileMonitor::AlsoCounts::kReplacement
                                         : FileMonitor::AlsoCounts::kNothing);
    for (const std::string& file : options.files) {
        if (host::IsFolder(file)) throw Failure(kWrongUsage, file, "is a folder; name the files in it");
        if (!monitor.StartMonitoringFile(WithDirectory(file), &changes))
            throw Failure(kWrongUsage, file, "its folder is missing or cannot be watched");
    }
    constexpr std::uint64_t kLongestWait = 3'600'000;
    const std::uint64_t begin = CurrentClock().MonotonicMilliseconds();
    while (!OutputFailed()) {
        std::uint64_t wait = kLongestWait;
        if (options.seconds) {
            const std::uint64_t end = begin + static_cast<std::uint64_t>(*options.seconds) * 1000;
            const std::uint64_t now = CurrentClock().MonotonicMilliseconds();
            if (now >= end) return kAnswered;
            wait = std::min(wait, end - now);
        }
        if (const std::optional<Changes::Change> change = changes.Next(wait)) Show(*change, options.json);
    }
    return kWrongUsage;
}

}  // namespace

void DeclareWatch(Command& tool) {
    auto options = std::make_shared<WatchOptions>();
    Command& watch = tool.Add("watch", kGroupQuestions, "print a line whenever a file is written");
    watch.Texts("FILE", options->files, "a file to watch; it need not exist, its folder must");
    watch.Option("--for", "SECONDS", options->seconds, "stop after that time; without it never");
    watch.Flag("--replaced", options->replaced,
               "also tell of a file that another one replaced by a rename, as many editors save");
    watch.Flag("--json", options->json, "print one JSON object for each change: time, path");
    watch.Note(
        "Prints TIME PATH: the local time and the path with the name as the system spells it. Several writes "
        "into one folder within 100 milliseconds give one line. Creating, deleting and touching a file give "
        "none.");
    watch.Example("brindle watch macros.ini variables.xml", "until it is interrupted");
    watch.Example("brindle watch --replaced --for 60 --json skin.xml");
    watch.Run([options] { return Watch(*options); });
}

}  // namespace brindle::tool
