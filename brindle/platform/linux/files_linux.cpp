// The Linux files service: whole files read within a limit and replaced in one step.
//
// Cannot: read or replace anything but regular files (folders, pipes and devices are refused without waiting
// on them); keep the owner of a file it replaces when the process may not give files away.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "brindle/platform/backend.h"
#include "brindle/platform/host_path.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

// errno as the library says it: the one place where system error codes are mapped.
Result SystemError(std::string_view hostPath, int error) {
    const auto because = [&](ErrorCode code, const char* why) {
        return Result::Error(code, std::string(hostPath) + ": " + why);
    };
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return because(ErrorCode::kNotFound, "no such file or folder");
        case EACCES:
        case EPERM:
            return because(ErrorCode::kAccess, "access denied");
        case EROFS:
            return because(ErrorCode::kAccess, "read-only file system");
        case EISDIR:
            return because(ErrorCode::kAccess, "is a folder");
        case ELOOP:
            return because(ErrorCode::kFailed, "too many links in the path");
        case ENAMETOOLONG:
            return because(ErrorCode::kInvalidArgument, "name too long");
        case ENOSPC:
        case EDQUOT:
            return because(ErrorCode::kFailed, "disk full");
        case EFBIG:
            return because(ErrorCode::kLimit, "file too large");
        case EIO:
            return because(ErrorCode::kFailed, "input/output error");
        default:
            return because(ErrorCode::kFailed, ("system error " + std::to_string(error)).c_str());
    }
}

// The path cannot name a file at all.
Result NoPath(std::string_view hostPath) {
    return Result::Error(ErrorCode::kInvalidArgument,
                         hostPath.empty() ? "empty path" : "path with a zero byte in it");
}

class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { Close(); }
    bool ok() const { return m_fd >= 0; }
    int get() const { return m_fd; }
    // 0 or the system's error.
    int Close() {
        if (m_fd < 0) return 0;
        const int result = close(std::exchange(m_fd, -1));
        return result == 0 || errno == EINTR ? 0 : errno;
    }

  private:
    int m_fd;
};

class LinuxFolderView final : public FolderView {
  public:
    bool HasEntry(const std::string& systemPath) override {
        struct stat status {};
        return stat(systemPath.c_str(), &status) == 0;
    }

    void ForEachName(const std::string& folder,
                     const std::function<void(std::string_view)>& callback) override {
        const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), &closedir);
        if (!open) return;
        while (const dirent* entry = readdir(open.get())) callback(entry->d_name);
    }

    std::string CurrentFolder() override {
        const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), &std::free);
        return folder && *folder == '/' ? folder.get() : "";
    }
};

// Reads until the end of the file; 0 or the system's error, EFBIG when there is more than the limit.
int ReadUpTo(int fd, std::uint64_t limit, std::string& bytes) {
    constexpr std::size_t kChunk = 256 * 1024;
    for (;;) {
        const std::size_t have = bytes.size();
        // One byte more than allowed shows that there is more.
        const auto want = static_cast<std::size_t>(std::min<std::uint64_t>(kChunk - 1, limit - have)) + 1;
        bytes.resize(have + want);
        const ssize_t got = read(fd, bytes.data() + have, want);
        bytes.resize(have + (got > 0 ? static_cast<std::size_t>(got) : 0));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errno;
        if (got == 0) return 0;
        if (bytes.size() > limit) return EFBIG;
    }
}

int WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A file beside its target that takes its place in the end, or disappears.
class ReplacementFile {
  public:
    // `old` is the status of the file to be replaced, or null.
    ReplacementFile(std::string target, const struct stat* old) : m_target(std::move(target)), m_old(old) {}
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ~ReplacementFile() {
        if (!m_path.empty()) unlink(m_path.c_str());
    }

    // All of these: 0 or the system's error.
    int Write(std::string_view bytes) {
        // What replaces a private file must not be readable for a moment.
        const int fd = Create(m_old ? 0600 : 0666);
        if (fd < 0) return errno;
        FileDescriptor file(fd);
        if (const int error = WriteAll(fd, bytes)) return error;
        if (m_old) {
            if (fchown(fd, m_old->st_uid, m_old->st_gid) != 0 && errno != EPERM) return errno;
            if (fchmod(fd, m_old->st_mode & 07777) != 0) return errno;
        }
        if (fsync(fd) != 0) return errno;
        return file.Close();
    }
    int TakePlace() {
        if (rename(m_path.c_str(), m_target.c_str()) != 0) return errno;
        m_path.clear();
        // The file is replaced; a folder that cannot be flushed does not undo that.
        const FileDescriptor folder(open(FolderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder.ok()) static_cast<void>(fsync(folder.get()));
        return 0;
    }

  private:
    int Create(mode_t mode) {
        static constinit std::atomic<unsigned> counter{0};
        for (int attempt = 0; attempt < 100; ++attempt) {
            std::string path = FolderOf(m_target) + "/.brindle-" + std::to_string(getpid()) + "-" +
                               std::to_string(counter.fetch_add(1)) + ".tmp";
            const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
            if (fd >= 0) m_path = std::move(path);
            if (fd >= 0 || errno != EEXIST) return fd;
        }
        return -1;
    }

    std::string m_target;
    const struct stat* m_old;
    std::string m_path;  // empty: nothing to remove
};

// Where writing to `path` ends up: behind a symbolic link when it names one.
std::string BehindLink(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

class LinuxFiles final : public Files {
  public:
    bool Exists(std::string_view hostPath) override {
        const std::string path = SystemPath(hostPath, false);
        LinuxFolderView view;
        return !path.empty() && view.HasEntry(path);
    }

    Result ReadWhole(std::string_view hostPath, std::uint64_t limit, std::string& bytes) override {
        const std::string path = SystemPath(hostPath, false);
        if (path.empty()) return NoPath(hostPath);
        struct stat status {};
        if (stat(path.c_str(), &status) != 0) return SystemError(hostPath, errno);
        if (Result refused = RefuseUnlessRegular(hostPath, status); !refused.ok()) return refused;
        // Should the file become a pipe in between, opening does not wait either.
        FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        if (!file.ok() || fstat(file.get(), &status) != 0) return SystemError(hostPath, errno);
        if (Result refused = RefuseUnlessRegular(hostPath, status); !refused.ok()) return refused;
        std::string read;
        if (status.st_size > 0 && static_cast<std::uint64_t>(status.st_size) > limit)
            return SystemError(hostPath, EFBIG);
        if (const int error = ReadUpTo(file.get(), limit, read)) return SystemError(hostPath, error);
        bytes = std::move(read);
        return {};
    }

    Result WriteWhole(std::string_view hostPath, std::string_view bytes) override {
        const std::string path = SystemPath(hostPath, true);
        if (path.empty()) return NoPath(hostPath);
        struct stat old {};
        const bool exists = stat(path.c_str(), &old) == 0;
        if (exists) {
            if (Result refused = RefuseUnlessRegular(hostPath, old); !refused.ok()) return refused;
            if (access(path.c_str(), W_OK) != 0) return SystemError(hostPath, errno);
        }
        ReplacementFile replacement(exists ? BehindLink(path) : path, exists ? &old : nullptr);
        if (const int error = replacement.Write(bytes)) return SystemError(hostPath, error);
        if (const int error = replacement.TakePlace()) return SystemError(hostPath, error);
        return {};
    }

    std::string CurrentDirectory() override {
        LinuxFolderView view;
        std::string hostPath;
        FromSystemText(view.CurrentFolder(), hostPath);
        return hostPath;
    }

    Result SetCurrentDirectory(std::string_view hostPath) override {
        const std::string path = SystemPath(hostPath, false);
        if (path.empty()) return NoPath(hostPath);
        return chdir(path.c_str()) == 0 ? Result{} : SystemError(hostPath, errno);
    }

    std::string SystemPath(std::string_view hostPath, bool forCreation) override {
        LinuxFolderView view;
        return m_paths.Resolve(view, hostPath, forCreation);
    }

    bool MapDrive(char letter, std::string_view systemFolder) override {
        return m_paths.MapDrive(letter, systemFolder);
    }

  private:
    static Result RefuseUnlessRegular(std::string_view hostPath, const struct stat& status) {
        if (S_ISREG(status.st_mode)) return {};
        if (S_ISDIR(status.st_mode)) return SystemError(hostPath, EISDIR);
        return Result::Error(ErrorCode::kAccess, std::string(hostPath) + ": not a regular file");
    }

    HostPaths m_paths;
};

}  // namespace

Files& BackendFiles() noexcept {
    static LinuxFiles& files = *new LinuxFiles;
    return files;
}

}  // namespace brindle
