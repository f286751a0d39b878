// Directory watches on inotify: one descriptor and one read for all directories of a watch.
//
// A directory that goes away is waited for at its nearest existing ancestor, so that nothing polls; what happens
// there is looked at only when it concerns the next part of the path. Tests: directory_watch_test.cpp and
// directory_watch_inotify_test.cpp.
//
// Cannot: see writes through a memory map, nor writes of other machines to a network file system, nor those that reach
// a file through a link in another directory; tell that a directory was moved together with one above it, that a
// symbolic link in its path now points elsewhere, or that a deleted directory is gone while a program still has it
// open.
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "brindle/platform/directory_watch.h"
#include "brindle/platform/files.h"
#include "brindle/platform/linux/file_descriptor.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

constexpr std::uint32_t kWatchMask = IN_MODIFY | IN_MOVE_SELF | IN_DELETE_SELF | IN_EXCL_UNLINK;
constexpr std::uint32_t kReplacedMask = IN_MOVED_TO;
constexpr std::uint32_t kAwaitMask = IN_CREATE | IN_MOVED_TO | IN_MOVE_SELF | IN_DELETE_SELF;
constexpr std::size_t kReadSize = 65'536;

using Lost = DirectoryCompletion::Lost;

Result WatchError(std::string_view hostPath, int error) {
    const auto because = [&](ErrorCode code, const char* why) {
        return Result::Error(code, std::string(hostPath) + ": " + why);
    };
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return because(ErrorCode::kNotFound, "no such folder");
        case EACCES:
            return because(ErrorCode::kAccess, "access denied");
        case ENOSPC:
            return because(ErrorCode::kLimit, "the system watches as many folders as it may");
        default:
            return because(ErrorCode::kFailed, ("system error " + std::to_string(error)).c_str());
    }
}

// The path of the system, independent of a later change of the current directory; empty when there is none.
std::string AbsolutePath(std::string_view hostPath) {
    std::string path = CurrentFiles().SystemPath(hostPath, false);
    if (path.empty() || path[0] == '/') return path;
    const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), &std::free);
    return folder ? std::string(folder.get()) + "/" + path : std::string();
}

// "/a/b" for "/a/b/c" and "/a/b/c/"; "/" for "/a" and for itself.
std::string ParentOf(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string_view::npos ? "/" : std::string(path.substr(0, slash));
}

bool IsThere(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

struct Watched {
    std::string path;  // absolute
    bool replacedToo = false;
    int descriptor = -1;         // of the directory itself; -1: it is gone
    int awaitedAt = -1;          // of the ancestor where it is waited for
    std::string awaitedName;     // what must appear there
    std::uint64_t read = 0;      // the last read that brought something of it ...
    std::size_t completion = 0;  // ... and which completion of that read is its
};

// Whom a watch descriptor of the system concerns. Two paths may lead to one directory, and both share a descriptor.
struct Concerned {
    std::vector<std::uint64_t> watching;
    std::vector<std::uint64_t> awaiting;
};

class InotifyWatch final : public DirectoryWatch {
  public:
    InotifyWatch(int inotify, int wake) : m_inotify(inotify), m_wake(wake) {}

    Result Add(std::uint64_t directory, std::string_view hostPath, Wants wants) override {
        Watched watched;
        watched.path = AbsolutePath(hostPath);
        watched.replacedToo = wants == Wants::kModifiedAndReplaced;
        if (watched.path.empty()) return WatchError(hostPath, ENOENT);
        const std::lock_guard lock(m_lock);
        if (!Attach(directory, watched)) return WatchError(hostPath, errno);
        m_directories.emplace(directory, std::move(watched));
        return {};
    }

    void Remove(std::uint64_t directory) override {
        const std::lock_guard lock(m_lock);
        const auto found = m_directories.find(directory);
        if (found == m_directories.end()) return;
        Leave(std::exchange(found->second.descriptor, -1), directory, &Concerned::watching);
        StopAwaiting(directory, found->second);
        m_directories.erase(found);
    }

    bool Wait(DirectoryCompletion& completion) override {
        for (;;) {
            if (m_next < m_count) {
                std::swap(completion, m_completions[m_next++]);
                return !m_closed.load(std::memory_order_relaxed);
            }
            pollfd polled[] = {{m_inotify.get(), POLLIN, 0}, {m_wake.get(), POLLIN, 0}};
            if (poll(polled, std::size(polled), -1) < 0 && errno != EINTR) return false;
            if (polled[1].revents != 0) return false;
            if (polled[0].revents != 0) Read();
        }
    }

    void Close() noexcept override {
        m_closed.store(true, std::memory_order_relaxed);
        const std::uint64_t one = 1;
        static_cast<void>(write(m_wake.get(), &one, sizeof(one)));
    }

  private:
    // Begins to watch the directory itself; false with errno.
    bool Attach(std::uint64_t directory, Watched& watched) {
        const std::uint32_t mask = kWatchMask | (watched.replacedToo ? kReplacedMask : 0);
        const int descriptor =
            inotify_add_watch(m_inotify.get(), watched.path.c_str(), mask | IN_ONLYDIR | IN_MASK_ADD);
        if (descriptor < 0) return false;
        watched.descriptor = descriptor;
        m_concerned[descriptor].watching.push_back(directory);
        return true;
    }

    // Takes a directory off a descriptor, which ends with the last one it concerns.
    void Leave(int descriptor, std::uint64_t directory, std::vector<std::uint64_t> Concerned::*list) {
        const auto found = m_concerned.find(descriptor);
        if (found == m_concerned.end()) return;
        std::erase(found->second.*list, directory);
        if (!found->second.watching.empty() || !found->second.awaiting.empty()) return;
        m_concerned.erase(found);
        inotify_rm_watch(m_inotify.get(), descriptor);
    }
    void StopAwaiting(std::uint64_t directory, Watched& watched) {
        Leave(std::exchange(watched.awaitedAt, -1), directory, &Concerned::awaiting);
    }

    // Watches a directory that is gone as soon as it is there again; tells whether it is by now.
    bool Await(std::uint64_t directory, Watched& watched) {
        constexpr int kAttempts = 100;  // directories may come and go meanwhile
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            StopAwaiting(directory, watched);
            if (Attach(directory, watched)) return true;
            std::string child = watched.path;
            std::string parent = ParentOf(child);
            int at = AwaitAt(parent);
            while (at < 0 && parent != "/") {
                child = std::exchange(parent, ParentOf(parent));
                at = AwaitAt(parent);
            }
            if (at < 0) return false;
            watched.awaitedAt = at;
            watched.awaitedName = child.substr(child.find_last_of('/', child.find_last_not_of('/')) + 1);
            watched.awaitedName.erase(watched.awaitedName.find_last_not_of('/') + 1);
            m_concerned[at].awaiting.push_back(directory);
            if (!IsThere(child)) return false;  // it will be told when it comes
        }
        return false;
    }
    int AwaitAt(const std::string& folder) {
        return inotify_add_watch(m_inotify.get(), folder.c_str(), kAwaitMask | IN_ONLYDIR | IN_MASK_ADD);
    }

    void Read() {
        alignas(inotify_event) static thread_local std::array<char, kReadSize> buffer;
        const ssize_t size = read(m_inotify.get(), buffer.data(), buffer.size());
        const std::lock_guard lock(m_lock);
        ++m_reads;
        m_next = m_count = 0;
        for (ssize_t at = 0; at < size;) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + at, sizeof(event));
            const char* name = buffer.data() + at + sizeof(event);
            Take(event, std::string_view(name, event.len == 0 ? 0 : strnlen(name, event.len)));
            at += static_cast<ssize_t>(sizeof(event) + event.len);
        }
        for (std::size_t i = 0; i < m_count; ++i) DropRepeated(m_completions[i].changes);
    }

    void Take(const inotify_event& event, std::string_view name) {
        if (event.mask & IN_Q_OVERFLOW) return TakeOverflow();
        const auto found = m_concerned.find(event.wd);
        if (found == m_concerned.end()) return;  // of a directory that was removed meanwhile
        if (event.mask & (IN_MOVE_SELF | IN_IGNORED)) return TakeGone(event);
        if (!found->second.awaiting.empty() && (event.mask & (IN_CREATE | IN_MOVED_TO)))
            TakeArrival(event.wd, name);
        if (event.mask & IN_ISDIR) return;
        if (event.mask & IN_MODIFY) TakeChange(event.wd, name, DirectoryChange::What::kModified);
        if (event.mask & IN_MOVED_TO) TakeChange(event.wd, name, DirectoryChange::What::kReplaced);
    }

    void TakeChange(int descriptor, std::string_view name, DirectoryChange::What what) {
        const auto concerned = m_concerned.find(descriptor);  // an arrival may have changed the table
        if (concerned == m_concerned.end()) return;
        for (const std::uint64_t directory : concerned->second.watching) {
            Watched& watched = m_directories.at(directory);
            if (what == DirectoryChange::What::kReplaced && !watched.replacedToo) continue;
            std::vector<DirectoryChange>& changes = CompletionOf(directory, watched).changes;
            changes.emplace_back().what = what;
            FromSystemText(name, changes.back().name);
        }
    }

    void TakeOverflow() {
        for (const auto& [directory, watched] : m_directories) Begin(directory).lost = Lost::kOverflow;
    }

    // The directory of a descriptor was moved away, deleted or unmounted. What waited in it waits further up.
    void TakeGone(const inotify_event& event) {
        if (!(event.mask & IN_IGNORED)) inotify_rm_watch(m_inotify.get(), event.wd);
        const auto gone = m_concerned.extract(event.wd);
        for (const std::uint64_t directory : gone.mapped().watching) {
            Watched& watched = m_directories.at(directory);
            watched.descriptor = -1;
            Await(directory, watched);
            Begin(directory).lost = Lost::kDirectory;
        }
        for (const std::uint64_t directory : gone.mapped().awaiting) {
            Watched& watched = m_directories.at(directory);
            watched.awaitedAt = -1;
            if (Await(directory, watched)) Begin(directory).lost = Lost::kDirectory;
        }
    }

    // Something appeared where directories are waited for.
    void TakeArrival(int descriptor, std::string_view name) {
        const std::vector<std::uint64_t> awaiting = m_concerned.at(descriptor).awaiting;
        for (const std::uint64_t directory : awaiting) {
            Watched& watched = m_directories.at(directory);
            if (watched.awaitedName != name) continue;
            if (Await(directory, watched)) Begin(directory).lost = Lost::kDirectory;
        }
    }

    // A new completion of the present read.
    DirectoryCompletion& Begin(std::uint64_t directory) {
        if (m_count == m_completions.size()) m_completions.emplace_back();
        DirectoryCompletion& completion = m_completions[m_count++];
        completion.directory = directory;
        completion.lost = Lost::kNothing;
        completion.changes.clear();
        return completion;
    }
    // The one completion for the changes that the present read brings of a directory.
    DirectoryCompletion& CompletionOf(std::uint64_t directory, Watched& watched) {
        if (watched.read != m_reads) {
            watched.read = m_reads;
            watched.completion = m_count;
            return Begin(directory);
        }
        return m_completions[watched.completion];
    }

    static void DropRepeated(std::vector<DirectoryChange>& changes) {
        if (changes.size() < 2) return;
        std::unordered_map<std::string, std::size_t> seen;
        std::size_t kept = 0;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const auto [first, isNew] = seen.try_emplace(changes[i].name, kept);
            if (isNew)
                std::swap(changes[kept++], changes[i]);
            else if (changes[i].what == DirectoryChange::What::kReplaced)
                changes[first->second].what = DirectoryChange::What::kReplaced;
        }
        changes.resize(kept);
    }

    const FileDescriptor m_inotify;
    const FileDescriptor m_wake;
    std::atomic<bool> m_closed{false};
    std::mutex m_lock;  // guards the two tables; the rest belongs to the thread that waits
    std::unordered_map<std::uint64_t, Watched> m_directories;
    std::unordered_map<int, Concerned> m_concerned;
    std::uint64_t m_reads = 0;
    std::vector<DirectoryCompletion>
        m_completions;  // of the last read; those from m_next to m_count are to come
    std::size_t m_next = 0;
    std::size_t m_count = 0;
};

class InotifyWatches final : public DirectoryWatches {
  public:
    std::unique_ptr<DirectoryWatch> Open(Result& result) override {
        const int inotify = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
        const int wake = inotify < 0 ? -1 : eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        auto watch = inotify < 0 ? nullptr : std::make_unique<InotifyWatch>(inotify, wake);
        if (wake >= 0) return watch;
        result = Result::Error(ErrorCode::kLimit, "the system has no more watches or files to give");
        return nullptr;
    }
};

}  // namespace

DirectoryWatches& BackendDirectoryWatches() noexcept {
    constinit static InotifyWatches watches;
    return watches;
}

}  // namespace brindle
