// Programs really started: what they get, what they do not get, and what is left of them.
#include <dirent.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "brindle/platform/backend.h"
#include "brindle/platform/code_page.h"
#include "testing/program_report.h"
#include "testing/vectors.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::BytesOf;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::ProgramReport;

std::string NewFolder() {
    std::string pattern = fs::temp_directory_path() / "brindle_start_XXXXXX";
    return fs::canonical(mkdtemp(pattern.data()));
}

class PosixProgramsTest : public ::testing::Test {
  protected:
    PosixProgramsTest() : m_path(getenv("PATH")), m_before(fs::current_path()) {
        fs::copy_file(BRINDLE_PROGRAM, In("tool.exe"));
        fs::create_directory(In("my dir"));
        fs::copy_file(BRINDLE_PROGRAM, In("my dir/a b.exe"));
        fs::current_path(m_folder);
    }
    ~PosixProgramsTest() override {
        BackendPrograms().WaitForAll();
        fs::current_path(m_before);
        setenv("PATH", m_path.c_str(), 1);
        fs::remove_all(m_folder);
    }
    std::string In(const std::string& name) const { return m_folder + "/" + name; }
    void Script(const std::string& name, const std::string& text, unsigned mode = 0755) const {
        std::ofstream(In(name)) << text;
        ASSERT_EQ(chmod(In(name).c_str(), mode), 0);
    }
    static int Start(const std::string& line, bool hidden = true) {
        Programs& programs = BackendPrograms();
        return programs.Start(programs.Plan(line), hidden);
    }
    std::vector<std::string> StartedArguments(const std::string& line) const {
        m_report.Forget();
        EXPECT_EQ(Start(line), kProgramStarted);
        const auto report = m_report.Wait();
        return report ? ProgramReport::Arguments(*report) : std::vector<std::string>{"(no report)"};
    }
    static std::set<std::string> OpenDescriptors() {
        std::set<std::string> open;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd"))
            open.insert(entry.path().filename());
        return open;
    }
    // Children of this process that have ended and were not waited for.
    static int Zombies() {
        int count = 0;
        for (const auto& task : fs::directory_iterator("/proc")) {
            std::ifstream file(task.path() / "stat");
            std::string line;
            if (!std::getline(file, line)) continue;
            const std::string rest = line.substr(line.rfind(')') + 2);
            count += rest.starts_with("Z " + std::to_string(getpid()) + " ");
        }
        return count;
    }

    std::string m_path;
    fs::path m_before;
    std::string m_folder = NewFolder();
    ProgramReport m_report{m_folder + "/report.json"};
};

TEST_F(PosixProgramsTest, ArgumentsArriveAsTheyAre) {
    struct Row {
        const char* label;
        std::string arguments;
        std::vector<std::string> expected;
    };
    const std::vector<Row> rows = {
        {"none", "", {}},
        {"quoted", " \"a b\" c", {"a b", "c"}},
        {"what a shell would run",
         " \"; rm -rf x $(id) `id`\" | id > out * ~ $HOME",
         {"; rm -rf x $(id) `id`", "|", "id", ">", "out", "*", "~", "$HOME"}},
        {"backslashes", " C:\\dir\\x.txt \\\"q\\\"", {"C:\\dir\\x.txt", "\"q\""}},
        {"letters of the code page leave as UTF-8", " Caf\xE9 \x80", {"Caf\xC3\xA9", "\xE2\x82\xAC"}},
        {"an empty one", " \"\" x", {"", "x"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_THAT(StartedArguments(In("tool.exe") + row.arguments), ElementsAreArray(row.expected));
    }
    EXPECT_FALSE(fs::exists(In("out")));
}

TEST_F(PosixProgramsTest, GetsAPlainWorld) {
    signal(SIGPIPE, SIG_IGN);
    signal(SIGUSR1, [](int) {});
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const int leaked = dup(0);  // without the close-on-exec flag
    EXPECT_EQ(Start(In("tool.exe"), true), kProgramStarted);
    const auto report = m_report.Wait();
    close(leaked);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    signal(SIGPIPE, SIG_DFL);
    signal(SIGUSR1, SIG_DFL);
    ASSERT_TRUE(report);
    EXPECT_EQ((*report)["signals"], json::array());
    EXPECT_EQ((*report)["ownSession"], true);
    EXPECT_EQ((*report)["directory"], m_folder);
    EXPECT_EQ((*report)["descriptors"], json({{"0", "/dev/null"}, {"1", "/dev/null"}, {"2", "/dev/null"}}));
}

TEST_F(PosixProgramsTest, ShownProgramsKeepTheStreams) {
    int stream[2];
    ASSERT_EQ(pipe(stream), 0);
    const int output = dup(1);
    dup2(stream[1], 1);
    const int code = Start(In("tool.exe"), false);
    dup2(output, 1);
    close(output);
    close(stream[1]);
    EXPECT_EQ(code, kProgramStarted);
    char text[16] = {};
    EXPECT_EQ(read(stream[0], text, sizeof text - 1), 8);
    close(stream[0]);
    EXPECT_STREQ(text, "started\n");
}

TEST_F(PosixProgramsTest, FindsPrograms) {
    fs::create_directory(In("bin"));
    fs::create_directory(In("bin/folder"));
    fs::copy_file(BRINDLE_PROGRAM, In("bin/onpath"));
    Script("bin/plain", "no program", 0644);
    Script("bin/both", "no program", 0755);
    fs::copy_file(BRINDLE_PROGRAM, In("both"));
    setenv("PATH", (In("none") + ":" + In("bin") + ":/usr/bin").c_str(), 1);
    std::string windows = m_folder;
    for (char& c : windows)
        if (c == '/') c = '\\';
    struct Row {
        const char* label;
        std::string line;
        int code;
    };
    const std::vector<Row> rows = {
        {"in the current directory", "tool.exe", kProgramStarted},
        {"the same without extension", "tool", kProgramStarted},
        {"the same in other case", "TOOL.exe", kProgramStarted},
        {"along the PATH", "onpath", kProgramStarted},
        {"the current directory goes first", "both", kProgramStarted},
        {"a path with a drive", "C:" + windows + "\\tool.exe", kProgramStarted},
        {"a path with backslashes", windows + "\\TOOL.EXE x", kProgramStarted},
        {"a relative path", "my dir\\a b.exe", kProgramStarted},
        {"blanks, unquoted", In("my dir/a b.exe") + " x y", kProgramStarted},
        {"blanks, quoted", "\"" + In("my dir/a b.exe") + "\" x", kProgramStarted},
        {"blanks before and behind", "  tool.exe  ", kProgramStarted},
        {"missing", "nosuchprogram a", kProgramNotFound},
        {"missing in a folder", In("nosuch.exe"), kProgramNotFound},
        {"missing folder", In("none/x.exe"), kProgramFolderNotFound},
        {"missing folder, quoted", "\"" + In("none/x.exe") + "\" a", kProgramFolderNotFound},
        {"below a file", In("tool.exe/x"), kProgramFolderNotFound},
        {"may not run", In("bin/plain"), kProgramAccessDenied},
        {"may not run, along the PATH", "plain", kProgramAccessDenied},
        {"a folder", In("bin/folder"), kProgramAccessDenied},
        {"a folder along the PATH", "folder", kProgramNotFound},
        {"no format anybody knows", In("bin/both"), kProgramBadFormat},
        {"an undefined search path", "?LIB?\\x.exe", kProgramFolderNotFound},
        {"an undefined macro", "<Editor> a.txt", kProgramNotFound},
        {"not closed", "\"" + In("tool.exe") + " a", kProgramNotFound},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_report.Forget();
        EXPECT_EQ(Start(row.line), row.code);
        if (row.code == kProgramStarted) {
            EXPECT_TRUE(m_report.Wait());
        }
    }
}

TEST_F(PosixProgramsTest, ScriptsNeedTheirInterpreter) {
    Script("empty", "");
    Script("text", "echo run by a shell > shell_ran\n");
    Script("lost", "#!/no/such/interpreter\n");
    Script("script", "#!/bin/sh\ntouch script_ran\n");
    EXPECT_EQ(Start("./empty"), kProgramBadFormat);
    EXPECT_EQ(Start("./text"), kProgramBadFormat);
    EXPECT_EQ(Start("./lost"), kProgramNotFound);
    EXPECT_EQ(Start("./script"), kProgramStarted);
    BackendPrograms().WaitForAll();
    EXPECT_TRUE(fs::exists(In("script_ran")));
    EXPECT_FALSE(fs::exists(In("shell_ran")));
}

TEST_F(PosixProgramsTest, TooLongALineIsAnError) {
    EXPECT_EQ(Start(In("tool.exe") + " " + std::string(300'000, 'x')), kProgramNoMemory);
}

TEST_F(PosixProgramsTest, ManyStartsLeaveNothingBehind) {
    const std::set<std::string> before = OpenDescriptors();
    const int zombies = Zombies();
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(Start("/bin/true"), kProgramStarted);
    EXPECT_EQ(OpenDescriptors(), before);
    BackendPrograms().WaitForAll();
    EXPECT_EQ(Zombies(), zombies);
}

TEST_F(PosixProgramsTest, TheNextStartOrReapTakesEndedProgramsAway) {
    for (const bool byStart : {false, true}) {
        SCOPED_TRACE(byStart);
        ASSERT_EQ(Start(In("tool.exe")), kProgramStarted);
        const auto report = m_report.Wait();
        ASSERT_TRUE(report);
        const std::string status = "/proc/" + std::to_string((*report)["process"].get<int>());
        siginfo_t ended;
        ASSERT_EQ(waitid(P_PID, (*report)["process"].get<id_t>(), &ended, WEXITED | WNOWAIT), 0);
        EXPECT_TRUE(fs::exists(status)) << "a zombie until then";
        if (byStart) {
            EXPECT_EQ(Start("nosuchprogram"), kProgramNotFound);
        } else {
            BackendPrograms().Reap();
        }
        EXPECT_FALSE(fs::exists(status));
    }
}

TEST_F(PosixProgramsTest, LeavesTheHostsChildrenAlone) {
    const pid_t own = fork();
    if (own == 0) _exit(7);
    siginfo_t ended;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(own), &ended, WEXITED | WNOWAIT), 0);
    ASSERT_EQ(Start("/bin/true"), kProgramStarted);
    BackendPrograms().Reap();
    BackendPrograms().WaitForAll();
    int status = 0;
    EXPECT_EQ(waitpid(own, &status, 0), own) << "still there to be waited for";
    EXPECT_EQ(WEXITSTATUS(status), 7);
    struct sigaction action {};
    sigaction(SIGCHLD, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST_F(PosixProgramsTest, AHostThatIgnoresItsChildrenIsNoHindrance) {
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(Start("/bin/true"), kProgramStarted);
    BackendPrograms().WaitForAll();
    BackendPrograms().Reap();
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(PosixProgramsTest, OpensWithTheDesktopsOpener) {
    fs::create_directory(In("bin"));
    fs::create_directory(In("work"));
    fs::copy_file(BRINDLE_PROGRAM, In("bin/xdg-open"));
    std::ofstream(In("notes.txt")) << "x";
    setenv("PATH", In("bin").c_str(), 1);
    Programs& programs = BackendPrograms();
    struct Row {
        const char* label;
        std::string document;
        std::string argument;
    };
    const std::vector<Row> rows = {
        {"a document", "notes.txt", In("notes.txt")},
        {"a host path", "C:" + m_folder + "\\NOTES.txt", In("notes.txt")},
        {"a folder", In("my dir"), In("my dir")},
        {"an address", "https://host/a?b=c d", "https://host/a?b=c d"},
        {"mail", "mailto:x@host", "mailto:x@host"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_report.Forget();
        EXPECT_EQ(programs.Open(row.document, In("work"), true), kProgramStarted);
        const auto report = m_report.Wait();
        ASSERT_TRUE(report);
        EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre(row.argument));
        EXPECT_EQ((*report)["directory"], In("work"));
    }
    m_report.Forget();
    EXPECT_EQ(programs.Open("notes.txt", In("none"), true), kProgramStarted);
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_EQ((*report)["directory"], m_folder) << "an unusable directory is ignored";
    EXPECT_EQ(programs.Open("tool.exe a b", "", true), kProgramNotFound) << "never split";
    EXPECT_EQ(programs.Open("C:\\nosuchdir\\x.txt", "", true), kProgramFolderNotFound);
}

TEST_F(PosixProgramsTest, TheOpenersVerdictCounts) {
    fs::create_directory(In("bin"));
    std::ofstream(In("notes.txt")) << "x";
    setenv("PATH", In("bin").c_str(), 1);
    Programs& programs = BackendPrograms();
    EXPECT_EQ(programs.Open("notes.txt", "", true), kProgramNoOpener) << "there is none";
    struct Row {
        const char* body;
        int code;
    };
    for (const Row& row : {Row{"exit 0", kProgramStarted}, Row{"exit 1", kProgramFailed},
                           Row{"exit 2", kProgramNotFound}, Row{"exit 3", kProgramNoOpener},
                           Row{"exit 4", kProgramFailed}, Row{"kill -9 $$", kProgramFailed}}) {
        SCOPED_TRACE(row.body);
        Script("bin/xdg-open", std::string("#!/bin/sh\n") + row.body + "\n");
        EXPECT_EQ(programs.Open("notes.txt", "", true), row.code);
    }
}

// The recordings' programs are stood in for by ours; a folder stands for theirs. Left out is what the other system
// knows by a file's name and this one by its mode: text files with the name of a program.
TEST_F(PosixProgramsTest, StartsAsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "winexec.json");
    fs::copy_file(BRINDLE_PROGRAM, In("tiny.exe"));
    fs::copy_file(BRINDLE_PROGRAM, In("my dir/tiny.exe"));
    setenv("PATH", "/nowhere", 1);
    int compared = 0;
    for (const json& row : vectors["cases"]) {
        const std::string note = row["note"];
        SCOPED_TRACE(row["api"].get<std::string>() + ": " + note);
        if (row.value("quirk", false) || row.value("unsure", false) || note.starts_with("text file"))
            continue;
        const bool winExec = row["api"] == "WinExec";
        if (!winExec && !row["parameters"].is_null()) continue;
        std::string text = BytesOf(row[winExec ? "command" : "file"]);
        for (std::size_t at; (at = text.find("$D")) != std::string::npos;) text.replace(at, 2, m_folder);
        m_report.Forget();
        const int code = winExec ? Start(text) : BackendPrograms().Open(text, m_folder, true);
        EXPECT_EQ(code, row["code"].get<int>());
        ++compared;
        if (code != kProgramStarted) continue;
        const auto report = m_report.Wait();
        ASSERT_TRUE(report);
        const std::vector<std::string> arguments =
            SplitArguments(SplitProgram(BytesOf(row["started_command_line"])).arguments);
        std::vector<std::string> utf8;
        for (const std::string& argument : arguments) utf8.push_back(ToUtf8(argument));
        EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAreArray(utf8));
    }
    EXPECT_GE(compared, 25);
}

}  // namespace
}  // namespace brindle
