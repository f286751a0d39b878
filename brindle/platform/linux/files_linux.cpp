// The Linux files service: whole files read within a limit and replaced in one step.
//
// Cannot: read or replace anything but regular files (folders, pipes and devices are refused without waiting
// on them); keep the owner of a file it replaces when the process may not give files away; keep processes of other
// machines out of an update on a file system that does not share locks.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include "brindle/framework/never_destroyed.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/host_path.h"
#include "brindle/platform/linux/file_descriptor.h"
#include "brindle/platform/linux/file_stamp_linux.h"
#include "brindle/platform/linux/folder_listings.h"
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
        case EWOULDBLOCK:
            return because(ErrorCode::kFailed, "another program keeps it locked");
        default:
            return because(ErrorCode::kFailed, ("system error " + std::to_string(error)).c_str());
    }
}

// The path cannot name a file at all.
Result NoPath(std::string_view hostPath) {
    return Result::Error(ErrorCode::kInvalidArgument,
                         hostPath.empty() ? "empty path" : "path with a zero byte in it");
}

class LinuxFolderView final : public FolderView {
  public:
    explicit LinuxFolderView(FolderListings& listings) : m_listings(listings) {}

    bool HasEntry(const std::string& systemPath) override {
        struct stat status {};
        return stat(systemPath.c_str(), &status) == 0;
    }

    void ForEachName(const std::string& folder,
                     const std::function<void(std::string_view)>& callback) override {
        m_listings.ForEachName(folder, callback);
    }

    std::string CurrentFolder() override {
        const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), &std::free);
        return folder && *folder == '/' ? folder.get() : "";
    }

  private:
    FolderListings& m_listings;
};

class LinuxKeptDirectory final : public KeptDirectory {
  public:
    ~LinuxKeptDirectory() override {
        // It cannot be refused to a process that was in it, unless somebody took the right away meanwhile.
        if (m_folder.ok()) static_cast<void>(!!fchdir(m_folder.get()));
    }

  private:
    FileDescriptor m_folder{open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)};
};

// Reads until the end of the file; 0 or the system's error, EFBIG when there is more than the limit. A file that has
// the expected size costs no memory beyond it; one that has grown, or has no size of its own, is read in chunks.
int ReadUpTo(int fd, std::uint64_t expected, std::uint64_t limit, std::string& bytes) {
    constexpr std::uint64_t kChunk = 16 * 1024;
    for (;;) {
        const std::size_t have = bytes.size();
        const std::uint64_t chunk = have < expected ? expected - have : kChunk + have;
        // One byte more than allowed shows that there is more.
        const auto want = static_cast<std::size_t>(std::min(chunk, limit - have)) + 1;
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
        if (written == 0) return EIO;
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
        const std::string folderName =
            FolderOf(m_target);  // nothing may fail any more once the file is replaced
        if (rename(m_path.c_str(), m_target.c_str()) != 0) return errno;
        m_path.clear();
        // The file is replaced; a folder that cannot be flushed does not undo that.
        const FileDescriptor folder(open(folderName.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
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

// Locks a descriptor against other holders, waiting a little for them. 0, also where the file system knows no
// locks, or the system's error.
int Lock(int fd) {
    constexpr int kAttempts = 400;
    constexpr timespec kPause = {0, 5'000'000};  // 2 s in all
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (flock(fd, LOCK_EX | LOCK_NB) == 0) return 0;
        if (errno == ENOLCK || errno == ENOTSUP || errno == EINVAL || errno == EBADF) return 0;
        if (errno != EWOULDBLOCK && errno != EINTR) return errno;
        nanosleep(&kPause, nullptr);
    }
    return EWOULDBLOCK;
}

// Makes the path of a file the one where writing to it ends up: behind a symbolic link when it names one. False, with
// the system's error, when that cannot be found.
bool BehindLink(std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), &std::free);
    if (real) path = real.get();
    return real != nullptr;
}

class LinuxFiles final : public Files {
  public:
    bool Exists(std::string_view hostPath) override {
        LinuxFolderView view(m_listings);
        return m_paths.Find(view, hostPath, false).exists;
    }

    Result ReadWhole(std::string_view hostPath, std::uint64_t limit, std::string& bytes) override {
        const std::string path = SystemPath(hostPath, false);
        if (path.empty()) return NoPath(hostPath);
        return ReadSystemFile(hostPath, path, limit, bytes);
    }

    Result WriteWhole(std::string_view hostPath, std::string_view bytes) override {
        return Replace(hostPath, SystemPath(hostPath, true), bytes);
    }

    Result Append(std::string_view hostPath, std::string_view bytes, std::uint64_t emptyBeyond) override {
        const std::string path = ExistingOrNew(hostPath);
        if (path.empty()) return NoPath(hostPath);
        struct stat status {};
        if (stat(path.c_str(), &status) == 0)
            if (Result refused = RefuseUnlessRegular(hostPath, status); !refused.ok()) return refused;
        constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
        FileDescriptor file(open(path.c_str(), kFlags, 0666));
        if (!file.ok()) return SystemError(hostPath, errno);
        const int lockError = Lock(file.get());
        if (lockError && lockError != EWOULDBLOCK) return SystemError(hostPath, lockError);
        if (fstat(file.get(), &status) != 0) return SystemError(hostPath, errno);
        if (Result refused = RefuseUnlessRegular(hostPath, status); !refused.ok()) return refused;
        // Without the lock nothing may be taken away: one write at the end of a file is whole all the same.
        const bool tooLong = !lockError && static_cast<std::uint64_t>(status.st_size) > emptyBeyond;
        if (tooLong && ftruncate(file.get(), 0) != 0) return SystemError(hostPath, errno);
        const int error = WriteAll(file.get(), bytes);
        // A part of it would be worse than nothing.
        if (error && !lockError && ftruncate(file.get(), tooLong ? 0 : status.st_size) != 0)
            return SystemError(hostPath, errno);
        return error ? SystemError(hostPath, error) : Result{};
    }

    Result Update(std::string_view hostPath, std::uint64_t limit, const Edit& edit) override {
        std::string path = ExistingOrNew(hostPath);
        if (path.empty()) return NoPath(hostPath);
        if (!BehindLink(path) && errno != ENOENT) return SystemError(hostPath, errno);
        // The folder is what is locked: it is there before the file is, and stays when the file is replaced.
        const FileDescriptor folder(open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder.ok()) return SystemError(hostPath, errno);
        if (const int error = Lock(folder.get())) return SystemError(hostPath, error);
        std::string bytes;
        struct stat status {};
        const bool exists = stat(path.c_str(), &status) == 0;
        if (!exists && errno != ENOENT) return SystemError(hostPath, errno);
        if (exists)
            if (Result failed = ReadSystemFile(hostPath, path, limit, bytes); !failed.ok()) return failed;
        return edit(bytes, exists) ? Replace(hostPath, path, bytes) : Result{};
    }

    bool Stamp(std::string_view hostPath, FileStamp& stamp) override {
        struct stat status {};
        if (!Status(hostPath, status) || !S_ISREG(status.st_mode)) return false;
        stamp = StampOf(status, StampSeconds());
        return true;
    }

    bool IsFolder(std::string_view hostPath) override {
        struct stat status {};
        return Status(hostPath, status) && S_ISDIR(status.st_mode);
    }

    std::string CurrentDirectory() override {
        LinuxFolderView view(m_listings);
        std::string hostPath;
        FromSystemText(view.CurrentFolder(), hostPath);
        return hostPath;
    }

    Result SetCurrentDirectory(std::string_view hostPath) override {
        const std::string path = SystemPath(hostPath, false);
        if (path.empty()) return NoPath(hostPath);
        return chdir(path.c_str()) == 0 ? Result{} : SystemError(hostPath, errno);
    }

    std::unique_ptr<KeptDirectory> KeepDirectory() override { return std::make_unique<LinuxKeptDirectory>(); }

    std::string SystemPath(std::string_view hostPath, bool forCreation) override {
        LinuxFolderView view(m_listings);
        return m_paths.Resolve(view, hostPath, forCreation);
    }

    bool MapDrive(char letter, std::string_view systemFolder) override {
        return m_paths.MapDrive(letter, systemFolder);
    }

  private:
    static Result ReadSystemFile(std::string_view hostPath, const std::string& path, std::uint64_t limit,
                                 std::string& bytes) {
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
        const auto size = static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0));
        if (const int error = ReadUpTo(file.get(), size, limit, read)) return SystemError(hostPath, error);
        bytes = std::move(read);
        return {};
    }

    static Result Replace(std::string_view hostPath, const std::string& path, std::string_view bytes) {
        if (path.empty()) return NoPath(hostPath);
        struct stat old {};
        const bool exists = stat(path.c_str(), &old) == 0;
        // Not known to be missing: it may be there, with a link or rights that are to be kept.
        if (!exists && errno != ENOENT) return SystemError(hostPath, errno);
        std::string target = path;
        if (exists) {
            if (Result refused = RefuseUnlessRegular(hostPath, old); !refused.ok()) return refused;
            if (access(path.c_str(), W_OK) != 0) return SystemError(hostPath, errno);
            if (!BehindLink(target)) return SystemError(hostPath, errno);
        }
        ReplacementFile replacement(std::move(target), exists ? &old : nullptr);
        if (const int error = replacement.Write(bytes)) return SystemError(hostPath, error);
        if (const int error = replacement.TakePlace()) return SystemError(hostPath, error);
        return {};
    }

    // The file as reading finds it, else as it would be made.
    std::string ExistingOrNew(std::string_view hostPath) {
        LinuxFolderView view(m_listings);
        HostPaths::Found found = m_paths.Find(view, hostPath, false);
        return found.exists ? std::move(found.path) : SystemPath(hostPath, true);
    }

    // An absolute path that exists as it is spelled costs one look.
    bool Status(std::string_view hostPath, struct stat& status) {
        const bool plain = hostPath.starts_with('/') && hostPath.find('\0') == hostPath.npos;
        if (plain && stat(ToSystemText(hostPath).c_str(), &status) == 0) return true;
        LinuxFolderView view(m_listings);
        const HostPaths::Found found = m_paths.Find(view, hostPath, false);
        return found.exists && stat(found.path.c_str(), &status) == 0;
    }

    static Result RefuseUnlessRegular(std::string_view hostPath, const struct stat& status) {
        if (S_ISREG(status.st_mode)) return {};
        if (S_ISDIR(status.st_mode)) return SystemError(hostPath, EISDIR);
        return Result::Error(ErrorCode::kAccess, std::string(hostPath) + ": not a regular file");
    }

    HostPaths m_paths;
    FolderListings m_listings;
};

}  // namespace

Files& BackendFiles() noexcept {
    static NeverDestroyed<LinuxFiles> files;
    return *files;
}

}  // namespace brindle
