// A program to be started by tests: writes what it was given, as JSON, into the file that the environment variable
// BRINDLE_PROGRAM_REPORT names (under a temporary name first, so that whoever waits for it sees it whole), says
// "started" on its standard output, and ends with the number in BRINDLE_PROGRAM_EXIT. With the argument "/wait:FILE"
// it ends when that file is gone.
#include <dirent.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using nlohmann::json;

std::string Target(const std::string& link) {
    char target[4096];
    const ssize_t length = readlink(link.c_str(), target, sizeof target);
    return length < 0 ? "(closed)" : std::string(target, static_cast<std::size_t>(length));
}

// What the descriptors of this process are, by number.
json Descriptors() {
    json open = json::object();
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/proc/self/fd"), &closedir);
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        const std::string name = entry->d_name;
        if (name[0] != '.' && name != std::to_string(dirfd(folder.get())))
            open[name] = Target("/proc/self/fd/" + name);
    }
    return open;
}

// The numbers of signals that are blocked or not handled by default.
json UnusualSignals() {
    json signals = json::array();
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    for (int number = 1; number < SIGRTMIN; ++number) {
        struct sigaction action {};
        const bool changed = sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_DFL;
        if (changed || sigismember(&blocked, number) == 1) signals.push_back(number);
    }
    return signals;
}

}  // namespace

int main(int argc, char** argv) {
    json report;
    report["arguments"] = json::array();
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        json bytes = json::array();  // any bytes, not only UTF-8
        for (const char c : argument) bytes.push_back(static_cast<unsigned char>(c));
        report["arguments"].push_back(bytes);
    }
    report["directory"] = Target("/proc/self/cwd");
    report["descriptors"] = Descriptors();
    report["ownSession"] = getsid(0) == getpid();
    report["signals"] = UnusualSignals();
    report["process"] = getpid();
    const char* path = getenv("BRINDLE_PROGRAM_REPORT");
    if (path) {
        const std::string temporary = std::string(path) + ".new";
        std::ofstream(temporary) << report;
        rename(temporary.c_str(), path);
    }
    puts("started");
    fflush(stdout);
    const std::string last = argc > 1 ? argv[argc - 1] : "";
    constexpr timespec kPause = {0, 2'000'000};
    while (last.starts_with("/wait:") && access(last.c_str() + 6, F_OK) == 0) nanosleep(&kPause, nullptr);
    const char* code = getenv("BRINDLE_PROGRAM_EXIT");
    return code ? atoi(code) : 0;
}
