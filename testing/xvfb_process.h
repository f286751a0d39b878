// An X server of the test's own, without a screen that anyone sees. It ends with the test, however that ends.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace brindle::testing {

class XvfbProcess {
  public:
    // Its screen is white where no window is. Display() is empty when the server does not start.
    explicit XvfbProcess(const char* screen) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        m_pid = ::fork();
        if (m_pid == 0) Become(ends[1], screen);
        ::close(ends[1]);
        std::string number;
        char letter = 0;
        pollfd ready{ends[0], POLLIN, 0};
        while (::poll(&ready, 1, kDeadline) == 1 && ::read(ends[0], &letter, 1) == 1 && letter != '\n')
            number += letter;
        ::close(ends[0]);
        if (letter == '\n') m_display = ":" + number;
    }
    XvfbProcess(const XvfbProcess&) = delete;
    XvfbProcess& operator=(const XvfbProcess&) = delete;
    ~XvfbProcess() {
        if (m_pid <= 0) return;
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        if (m_display.empty()) return;
        // A server that is killed leaves these.
        ::unlink(("/tmp/.X" + m_display.substr(1) + "-lock").c_str());
        ::unlink(("/tmp/.X11-unix/X" + m_display.substr(1)).c_str());
    }

    const std::string& Display() const noexcept { return m_display; }

  private:
    static constexpr int kDeadline = 60'000;  // milliseconds

    [[noreturn]] static void Become(int displayEnd, const char* screen) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int null = ::open("/dev/null", O_RDWR);
        ::dup2(null, STDIN_FILENO);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
        const std::string end = std::to_string(displayEnd);
        ::execlp("Xvfb", "Xvfb", "-displayfd", end.c_str(), "-screen", "0", screen, "-wr", "-nolisten", "tcp",
                 "-noreset", static_cast<char*>(nullptr));
        ::_exit(127);
    }

    pid_t m_pid = 0;
    std::string m_display;
};

}  // namespace brindle::testing
