// Programs by posix_spawn. What a command line names is found here; the kernel says whether it can run.
//
// Cannot: run a text file that does not say its interpreter ("#!"); it has a bad format, there is no shell to fall
// back on. Documents need xdg-open on the PATH. Tests: programs_test.cpp, programs_posix_test.cpp.
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>

#include "brindle/framework/letter_case.h"
#include "brindle/framework/never_destroyed.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/environment.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

constexpr std::size_t kMostCandidates = 64;  // places where an unquoted program may end
constexpr int kOpenerMilliseconds = 1000;

// errno of a start as the library says it.
int CodeOf(int error) {
    switch (error) {
        case 0:
            return kProgramStarted;
        case ENOMEM:
        case EAGAIN:
        case E2BIG:
            return kProgramNoMemory;
        case ENOENT:
        case ENAMETOOLONG:
            return kProgramNotFound;
        case ENOTDIR:
        case ELOOP:
            return kProgramFolderNotFound;
        case EACCES:
        case EPERM:
        case EISDIR:
        case ETXTBSY:
            return kProgramAccessDenied;
        case ENOEXEC:
        case ELIBBAD:
        case EINVAL:
            return kProgramBadFormat;
        default:
            return kProgramFailed;
    }
}

struct Found {
    int code = kProgramNotFound;
    std::string systemPath;
};

bool IsFile(const std::string& systemPath) {
    struct stat status {};
    return stat(systemPath.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// Whether the system would run this file; one that exists and may not be run is access denied.
int Runnable(const std::string& systemPath) {
    struct stat status {};
    if (systemPath.empty() || stat(systemPath.c_str(), &status) != 0) return kProgramNotFound;
    if (!S_ISREG(status.st_mode)) return kProgramAccessDenied;
    return access(systemPath.c_str(), X_OK) == 0 ? kProgramStarted : kProgramAccessDenied;
}

bool HasSeparator(std::string_view name) {
    return name.find_first_of("/\\") != name.npos || (name.size() > 1 && name[1] == ':');
}

bool FolderExists(const std::string& systemPath) {
    const std::size_t slash = systemPath.rfind('/');
    if (slash == std::string::npos || slash == 0) return true;
    struct stat status {};
    return stat(systemPath.substr(0, slash).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Found FindByPath(std::string_view hostPath) {
    const std::string systemPath = CurrentFiles().SystemPath(hostPath, false);
    const int code = Runnable(systemPath);
    if (code == kProgramNotFound && !FolderExists(systemPath)) return {kProgramFolderNotFound, {}};
    return {code, systemPath};
}

Found FindAlongPath(std::string_view name) {
    std::string folders;
    if (!CurrentEnvironment().Variable("PATH", folders)) folders = "/usr/local/bin:/usr/bin:/bin";
    const std::string file = ToSystemText(name);
    Found best;
    for (std::size_t begin = 0; begin <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string folder = folders.substr(begin, end - begin);
        begin = end + 1;
        std::string path = (folder.empty() ? "." : folder) + "/" + file;
        const int code = Runnable(path);
        if (code == kProgramStarted) return {code, std::move(path)};
        if (code == kProgramAccessDenied && IsFile(path)) best.code = code;
    }
    return best;
}

Found FindExactly(std::string_view name) {
    if (name.empty() || name.find('\0') != name.npos) return {};
    if (HasSeparator(name)) return FindByPath(name);
    // With the folder spelled out, so that the kernel looks nowhere else.
    const Found here = FindByPath("./" + std::string(name));
    if (here.code == kProgramStarted) return here;
    Found found = FindAlongPath(name);
    if (found.code == kProgramNotFound && IsFile(here.systemPath)) found.code = here.code;
    return found;
}

Found FindProgram(std::string_view name) {
    Found found = FindExactly(name);
    const std::size_t separator = name.find_last_of("/\\:");
    const bool hasExtension = name.find('.', separator == name.npos ? 0 : separator) != name.npos;
    if (found.code == kProgramStarted || hasExtension || name.empty()) return found;
    const Found withExtension = FindExactly(std::string(name) + ".exe");
    return withExtension.code == kProgramStarted ? withExtension : found;
}

// "https://x", "mailto:x"; a single letter is a drive.
bool IsAddress(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == text.npos || colon < 2 || !IsAsciiLetter(text[0])) return false;
    return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon), [](char c) {
        return IsAsciiLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
    });
}

std::string_view WithoutQuotes(std::string_view text) {
    const bool pair = text.size() > 1 && text.front() == '"' && text.back() == '"';
    return pair ? text.substr(1, text.size() - 2) : text;
}

std::string Absolute(const std::string& systemPath) {
    if (systemPath.starts_with('/')) return systemPath;
    return ToSystemText(CurrentFiles().CurrentDirectory()) + "/" + systemPath;
}

// What a started program gets besides its arguments.
class SpawnSettings {
  public:
    SpawnSettings(bool hidden, const std::string& folder) {
        posix_spawnattr_init(&m_attributes);
        posix_spawn_file_actions_init(&m_actions);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        bool ok = posix_spawnattr_setsigmask(&m_attributes, &none) == 0 &&
                  posix_spawnattr_setsigdefault(&m_attributes, &all) == 0 &&
                  posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                              POSIX_SPAWN_SETSIGDEF) == 0;
        if (!folder.empty()) ok = posix_spawn_file_actions_addchdir_np(&m_actions, folder.c_str()) == 0 && ok;
        for (int fd = 0; hidden && fd < 3; ++fd)
            ok = posix_spawn_file_actions_addopen(&m_actions, fd, "/dev/null", fd == 0 ? O_RDONLY : O_WRONLY,
                                                  0) == 0 &&
                 ok;
        m_ok = posix_spawn_file_actions_addclosefrom_np(&m_actions, 3) == 0 && ok;
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    // 0 or the system's error.
    int Spawn(const std::string& path, char* const* arguments, pid_t& pid) const {
        return m_ok ? posix_spawn(&pid, path.c_str(), &m_actions, &m_attributes, arguments, environ) : ENOMEM;
    }

  private:
    posix_spawnattr_t m_attributes;
    posix_spawn_file_actions_t m_actions;
    bool m_ok = false;
};

class PosixPrograms final : public Programs {
  public:
    ProgramPlan Plan(std::string_view commandLine) override {
        const ProgramText text = SplitProgram(commandLine);
        const bool quoted = text.program.data() != commandLine.data() && *(text.program.data() - 1) == '"';
        ProgramPlan plan = PlanFor(text);
        if (quoted || plan.code == kProgramStarted) return plan;
        // The program's own path may hold blanks.
        const std::string_view whole(text.program.data(), text.program.size() + text.arguments.size());
        std::size_t end = text.program.size();
        for (std::size_t tried = 0; tried < kMostCandidates && end < whole.size(); ++tried) {
            const std::size_t begin = whole.find_first_not_of(" \t", end);
            if (begin == whole.npos) break;
            end = std::min(whole.find_first_of(" \t", begin), whole.size());
            ProgramPlan longer = PlanFor({whole.substr(0, end), whole.substr(end)});
            if (longer.code == kProgramStarted) return longer;
        }
        return plan;
    }

    int Start(const ProgramPlan& plan, bool hidden) override {
        Reap();
        if (plan.code != kProgramStarted) return plan.code;
        pid_t pid = 0;
        return Spawn(plan, {}, hidden, pid);
    }

    int Open(std::string_view document, std::string_view directory, bool hidden) override {
        Reap();
        const std::string_view name = WithoutQuotes(document);
        const std::string folder =
            CurrentFiles().IsFolder(directory) ? CurrentFiles().SystemPath(directory, false) : std::string();
        if (IsAddress(name)) return OpenWithOpener(ToSystemText(name), folder, hidden);
        if (Found program = FindProgram(name); program.code == kProgramStarted) {
            ProgramPlan plan;
            plan.systemPath = Absolute(program.systemPath);
            pid_t pid = 0;
            return Spawn(plan, folder, hidden, pid);
        }
        const std::string path = CurrentFiles().SystemPath(name, false);
        struct stat status {};
        if (path.empty() || stat(path.c_str(), &status) != 0)
            return path.empty() || FolderExists(path) ? kProgramNotFound : kProgramFolderNotFound;
        return OpenWithOpener(Absolute(path), folder, hidden);
    }

    void Reap() override {
        if (!m_started.load(std::memory_order_acquire)) return;
        const std::lock_guard lock(m_mutex);
        // Also gone is one that somebody else has waited for.
        std::erase_if(m_children, [](pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; });
        m_started.store(!m_children.empty(), std::memory_order_release);
    }

    void WaitForAll() override {
        for (;;) {
            pid_t child = 0;
            {
                const std::lock_guard lock(m_mutex);
                if (m_children.empty()) return;
                child = m_children.back();
            }
            while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
            }
            const std::lock_guard lock(m_mutex);
            std::erase(m_children, child);
        }
    }

  private:
    static ProgramPlan PlanFor(const ProgramText& text) {
        Found found = FindProgram(text.program);
        if (found.code != kProgramStarted) found.systemPath.clear();
        return {found.code, std::string(text.program), std::move(found.systemPath),
                SplitArguments(text.arguments)};
    }

    // The program's code; `pid` is set when it runs.
    int Spawn(const ProgramPlan& plan, const std::string& folder, bool hidden, pid_t& pid) {
        std::vector<std::string> texts = {plan.systemPath};
        for (const std::string& argument : plan.arguments) texts.push_back(ToSystemText(argument));
        std::vector<char*> arguments;
        for (std::string& text : texts) arguments.push_back(text.data());
        arguments.push_back(nullptr);
        const SpawnSettings settings(hidden, folder);
        const std::lock_guard lock(m_mutex);
        m_children.reserve(m_children.size() + 1);  // nothing may fail once it runs
        if (const int error = settings.Spawn(plan.systemPath, arguments.data(), pid)) return CodeOf(error);
        m_children.push_back(pid);
        m_started.store(true, std::memory_order_release);
        return kProgramStarted;
    }

    int OpenWithOpener(const std::string& systemText, const std::string& folder, bool hidden) {
        const Found opener = FindAlongPath("xdg-open");
        if (opener.code != kProgramStarted) return kProgramNoOpener;
        ProgramPlan plan;
        plan.systemPath = opener.systemPath;
        FromSystemText(systemText, plan.arguments.emplace_back());
        pid_t pid = 0;
        const int code = Spawn(plan, folder, hidden, pid);
        return code == kProgramStarted ? OpenerVerdict(pid) : code;
    }

    // What an opener that ends soon says; one that still runs has found something to open with.
    int OpenerVerdict(pid_t pid) {
        const auto handle = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
        if (handle < 0) return kProgramStarted;
        pollfd ended = {handle, POLLIN, 0};
        const int ready = poll(&ended, 1, kOpenerMilliseconds);
        close(handle);
        const std::lock_guard lock(m_mutex);
        int status = 0;
        if (ready <= 0 || waitpid(pid, &status, WNOHANG) != pid) return kProgramStarted;
        std::erase(m_children, pid);
        if (!WIFEXITED(status)) return kProgramFailed;
        constexpr int kNoFile = 2;
        constexpr int kNoApplication = 3;
        const int exit = WEXITSTATUS(status);
        if (exit == 0) return kProgramStarted;
        if (exit == kNoFile) return kProgramNotFound;
        return exit == kNoApplication ? kProgramNoOpener : kProgramFailed;
    }

    std::mutex m_mutex;
    std::vector<pid_t> m_children;  // guarded by m_mutex
    std::atomic<bool> m_started{false};
};

}  // namespace

Programs& BackendPrograms() noexcept {
    static NeverDestroyed<PosixPrograms> programs;
    return *programs;
}

}  // namespace brindle
