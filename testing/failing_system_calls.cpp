// See failing_system_calls.h.
#include "testing/failing_system_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>

namespace brindle::testing {
namespace {

struct State {
    bool armed;
    SystemFault fault;
    int error;
    std::uint64_t left;  // calls until the one that fails
    bool happened;
    const char* call;
};
constinit thread_local State t_state{};

bool IsAboutWrites(SystemFault fault) {
    return fault != SystemFault::kError && fault != SystemFault::kExit;
}

// Counts a call. True when it is to fail; `errno` then says why.
bool Fails(const char* call) {
    if (!t_state.armed || IsAboutWrites(t_state.fault) || --t_state.left > 0) return false;
    t_state.armed = false;
    t_state.happened = true;
    t_state.call = call;
    if (t_state.fault == SystemFault::kExit) _exit(kFaultExit);
    errno = t_state.error;
    return true;
}

// The C library's own function of that name, or the sanitizer's in front of it.
template <class Function>
Function* Real(const char* name) {
    void* function = dlsym(RTLD_NEXT, name);
    if (!function) std::abort();
    return reinterpret_cast<Function*>(function);
}

// A write under a fault that is about writes.
ssize_t FaultyWrite(int fd, const void* bytes, std::size_t size) {
    auto* const real = Real<ssize_t(int, const void*, std::size_t)>("write");
    if (!t_state.happened && --t_state.left > 0) return real(fd, bytes, size);
    if (t_state.happened && t_state.fault == SystemFault::kFullDisk) {
        errno = ENOSPC;
        return -1;
    }
    t_state.happened = true;
    t_state.call = "write";
    const ssize_t written = real(fd, bytes, std::max<std::size_t>(size / 2, 1));
    if (t_state.fault == SystemFault::kExitInWrite) _exit(kFaultExit);
    return written;
}

}  // namespace

FailingSystemCalls::FailingSystemCalls(std::uint64_t nth, SystemFault fault, int error) noexcept {
    t_state = {true, fault, error, nth, false, ""};
}
FailingSystemCalls::~FailingSystemCalls() {
    t_state.armed = false;
}
bool FailingSystemCalls::Happened() noexcept {
    return t_state.happened;
}
const char* FailingSystemCalls::Call() noexcept {
    return t_state.call;
}

}  // namespace brindle::testing

using brindle::testing::Fails;
using brindle::testing::FaultyWrite;
using brindle::testing::IsAboutWrites;
using brindle::testing::Real;
using brindle::testing::t_state;

// The program's own, in front of the C library's: visible to the libraries it loads as those are.
#define BRINDLE_STANDS_IN extern "C" __attribute__((visibility("default")))

BRINDLE_STANDS_IN int open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if (flags & O_CREAT) {
        va_list arguments;
        va_start(arguments, flags);
        mode = static_cast<mode_t>(va_arg(arguments, int));
        va_end(arguments);
    }
    return Fails("open") ? -1 : Real<int(const char*, int, ...)>("open")(path, flags, mode);
}
BRINDLE_STANDS_IN ssize_t read(int fd, void* buffer, std::size_t size) {
    return Fails("read") ? -1 : Real<ssize_t(int, void*, std::size_t)>("read")(fd, buffer, size);
}
BRINDLE_STANDS_IN ssize_t write(int fd, const void* bytes, std::size_t size) {
    if (t_state.armed && IsAboutWrites(t_state.fault)) return FaultyWrite(fd, bytes, size);
    return Fails("write") ? -1 : Real<ssize_t(int, const void*, std::size_t)>("write")(fd, bytes, size);
}
// A close that fails has closed all the same.
BRINDLE_STANDS_IN int close(int fd) {
    const bool fails = Fails("close");
    const int error = errno;
    const int result = Real<int(int)>("close")(fd);
    if (!fails) return result;
    errno = error;
    return -1;
}
// What reaches the disk no test can see, so nothing waits for it.
BRINDLE_STANDS_IN int fsync(int) {
    return Fails("fsync") ? -1 : 0;
}
BRINDLE_STANDS_IN int fchmod(int fd, mode_t mode) noexcept {
    return Fails("fchmod") ? -1 : Real<int(int, mode_t)>("fchmod")(fd, mode);
}
BRINDLE_STANDS_IN int fchown(int fd, uid_t owner, gid_t group) noexcept {
    return Fails("fchown") ? -1 : Real<int(int, uid_t, gid_t)>("fchown")(fd, owner, group);
}
BRINDLE_STANDS_IN int ftruncate(int fd, off_t size) noexcept {
    return Fails("ftruncate") ? -1 : Real<int(int, off_t)>("ftruncate")(fd, size);
}
BRINDLE_STANDS_IN int flock(int fd, int operation) noexcept {
    return Fails("flock") ? -1 : Real<int(int, int)>("flock")(fd, operation);
}
BRINDLE_STANDS_IN int rename(const char* from, const char* to) noexcept {
    return Fails("rename") ? -1 : Real<int(const char*, const char*)>("rename")(from, to);
}
BRINDLE_STANDS_IN int unlink(const char* path) noexcept {
    return Fails("unlink") ? -1 : Real<int(const char*)>("unlink")(path);
}
BRINDLE_STANDS_IN int access(const char* path, int rights) noexcept {
    return Fails("access") ? -1 : Real<int(const char*, int)>("access")(path, rights);
}
BRINDLE_STANDS_IN int stat(const char* path, struct stat* status) noexcept {
    return Fails("stat") ? -1 : Real<int(const char*, struct stat*)>("stat")(path, status);
}
BRINDLE_STANDS_IN int fstat(int fd, struct stat* status) noexcept {
    return Fails("fstat") ? -1 : Real<int(int, struct stat*)>("fstat")(fd, status);
}
BRINDLE_STANDS_IN char* realpath(const char* path, char* resolved) noexcept {
    return Fails("realpath") ? nullptr : Real<char*(const char*, char*)>("realpath")(path, resolved);
}
