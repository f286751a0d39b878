// The file monitor beside raw inotify: the time from a write to the call of the handler, or to the return of a
// blocking read with the event taken apart. 10,000 watched files in 100 directories, at most one write a directory in
// any 100 ms. Each round reports its median. And starting to monitor a file beside few and many others.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "brindle/util/file_monitor.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kFolders = 100;
constexpr int kFiles = 10'000;
constexpr int kWrites = 300;
constexpr auto kBetween = std::chrono::microseconds(1'100);  // 110 ms for each directory

std::int64_t Now() {
    return Clock::now().time_since_epoch().count();
}

class Folders {
  public:
    Folders() {
        std::string pattern = fs::temp_directory_path() / "brindle_bench_XXXXXX";
        m_root = ::mkdtemp(pattern.data());
        for (int i = 0; i < kFolders; ++i) fs::create_directory(m_root / std::to_string(i));
        for (int i = 0; i < kFiles; ++i) ::close(Open(i));
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;
    ~Folders() { fs::remove_all(m_root); }
    fs::path Folder(int i) const { return m_root / std::to_string(i % kFolders); }
    fs::path File(int i) const { return Folder(i) / ("file" + std::to_string(i) + ".xml"); }
    int Open(int i) const { return ::open(File(i).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); }

  private:
    fs::path m_root;
};

// Writes files in turn and returns the median of the times until `seen` holds a moment.
double MedianLatency(const Folders& folders, std::atomic<std::int64_t>& seen) {
    std::vector<std::int64_t> times;
    auto next = Clock::now();
    for (int i = 0; i < kWrites; ++i) {
        const int file = folders.Open(i * 37 % kFiles / kFolders * kFolders + i % kFolders);
        std::this_thread::sleep_until(next += kBetween);
        seen.store(0);
        const std::int64_t begin = Now();
        if (::pwrite(file, "x", 1, 0) != 1) std::abort();
        std::this_thread::sleep_until(next + kBetween / 2);
        if (const std::int64_t end = seen.load()) times.push_back(end - begin);
        ::close(file);
    }
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    return static_cast<double>(times[times.size() / 2]) / 1e9;
}

class Stamp final : public FileMonitor::Handler {
  public:
    void OnFileChanged(const CStringA&) override { seen.store(Now()); }
    std::atomic<std::int64_t> seen{0};
};

void WriteToHandler(benchmark::State& state) {
    const Folders folders;
    Stamp stamp;
    FileMonitor monitor;
    for (int i = 0; i < kFiles; ++i)
        if (!monitor.StartMonitoringFile(folders.File(i).string(), &stamp)) std::abort();
    for (auto _ : state) state.SetIterationTime(MedianLatency(folders, stamp.seen));
}

void WriteToRawInotify(benchmark::State& state) {
    const Folders folders;
    std::atomic<std::int64_t> seen{0};
    std::atomic<bool> over{false};
    const int inotify = ::inotify_init1(IN_CLOEXEC);
    for (int i = 0; i < kFolders; ++i) ::inotify_add_watch(inotify, folders.Folder(i).c_str(), IN_MODIFY);
    std::thread reader([&] {
        alignas(inotify_event) std::array<char, 65'536> buffer;
        while (!over.load()) {
            const ssize_t size = ::read(inotify, buffer.data(), buffer.size());
            for (ssize_t at = 0; at < size;) {
                inotify_event event;
                std::memcpy(&event, buffer.data() + at, sizeof(event));
                benchmark::DoNotOptimize(std::string(buffer.data() + at + sizeof(event)));
                seen.store(Now());
                at += static_cast<ssize_t>(sizeof(event) + event.len);
            }
        }
    });
    for (auto _ : state) state.SetIterationTime(MedianLatency(folders, seen));
    over.store(true);
    const int last = folders.Open(0);
    if (::pwrite(last, "x", 1, 0) != 1) std::abort();
    ::close(last);
    reader.join();
    ::close(inotify);
}

void StartBeside(benchmark::State& state, int others) {
    const Folders folders;
    Stamp stamp;
    FileMonitor monitor;
    for (int i = 0; i < others; ++i) monitor.StartMonitoringFile(folders.File(i).string(), &stamp);
    const std::string path = (folders.Folder(0) / "another.xml").string();
    for (auto _ : state) {
        if (!monitor.StartMonitoringFile(path, &stamp)) std::abort();
        monitor.StopMonitoringFile(path);
    }
}
void StartBesideHundredFiles(benchmark::State& state) {
    StartBeside(state, 100);
}
void StartBesideHundredThousandFiles(benchmark::State& state) {
    StartBeside(state, 100'000);
}

BENCHMARK(WriteToHandler)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(WriteToRawInotify)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(StartBesideHundredFiles);
BENCHMARK(StartBesideHundredThousandFiles);

}  // namespace
