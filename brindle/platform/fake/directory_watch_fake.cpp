#include "brindle/platform/fake/directory_watch_fake.h"

#include <algorithm>
#include <deque>
#include <set>

namespace brindle {
namespace {

using Lost = DirectoryCompletion::Lost;

std::string WithoutSeparator(std::string path) {
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\')) path.pop_back();
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

}  // namespace

struct FakeDirectoryWatches::World {
    std::mutex mutex;
    std::condition_variable changed;
    std::set<std::string> directories;
    std::vector<Watch*> watches;
    bool failOpening = false;
};

class FakeDirectoryWatches::Watch final : public DirectoryWatch {
  public:
    explicit Watch(std::shared_ptr<World> world) : m_world(std::move(world)) {
        m_world->watches.push_back(this);
    }
    ~Watch() override {
        const std::lock_guard lock(m_world->mutex);
        std::erase(m_world->watches, this);
        m_world->changed.notify_all();
    }

    Result Add(std::uint64_t directory, std::string_view hostPath, Wants wants) override {
        const std::lock_guard lock(m_world->mutex);
        std::string path = WithoutSeparator(std::string(hostPath));
        if (!m_world->directories.contains(path))
            return Result::Error(ErrorCode::kNotFound, std::string(hostPath) + ": no such folder");
        m_watched[directory] = {std::move(path), wants};
        return {};
    }

    void Remove(std::uint64_t directory) override {
        const std::lock_guard lock(m_world->mutex);
        m_watched.erase(directory);
    }

    bool Wait(DirectoryCompletion& completion) override {
        std::unique_lock lock(m_world->mutex);
        m_waiting = m_ready.empty();
        m_world->changed.notify_all();
        m_world->changed.wait(lock, [this] { return m_closed || !m_ready.empty(); });
        m_waiting = false;
        if (m_closed) return false;
        completion = std::move(m_ready.front());
        m_ready.pop_front();
        return true;
    }

    void Close() noexcept override {
        const std::lock_guard lock(m_world->mutex);
        m_closed = true;
        m_world->changed.notify_all();
    }

    // The world's mutex is held for these.
    void Tell(const std::string& path, const std::vector<DirectoryChange>& changes) {
        for (const auto& [directory, watched] : m_watched) {
            if (watched.path != path) continue;
            DirectoryCompletion completion{directory, Lost::kNothing, {}};
            for (const DirectoryChange& change : changes)
                if (IsWanted(change, watched.wants)) Include(change, completion.changes);
            if (!completion.changes.empty()) m_ready.push_back(std::move(completion));
        }
    }
    void TellLost(Lost lost, const std::string* path) {
        for (const auto& [directory, watched] : m_watched)
            if (!path || watched.path == *path) m_ready.push_back({directory, lost, {}});
    }
    bool IsAtRest() const { return m_ready.empty() && m_waiting && !m_closed; }

  private:
    struct Watched {
        std::string path;
        Wants wants;
    };
    static bool IsWanted(const DirectoryChange& change, Wants wants) {
        return change.what == DirectoryChange::What::kModified || wants == Wants::kModifiedAndReplaced;
    }

    // Each name once.
    static void Include(const DirectoryChange& change, std::vector<DirectoryChange>& changes) {
        const auto same = std::find_if(changes.begin(), changes.end(), [&](const DirectoryChange& other) {
            return other.name == change.name;
        });
        if (same == changes.end())
            changes.push_back(change);
        else if (change.what == DirectoryChange::What::kReplaced)
            same->what = change.what;
    }

    std::shared_ptr<World> m_world;
    std::map<std::uint64_t, Watched> m_watched;
    std::deque<DirectoryCompletion> m_ready;
    bool m_waiting = false;
    bool m_closed = false;
};

FakeDirectoryWatches::FakeDirectoryWatches() : m_world(std::make_shared<World>()) {}
FakeDirectoryWatches::~FakeDirectoryWatches() = default;

std::unique_ptr<DirectoryWatch> FakeDirectoryWatches::Open(Result& result) {
    const std::lock_guard lock(m_world->mutex);
    if (!m_world->failOpening) return std::make_unique<Watch>(m_world);
    result = Result::Error(ErrorCode::kLimit, "the system has no more watches or files to give");
    return nullptr;
}

void FakeDirectoryWatches::AddDirectory(const std::string& path) {
    const std::lock_guard lock(m_world->mutex);
    const std::string plain = WithoutSeparator(path);
    m_world->directories.insert(plain);
    for (Watch* watch : m_world->watches) watch->TellLost(Lost::kDirectory, &plain);
    m_world->changed.notify_all();
}

void FakeDirectoryWatches::RemoveDirectory(const std::string& path) {
    const std::lock_guard lock(m_world->mutex);
    const std::string plain = WithoutSeparator(path);
    if (m_world->directories.erase(plain) == 0) return;
    for (Watch* watch : m_world->watches) watch->TellLost(Lost::kDirectory, &plain);
    m_world->changed.notify_all();
}

void FakeDirectoryWatches::Change(const std::string& path, const std::vector<DirectoryChange>& changes) {
    const std::lock_guard lock(m_world->mutex);
    const std::string plain = WithoutSeparator(path);
    for (Watch* watch : m_world->watches) watch->Tell(plain, changes);
    m_world->changed.notify_all();
}

void FakeDirectoryWatches::Modify(const std::string& path, const std::string& name) {
    Change(path, {{DirectoryChange::What::kModified, name}});
}

void FakeDirectoryWatches::Overflow() {
    const std::lock_guard lock(m_world->mutex);
    for (Watch* watch : m_world->watches) watch->TellLost(Lost::kOverflow, nullptr);
    m_world->changed.notify_all();
}

void FakeDirectoryWatches::FailOpening(bool fail) {
    const std::lock_guard lock(m_world->mutex);
    m_world->failOpening = fail;
}

void FakeDirectoryWatches::WaitUntilTaken() {
    std::unique_lock lock(m_world->mutex);
    m_world->changed.wait(lock, [this] {
        return std::all_of(m_world->watches.begin(), m_world->watches.end(),
                           [](const Watch* watch) { return watch->IsAtRest(); });
    });
}

}  // namespace brindle
