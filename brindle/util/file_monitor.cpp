// The monitor: its tables, its worker thread and the end of both. Tests: file_monitor_test.cpp.
#include "brindle/util/file_monitor.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "brindle/framework/letter_case.h"
#include "brindle/platform/clock.h"
#include "brindle/platform/directory_watch.h"

namespace {

constexpr std::uint64_t kQuietMilliseconds = 100;

std::string Folded(std::string_view text) {
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), &brindle::ToLower);
    return folded;
}

// The directory with its separator, and the file name. False when either is empty.
bool SplitFilePath(std::string_view path, std::string_view& directory, std::string_view& name) {
    const std::size_t separator = path.find_last_of("\\/");
    if (separator == std::string_view::npos) return false;
    directory = path.substr(0, separator + 1);
    name = path.substr(separator + 1);
    return !name.empty();
}

}  // namespace

FileMonitor::Handler::~Handler() = default;
void FileMonitor::Handler::OnChangesLost(const CStringA&) {}
void FileMonitor::Handler::OnChangePassedOver(const CStringA&) {}

// One watched directory.
class FileMonitor::DirMon {
  public:
    DirMon(std::uint64_t number, std::string_view path) : m_number(number), m_path(path) {}

    std::uint64_t Number() const noexcept { return m_number; }
    const std::string& Path() const noexcept { return m_path; }
    bool IsEmpty() const noexcept { return m_files.empty(); }

    void Add(std::string_view name, Handler* handler) {
        m_files[Folded(name)].push_back({std::string(name), handler});
    }
    bool Remove(std::string_view name) {
        const auto found = m_files.find(Folded(name));
        if (found == m_files.end()) return false;
        found->second.erase(found->second.begin());
        if (found->second.empty()) m_files.erase(found);
        return true;
    }
    Handler* Find(std::string_view name) const {
        const auto found = m_files.find(Folded(name));
        return found == m_files.end() ? nullptr : found->second.front().handler;
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& [folded, entries] : m_files) names.push_back(entries.front().name);
        return names;
    }

    // Whether the completion is to be passed over; remembers it in either case.
    bool IsTooSoon(std::uint64_t tick) {
        const std::optional<std::uint64_t> last = std::exchange(m_lastCompletion, tick);
        return last && tick - *last < kQuietMilliseconds;
    }
    void ForgetCompletions() { m_lastCompletion.reset(); }

  private:
    struct Entry {
        std::string name;
        Handler* handler;
    };

    std::uint64_t m_number;
    std::string m_path;                                           // ends with its separator
    std::unordered_map<std::string, std::vector<Entry>> m_files;  // by folded name; the first entry is called
    std::optional<std::uint64_t> m_lastCompletion;                // milliseconds of the monotonic clock
};

// What the monitor and its worker share.
class FileMonitor::Monitor : public std::enable_shared_from_this<Monitor> {
  public:
    explicit Monitor(AlsoCounts also)
        : m_wants(also == AlsoCounts::kReplacement ? brindle::DirectoryWatch::Wants::kModifiedAndReplaced
                                                   : brindle::DirectoryWatch::Wants::kModified) {}

    bool Start(std::string_view path, Handler* handler);
    bool Stop(std::string_view path);
    bool IsMonitoring(std::string_view directory) const;
    void End();

  private:
    using Completion = brindle::DirectoryCompletion;

    bool StartWorker();
    DirMon* FindDirectoryMon(std::string_view directory) const;
    DirMon* StartMonitoringDirectory(std::string_view directory);
    void StopMonitoringDirectory(const DirMon& directory);

    // On the worker:
    void Run();
    void Handle(const Completion& completion);
    void HandleLost(const Completion& completion);
    // Calls an operation of the file's first handler; false when the directory is no longer watched.
    using Operation = void (Handler::*)(const CStringA& path);
    bool Notify(std::uint64_t directory, const std::string& name, Operation operation);

    std::thread m_worker;  // none until the first file is watched
    mutable std::recursive_mutex m_lock;
    std::unique_ptr<brindle::DirectoryWatch> m_watch;  // made together with the worker
    brindle::Clock* m_clock = nullptr;                 // the worker's, taken when it starts
    std::unordered_map<std::string, std::unique_ptr<DirMon>> m_directories;  // by folded path
    std::unordered_map<std::uint64_t, DirMon*> m_byNumber;
    std::uint64_t m_lastNumber = 0;
    const brindle::DirectoryWatch::Wants m_wants;
};

bool FileMonitor::Monitor::Start(std::string_view path, Handler* handler) {
    std::string_view directory;
    std::string_view name;
    if (!handler || !SplitFilePath(path, directory, name)) return false;
    const std::lock_guard lock(m_lock);
    if (!m_watch && !StartWorker()) return false;
    DirMon* found = FindDirectoryMon(directory);
    if (!found) found = StartMonitoringDirectory(directory);
    if (!found) return false;
    found->Add(name, handler);
    return true;
}

bool FileMonitor::Monitor::StartWorker() {
    brindle::Result result;
    m_watch = brindle::CurrentDirectoryWatches().Open(result);
    if (!m_watch) return false;
    m_clock = &brindle::CurrentClock();
    try {
        m_worker = std::thread([self = shared_from_this()] { self->Run(); });
    } catch (const std::system_error&) {
        m_watch.reset();
    }
    return m_watch != nullptr;
}

bool FileMonitor::Monitor::Stop(std::string_view path) {
    std::string_view directory;
    std::string_view name;
    if (!SplitFilePath(path, directory, name)) return false;
    const std::lock_guard lock(m_lock);
    DirMon* found = FindDirectoryMon(directory);
    if (!found || !found->Remove(name)) return false;
    if (found->IsEmpty()) StopMonitoringDirectory(*found);
    return true;
}

bool FileMonitor::Monitor::IsMonitoring(std::string_view directory) const {
    const std::lock_guard lock(m_lock);
    if (directory.ends_with('/') || directory.ends_with('\\')) return FindDirectoryMon(directory) != nullptr;
    const std::string path(directory);
    return FindDirectoryMon(path + "/") || FindDirectoryMon(path + "\\");
}

FileMonitor::DirMon* FileMonitor::Monitor::FindDirectoryMon(std::string_view directory) const {
    const auto found = m_directories.find(Folded(directory));
    return found == m_directories.end() ? nullptr : found->second.get();
}

FileMonitor::DirMon* FileMonitor::Monitor::StartMonitoringDirectory(std::string_view directory) {
    const std::uint64_t number = ++m_lastNumber;
    if (!m_watch->Add(number, directory, m_wants).ok()) return nullptr;
    auto made = std::make_unique<DirMon>(number, directory);
    return m_byNumber[number] = (m_directories[Folded(directory)] = std::move(made)).get();
}

void FileMonitor::Monitor::StopMonitoringDirectory(const DirMon& directory) {
    m_watch->Remove(directory.Number());
    m_byNumber.erase(directory.Number());
    m_directories.erase(Folded(directory.Path()));
}

// From here on the worker finds no directory and calls nobody. Waits for it, unless this is the worker itself.
void FileMonitor::Monitor::End() {
    {
        const std::lock_guard lock(m_lock);  // a running handler has it
        m_byNumber.clear();
        m_directories.clear();
        if (!m_watch) return;
        m_watch->Close();
    }
    if (m_worker.get_id() == std::this_thread::get_id())
        m_worker.detach();
    else
        m_worker.join();
}

void FileMonitor::Monitor::Run() {
    Completion completion;
    while (m_watch->Wait(completion)) Handle(completion);
}

void FileMonitor::Monitor::Handle(const Completion& completion) {
    if (completion.lost != Completion::Lost::kNothing) return HandleLost(completion);
    bool tooSoon = false;
    {
        const std::lock_guard lock(m_lock);
        const auto found = m_byNumber.find(completion.directory);
        if (found == m_byNumber.end()) return;  // stopped meanwhile
        tooSoon = found->second->IsTooSoon(m_clock->MonotonicMilliseconds());
    }
    for (const brindle::DirectoryChange& change : completion.changes) {
        const bool passedOver = tooSoon && change.what == brindle::DirectoryChange::What::kModified;
        const Operation operation = passedOver ? &Handler::OnChangePassedOver : &Handler::OnFileChanged;
        if (!Notify(completion.directory, change.name, operation)) return;
    }
}

void FileMonitor::Monitor::HandleLost(const Completion& completion) {
    std::vector<std::string> names;
    {
        const std::lock_guard lock(m_lock);
        const auto found = m_byNumber.find(completion.directory);
        if (found == m_byNumber.end()) return;
        names = found->second->Names();
        if (completion.lost == Completion::Lost::kDirectory)
            found->second->ForgetCompletions();  // a new directory: its first completion counts
        else
            found->second->IsTooSoon(m_clock->MonotonicMilliseconds());
    }
    for (const std::string& name : names)
        if (!Notify(completion.directory, name, &Handler::OnChangesLost)) return;
}

bool FileMonitor::Monitor::Notify(std::uint64_t directory, const std::string& name, Operation operation) {
    const std::lock_guard lock(m_lock);
    const auto found = m_byNumber.find(directory);
    if (found == m_byNumber.end()) return false;
    if (Handler* handler = found->second->Find(name)) (handler->*operation)(found->second->Path() + name);
    return true;
}

FileMonitor::FileMonitor(AlsoCounts also) : m_monitor(std::make_shared<Monitor>(also)) {}

FileMonitor::~FileMonitor() {
    m_monitor->End();
}

bool FileMonitor::StartMonitoringFile(const CStringA& path, Handler* handler) {
    return m_monitor->Start(path.view(), handler);
}

bool FileMonitor::StopMonitoringFile(const CStringA& path) {
    return m_monitor->Stop(path.view());
}

bool FileMonitor::IsMonitoringDirectory(const CStringA& directory) const {
    return m_monitor->IsMonitoring(directory.view());
}
