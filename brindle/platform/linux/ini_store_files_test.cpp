// Writing INI files while system calls fail: whichever of them does, the file is afterwards the old or the new one,
// whole. The calls are this program's own, in front of the system's: each counts, and one of them fails.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "brindle/platform/ini_store.h"

namespace {

constinit int g_untilFailure = -1;  // calls that still succeed; negative: all do
constinit int g_error = 0;
constinit const char* g_failed = nullptr;  // the call that failed

// Whether the call that asks fails; errno is set then.
bool Fails(const char* call) {
    if (g_untilFailure < 0 || g_untilFailure-- > 0) return false;
    g_failed = call;
    errno = g_error;
    return true;
}

template <class Function>
Function* System(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {
int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto call = System<int(const char*, int, ...)>("open");
    return Fails("open") ? -1 : call(path, flags, mode);
}
int flock(int fd, int operation) noexcept {
    static const auto call = System<int(int, int)>("flock");
    return Fails("flock") ? -1 : call(fd, operation);
}
int fstat(int fd, struct stat* status) noexcept {
    static const auto call = System<int(int, struct stat*)>("fstat");
    return Fails("fstat") ? -1 : call(fd, status);
}
ssize_t read(int fd, void* buffer, size_t size) {
    static const auto call = System<ssize_t(int, void*, size_t)>("read");
    return Fails("read") ? -1 : call(fd, buffer, size);
}
// In two halves, so that the second may fail when the first did not.
ssize_t write(int fd, const void* buffer, size_t size) {
    static const auto call = System<ssize_t(int, const void*, size_t)>("write");
    if (Fails("write")) return -1;
    return call(fd, buffer, g_untilFailure < 0 ? size : (size + 1) / 2);
}
int access(const char* path, int mode) noexcept {
    static const auto call = System<int(const char*, int)>("access");
    return Fails("access") ? -1 : call(path, mode);
}
int fchown(int fd, uid_t user, gid_t group) noexcept {
    static const auto call = System<int(int, uid_t, gid_t)>("fchown");
    return Fails("fchown") ? -1 : call(fd, user, group);
}
int fchmod(int fd, mode_t mode) noexcept {
    static const auto call = System<int(int, mode_t)>("fchmod");
    return Fails("fchmod") ? -1 : call(fd, mode);
}
int fsync(int fd) {
    static const auto call = System<int(int)>("fsync");
    return Fails("fsync") ? -1 : call(fd);
}
int rename(const char* from, const char* to) noexcept {
    static const auto call = System<int(const char*, const char*)>("rename");
    return Fails("rename") ? -1 : call(from, to);
}
int close(int fd) {
    static const auto call = System<int(int)>("close");
    const int result = call(fd);
    return Fails("close") ? -1 : result;
}
}

namespace brindle {
namespace {

namespace fs = std::filesystem;

class IniStoreFiles : public ::testing::Test {
  protected:
    IniStoreFiles() {
        std::string pattern = fs::temp_directory_path() / "brindle_inifault_XXXXXX";
        m_folder = mkdtemp(pattern.data());
    }
    ~IniStoreFiles() override { fs::remove_all(m_folder); }
    std::string File() const { return m_folder + "/f.ini"; }
    void Put(const std::string& text) const { std::ofstream(File(), std::ios::binary) << text; }
    std::string Get() const {
        std::ifstream file(File(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::ptrdiff_t Entries() const { return std::distance(fs::directory_iterator(m_folder), {}); }

    std::string m_folder;
};

TEST_F(IniStoreFiles, AFailingSystemCallLeavesTheOldOrTheNewFileWhole) {
    std::string old = "; kept\r\n[s]\r\nk=old\r\n";
    for (int i = 0; i < 50; ++i) old += "other" + std::to_string(i) + "=value\r\n";
    std::string renewed = old;
    renewed.replace(renewed.find("k=old"), 5, "k=new");
    std::set<std::string> failed;
    for (const int error : {EIO, ENOSPC, EACCES}) {
        for (int call = 0;; ++call) {
            Put(old);
            g_error = error;
            g_failed = nullptr;
            g_untilFailure = call;
            const bool ok = BackendIniStore().Write("s", "k", "new", File().c_str()).ok();
            g_untilFailure = -1;
            SCOPED_TRACE((g_failed ? g_failed : "nothing") + std::string(" failed, call ") +
                         std::to_string(call));
            EXPECT_EQ(Get(), ok ? renewed : old);
            EXPECT_EQ(Entries(), 1) << "no temporary file stays";
            if (!g_failed) {
                EXPECT_TRUE(ok);
                break;
            }
            failed.insert(g_failed);
            ASSERT_LT(call, 100);
        }
    }
    for (const char* call : {"open", "flock", "fstat", "read", "access", "write", "fchown", "fchmod", "fsync",
                             "close", "rename"})
        EXPECT_TRUE(failed.contains(call)) << call << " was never reached";
}

TEST_F(IniStoreFiles, AFailingSystemCallLeavesNoHalfMadeFile) {
    for (int call = 0;; ++call) {
        fs::remove(File());
        g_error = ENOSPC;
        g_failed = nullptr;
        g_untilFailure = call;
        const bool ok = BackendIniStore().Write("s", "k", "new", File().c_str()).ok();
        g_untilFailure = -1;
        SCOPED_TRACE(call);
        EXPECT_EQ(fs::exists(File()), ok);
        EXPECT_EQ(Get(), ok ? "[s]\r\nk=new\r\n" : "");
        EXPECT_EQ(Entries(), ok ? 1 : 0);
        if (!g_failed) break;
        ASSERT_LT(call, 100);
    }
}

// Each process sets keys of its own; all of them are there in the end.
TEST_F(IniStoreFiles, SeveralProcessesLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kKeys = 15;
    Put("; kept\n[s]\n");
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        bool ok = true;
        for (int i = 0; i < kKeys; ++i) {
            const std::string key = "p" + std::to_string(process) + "k" + std::to_string(i);
            ok = BackendIniStore().Write("s", key.c_str(), "v", File().c_str()).ok() && ok;
        }
        _exit(ok ? 0 : 1);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    const std::string text = Get();
    EXPECT_TRUE(text.starts_with("; kept\n[s]\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 + kProcesses * kKeys);
}

// The lock of a program that hangs: an error after a while, not a hang.
TEST_F(IniStoreFiles, ALockThatIsNeverGivenBackIsAnError) {
    Put("[s]\nk=old\n");
    const int folder = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    const Result result = BackendIniStore().Write("s", "k", "new", File().c_str());
    close(folder);
    EXPECT_EQ(result.code, ErrorCode::kFailed);
    EXPECT_NE(result.text.find("locked"), std::string::npos) << result.text;
    EXPECT_EQ(Get(), "[s]\nk=old\n");
}

}  // namespace
}  // namespace brindle
