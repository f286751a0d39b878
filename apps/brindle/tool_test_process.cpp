#include "apps/brindle/tool_test_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>

namespace brindle::testing {
namespace {

constexpr auto kDeadline = std::chrono::seconds(120);  // instrumented, on a busy machine

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }
    void Set(int number) {
        Close();
        m_number = number;
    }
    void Close() {
        if (m_number >= 0) ::close(m_number);
        m_number = -1;
    }
    int Get() const { return m_number; }

  private:
    int m_number;
};

struct Channel {
    Descriptor parent;
    Descriptor child;
};

void OpenPipe(Channel& channel) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    channel.parent.Set(ends[0]);
    channel.child.Set(ends[1]);
}

void OpenTerminal(Channel& channel) {
    channel.parent.Set(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_GE(channel.parent.Get(), 0);
    ASSERT_EQ(::grantpt(channel.parent.Get()), 0);
    ASSERT_EQ(::unlockpt(channel.parent.Get()), 0);
    std::array<char, 128> name{};
    ASSERT_EQ(::ptsname_r(channel.parent.Get(), name.data(), name.size()), 0);
    channel.child.Set(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_GE(channel.child.Get(), 0);
}

// A file that is gone as soon as it is closed.
int InputFile(const std::string& input) {
    std::string name = (std::filesystem::temp_directory_path() / "brindle_tool_XXXXXX").string();
    const int file = ::mkostemp(name.data(), O_CLOEXEC);
    EXPECT_GE(file, 0);
    ::unlink(name.c_str());
    EXPECT_EQ(::write(file, input.data(), input.size()), static_cast<ssize_t>(input.size()));
    ::lseek(file, 0, SEEK_SET);
    return file;
}

// Reads both until the other side has closed them. False when the deadline passed.
bool ReadAll(std::array<std::pair<int, std::string*>, 2> streams) {
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    for (;;) {
        std::array<pollfd, 2> polled{{{streams[0].first, POLLIN, 0}, {streams[1].first, POLLIN, 0}}};
        if (polled[0].fd < 0 && polled[1].fd < 0) return true;
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now())
                .count();
        if (left <= 0 || ::poll(polled.data(), polled.size(), static_cast<int>(left)) <= 0) return false;
        for (std::size_t i = 0; i < polled.size(); ++i) {
            if (polled[i].revents == 0) continue;
            std::array<char, 65536> buffer{};
            const ssize_t count = ::read(streams[i].first, buffer.data(), buffer.size());
            if (count > 0) {
                streams[i].second->append(buffer.data(), static_cast<std::size_t>(count));
            } else {
                streams[i].first = -1;  // closed; a terminal says so with an error
            }
        }
    }
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

ToolResult Start(std::vector<std::string> program, const ToolStart& start) {
    ToolResult result;
    Channel out, err;
    const bool terminal = start.output == OutputTo::kTerminal;
    terminal ? OpenTerminal(out) : OpenPipe(out);
    if (!terminal) OpenPipe(err);
    if (::testing::Test::HasFatalFailure()) return result;
    const Descriptor input(InputFile(start.input));

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.Get(), 0);
    posix_spawn_file_actions_adddup2(&actions, out.child.Get(), 1);
    posix_spawn_file_actions_adddup2(&actions, terminal ? out.child.Get() : err.child.Get(), 2);
    if (start.output == OutputTo::kFullDisk)
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/full", O_WRONLY, 0);
    if (start.output == OutputTo::kNowhere) posix_spawn_file_actions_addclose(&actions, 1);

    std::vector<std::string> environment{
        "PATH=" + std::filesystem::path(BRINDLE_TOOL).parent_path().string() + ":/usr/bin:/bin",
        "TERM=xterm"};
    for (const auto& [name, value] : start.environment) environment.push_back(name + "=" + value);
    pid_t process = -1;
    const int error = ::posix_spawn(&process, program[0].c_str(), &actions, nullptr, Pointers(program).data(),
                                    Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(error, 0) << program[0];
    if (error != 0) return result;
    out.child.Close();
    err.child.Close();
    if (!ReadAll({{{out.parent.Get(), &result.out}, {err.parent.Get(), &result.err}}})) {
        ADD_FAILURE() << "the tool does not end";
        ::kill(process, SIGKILL);
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) result.code = WEXITSTATUS(status);
    return result;
}

}  // namespace

ToolResult RunTool(const ToolStart& start) {
    std::vector<std::string> program{BRINDLE_TOOL};
    program.insert(program.end(), start.arguments.begin(), start.arguments.end());
    return Start(std::move(program), start);
}

ToolResult RunShell(const std::string& line) {
    return Start({"/bin/sh", "-c", "cd '" BRINDLE_SOURCE_FOLDER "' && { " + line + "\n} 2>&1"}, {});
}

}  // namespace brindle::testing
