// Macro command lines over the fake services: which programs start with what, what operators see, what is logged.
#include "brindle/macro/macro_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/address/full_address.h"
#include "brindle/behaviour/action_files.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/macro/start_filter.h"
#include "brindle/macro/substitute_path.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/fake/desktop_fake.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/programs_fake.h"
#include "brindle/platform/service.h"

namespace {

using brindle::FakeFiles;
using brindle::MessageIcon;
using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Texts = std::vector<std::string>;

constexpr FullAddress_t kAddress = {0x0001, 0x02, 0x03};

class MacroCommand : public ::testing::Test {
  protected:
    MacroCommand() {
        SetSearchPathIniFile("C:\\macros.ini");
        SetCommandActionsIniFile("C:\\macros.ini");
        Ini("[SearchPath]\nLIB=C:\\lib\n[CommandActions]\nEditor=Text editor,notepad.exe\nBell=bell.exe "
            "/ring\n");
        m_files.Add("/Schem/maps", FakeFiles::Kind::kFolder);
        m_files.Add("/other", FakeFiles::Kind::kFolder);
        m_files.SetCurrentDirectory("/other");
        for (const char* name : {"notepad.exe", "bell.exe", "a", "b", "C:\\lib\\tool.exe"})
            m_programs.AddProgram(name);
    }
    ~MacroCommand() override {
        SetSearchPathIniFile("");
        SetCommandActionsIniFile("");
    }
    void Ini(const std::string& text) { m_files.Add("/macros.ini", FakeFiles::Kind::kFile, text); }
    static int Run(const char* line, const char* path = "C:\\Schem") {
        return ExecuteMacroCommandLine(nullptr, line, &kAddress, path, "Cap", "Txt", "Hlp", 2, "Are", 5, -1);
    }
    // Everything that was started, "program|argument|...".
    std::vector<std::string> Started() const {
        std::vector<std::string> lines;
        for (const brindle::FakePrograms::Started& start : m_programs.started) {
            std::string line = start.program;
            for (const std::string& argument : start.arguments) line += "|" + argument;
            lines.push_back(line);
        }
        return lines;
    }
    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const brindle::FakeDesktop::Message& message : m_desktop.messages)
            texts.push_back((message.icon == MessageIcon::kError ? "error: " : "warning: ") + message.text);
        return texts;
    }

    FakeFiles m_files;
    brindle::FakePrograms m_programs;
    brindle::FakeDesktop m_desktop;
    RecordingData m_data;
    brindle::ScopedService<brindle::Files> m_installedFiles{&brindle::SetFiles, m_files};
    brindle::ScopedService<brindle::Programs> m_installedPrograms{&brindle::SetPrograms, m_programs};
    brindle::ScopedService<brindle::Desktop> m_installedDesktop{&brindle::SetDesktop, m_desktop};
    ScopedData m_registered{&m_data};
};

constexpr const char* kNope =
    "warning: Macro <Nope> is not defined in the Orvane configuration. \n"
    "Please see Configuration | Macro Setup... for the list of all defined macros.";

TEST_F(MacroCommand, RunsEveryCommandOfTheLine) {
    struct Row {
        const char* label;
        const char* line;
        int code;
        Texts started;
    };
    const std::vector<Row> rows = {
        {"nothing", "", 0, {}},
        {"null", nullptr, 0, {}},
        {"blanks and separators only", " ; ;;", 0, {}},
        {"one", "a x", 33, {"a|x"}},
        {"two", "a;;b", 33, {"a", "b"}},
        {"blanks around", "  a x  ; b ", 33, {"a|x", "b"}},
        {"a macro with a description", "<Editor> a.txt", 33, {"notepad.exe|a.txt"}},
        {"a macro without one", "<Bell>", 33, {"bell.exe|/ring"}},
        {"a macro in other case", "<EDITOR>", 33, {"notepad.exe"}},
        {"every occurrence", "<Editor> <Editor>", 33, {"notepad.exe|notepad.exe"}},
        {"fields", "a %a \"%c %t\" %n %q %i", 33, {"a|0001:02:03|Cap Txt|5|%q|2"}},
        {"search path and field", "<Editor> $LIB$/a.txt %c", 33, {"notepad.exe|C:\\lib/a.txt|Cap"}},
        {"the program by a search path", "$LIB$\\tool.exe x", 33, {"C:\\lib\\tool.exe|x"}},
        {"hash fields", "a \"#Name#\"", 33, {"a|<Name>"}},
        {"many leading signs", "<<<Editor> x", 33, {"notepad.exe|x"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_programs.started.clear();
        EXPECT_EQ(Run(row.line), row.code);
        EXPECT_THAT(Started(), ElementsAreArray(row.started));
        EXPECT_THAT(Messages(), ElementsAre());
    }
}

TEST_F(MacroCommand, TheCodeIsThatOfTheLastCommand) {
    EXPECT_EQ(Run("none;a"), 33);
    EXPECT_EQ(Run("a;none"), 2);
    EXPECT_EQ(Run("none; "), 2);
    m_programs.AddProgram("broken", 11);
    EXPECT_EQ(Run("a;broken"), 2) << "the second try's code";
}

TEST_F(MacroCommand, KeptAnUndefinedMacroWarnsOnceAndRuns) {
    m_programs.AddProgram("<Nope>");
    EXPECT_EQ(Run("<Nope> x <Nope>"), 33);
    EXPECT_THAT(Messages(), ElementsAre(kNope));
    EXPECT_THAT(Started(), ElementsAre("<Nope>|x|<Nope>"));
    m_desktop.messages.clear();
    m_programs.AddProgram("c");
    Ini("[CommandActions]\nEmpty=\n");
    EXPECT_EQ(Run("c <Empty>;c <Nope>"), 33);
    ASSERT_EQ(m_desktop.messages.size(), 2u) << "one for each command";
    EXPECT_NE(m_desktop.messages[0].text.find("<Empty>"), std::string::npos)
        << "defined as nothing is not defined";
}

TEST_F(MacroCommand, SignsThatMakeNoMacro) {
    m_programs.AddProgram("x");
    struct Row {
        const char* line;
        const char* started;
    };
    for (const Row& row : {Row{"x a > b < c", "x|a|>|b|<|c"}, Row{"x <", "x|<"}, Row{"x >", "x|>"}}) {
        SCOPED_TRACE(row.line);
        m_programs.started.clear();
        EXPECT_EQ(Run(row.line), 33);
        EXPECT_THAT(Started(), ElementsAre(row.started));
        EXPECT_THAT(Messages(), ElementsAre());
    }
    Run("x <>");
    EXPECT_EQ(m_desktop.messages.size(), 1u) << "an empty name is looked for and not found";
}

TEST_F(MacroCommand, KeptADefinitionIsNotSplitAgain) {
    Ini("[CommandActions]\nTwo=Both,a one;b two\nNone=Nothing,\n");
    EXPECT_EQ(Run("<Two>"), 33);
    EXPECT_THAT(Started(), ElementsAre("a|one;b|two"));
    EXPECT_EQ(Run("<None>"), 0) << "an empty command text runs nothing";
    EXPECT_EQ(Run("<None> b"), 33);
    EXPECT_THAT(Messages(), ElementsAre());
}

TEST_F(MacroCommand, RunsInTheGivenDirectoryAndComesBack) {
    struct Row {
        const char* label;
        const char* path;
        const char* directory;
    };
    const std::vector<Row> rows = {
        {"given", "C:\\Schem", "/Schem"},    {"none", "", "/other"},
        {"null", nullptr, "/other"},         {"unusable", "C:\\none", "/other"},
        {"relative", "..\\Schem", "/Schem"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_programs.started.clear();
        EXPECT_EQ(Run("a", row.path), 33);
        ASSERT_EQ(m_programs.started.size(), 1u);
        if (std::string(row.label) != "relative") {
            EXPECT_EQ(m_programs.started[0].directory, row.directory);
        }
        EXPECT_EQ(m_files.CurrentDirectory(), "/other");
        EXPECT_EQ(Run("none", row.path), 2);
        EXPECT_EQ(m_files.CurrentDirectory(), "/other");
    }
}

TEST_F(MacroCommand, CandidatesAreLookedForInTheGivenDirectory) {
    m_files.Add("/Schem/b.exe", FakeFiles::Kind::kFile);
    m_programs.AddProgram("b.exe");
    Ini("[SearchPath]\nX=a.exe;b.exe\n");
    EXPECT_EQ(Run("$X$"), 33);
    EXPECT_THAT(Started(), ElementsAre("b.exe"));
}

class ThrowingData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t*) override { return 0; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char*) override {
        throw std::runtime_error("field");
    }
    void WriteCommandLog(const char*) override { throw std::runtime_error("log"); }
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }
};

TEST_F(MacroCommand, TheDirectoryComesBackWhenTheHostThrows) {
    ThrowingData data;
    RegisterIBrindleData(&data);
    EXPECT_THROW(Run("a"), std::runtime_error);
    EXPECT_EQ(m_files.CurrentDirectory(), "/other");
    EXPECT_THROW(Run("a #x#"), std::runtime_error);
    EXPECT_EQ(m_files.CurrentDirectory(), "/other");
    EXPECT_THROW(ExecuteShellCommand(nullptr, "a", "C:\\Schem"), std::runtime_error);
    EXPECT_EQ(m_files.CurrentDirectory(), "/other");
}

TEST_F(MacroCommand, WritesOneLogLineForEachStart) {
    struct Row {
        int code;
        const char* name;
    };
    for (const Row& row : {Row{33, "OK"}, Row{1'000, "OK"}, Row{0, "Out of Memory"}, Row{2, "File Not Found"},
                           Row{3, "Path Not Found"}, Row{11, "Bad Format"}, Row{5, "Unknown Error"},
                           Row{32, "Unknown Error"}, Row{-1, "Unknown Error"}}) {
        SCOPED_TRACE(row.code);
        m_data.calls.clear();
        m_desktop.messages.clear();
        m_programs.AddDocument("doc x", row.code);
        EXPECT_EQ(ExecuteShellCommand(nullptr, " doc x ", "C:\\Schem"), row.code);
        EXPECT_EQ(m_data.calls, std::string("log doc x,C:\\Schem,") + row.name + ";");
        const std::string error =
            "error: Failed to execute command line 'doc x'. Returned code " + std::to_string(row.code) + ".";
        EXPECT_THAT(Messages(), ElementsAreArray(row.code > 32 ? Texts{} : Texts{error}));
    }
    RegisterIBrindleData(nullptr);
    EXPECT_EQ(ExecuteShellCommand(nullptr, "a", nullptr), 33) << "without a host nothing is logged";
}

TEST_F(MacroCommand, TheSecondTryOpensTheWholeCommand) {
    m_programs.AddDocument("my notes.txt");
    EXPECT_EQ(ExecuteShellCommand(nullptr, "my notes.txt", "C:\\Schem"), 33);
    ASSERT_EQ(m_programs.started.size(), 1u);
    EXPECT_TRUE(m_programs.started[0].opened);
    EXPECT_EQ(m_programs.started[0].program, "my notes.txt");
    EXPECT_EQ(m_programs.started[0].directory, "C:\\Schem");
    m_programs.AddProgram("broken", 11);
    m_programs.AddDocument("broken");
    EXPECT_EQ(ExecuteShellCommand(nullptr, "broken", ""), 33);
    EXPECT_THAT(Messages(), ElementsAre());
}

TEST_F(MacroCommand, HiddenPrograms) {
    struct Row {
        const char* label;
        const char* command;
        bool hidden;
        const char* started;
    };
    const std::vector<Row> rows = {
        {"shown", "a x", false, "a|x"},
        {"at the end", "a %H", true, "a"},
        {"at the front", "%Ha x", true, "a|x"},
        {"more than once", "a %Hx%H", true, "a|x"},
        {"a small letter", "a %h", false, "a|%h"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_programs.started.clear();
        EXPECT_EQ(ExecuteShellCommand(nullptr, row.command, ""), 33);
        EXPECT_THAT(Started(), ElementsAre(row.started));
        EXPECT_EQ(m_programs.started.at(0).hidden, row.hidden);
    }
    m_programs.started.clear();
    m_programs.AddDocument("notes.txt");
    EXPECT_EQ(ExecuteShellCommand(nullptr, "notes.txt %H", ""), 33);
    EXPECT_TRUE(m_programs.started.at(0).hidden);
    EXPECT_EQ(m_data.calls.find("%H"), std::string::npos) << "not in the log line: " << m_data.calls;
}

TEST_F(MacroCommand, TheHourIsNotTheSignToHide) {
    brindle::FakeClock clock;
    clock.SetUnixSeconds(15 * 3600);
    clock.SetUtcOffset(0);
    const brindle::ScopedService<brindle::Clock> installed(&brindle::SetClock, clock);
    EXPECT_EQ(Run("a %H% %H"), 33);
    EXPECT_THAT(Started(), ElementsAre("a|15"));
    EXPECT_TRUE(m_programs.started.at(0).hidden);
}

TEST_F(MacroCommand, MessagesBelongToTheOwner) {
    static char window;
    const HWND owner = reinterpret_cast<HWND>(&window);
    ExecuteMacroCommandLine(owner, "<Nope>", nullptr, nullptr, nullptr, nullptr, nullptr, 0, nullptr, -1, -1);
    ASSERT_EQ(m_desktop.messages.size(), 2u);
    EXPECT_EQ(m_desktop.messages[0].owner, owner);
    EXPECT_EQ(m_desktop.messages[1].owner, owner);
    EXPECT_EQ(m_desktop.messages[1].text, "Failed to execute command line '<Nope>'. Returned code 2.");
}

TEST_F(MacroCommand, ExpandsNamesToFiles) {
    m_files.Add("/Schem/b.txt", FakeFiles::Kind::kFile);
    Ini("[SearchPath]\nS=C:\\none;C:\\Schem\n[CommandActions]\nFile=A file, $S$\\b.txt \nNo=\nQ=%c %n %q\n");
    struct Row {
        const char* label;
        const char* name;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"a macro", "<File>", "C:\\Schem\\b.txt"},
        {"blanks around", "  <file> ", "C:\\Schem\\b.txt"},
        {"not defined: no message", "<X>", ""},
        {"defined as nothing", "<No>", ""},
        {"two signs are a plain path", "<>", "<>"},
        {"one sign", "<", "<"},
        {"not a macro as a whole", "<File> x", "<File> x"},
        {"a path", "$S$\\b.txt", "C:\\Schem\\b.txt"},
        {"no candidate", "$S$\\c.txt", "C:\\none\\c.txt;C:\\Schem\\c.txt"},
        {"fields; no numbers", "<Q>", "Cap %n %q"},
        {"relative to the path", ".\\x", "C:\\P\\.\\x"},
        {"empty", "", ""},
        {"blanks", "   ", ""},
        {"null", nullptr, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(ExpandMacroFileName(nullptr, row.name, &kAddress, "C:\\P", "Cap", "T", "H", 0, "R"),
                  row.expected);
    }
    EXPECT_THAT(Messages(), ElementsAre());
    EXPECT_EQ(ExpandMacroFileName(nullptr, std::string(5'000, 'x').c_str(), nullptr, "", "", "", "", 0, "")
                  .GetLength(),
              4'095);
}

class Observer final : public IMacroObserver {
  public:
    Observer() : m_before(RegisterMacroObserver(this)) {}
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() { RegisterMacroObserver(m_before); }
    void OnMacro(const char* name, const char* definition) override {
        seen.push_back(std::string("macro ") + name + "=" + (definition ? definition : "(none)"));
    }
    void OnSearchPath(const char* name, const char* directories) override {
        seen.push_back(std::string("path ") + name + "=" + (directories ? directories : "(none)"));
    }
    void OnPass(int pass, const char* text) override {
        seen.push_back("pass " + std::to_string(pass) + " " + text);
    }
    void OnEndless(const char* text) override { seen.push_back(std::string("endless ") + text); }
    void OnCandidate(const char* candidate, bool exists) override {
        seen.push_back((exists ? "there " : "not there ") + std::string(candidate));
    }
    void OnCommand(const char* command) override { seen.push_back(std::string("command ") + command); }

    Texts seen;

  private:
    IMacroObserver* m_before;
};

TEST_F(MacroCommand, AnObserverSeesEveryStep) {
    m_files.Add("/Schem/b.txt", FakeFiles::Kind::kFile);
    Ini("[SearchPath]\nS=C:\\none;C:\\Schem\nE=$E$x\n[CommandActions]\nEditor=Text editor,notepad.exe\n");
    struct Row {
        const char* label;
        const char* line;
        Texts expected;
    };
    const std::vector<Row> rows = {
        {"plain", "a x", {"pass 1 a x", "not there a x", "command a x"}},
        {"a macro",
         "<Editor> x",
         {"macro Editor=notepad.exe", "pass 1 notepad.exe x", "not there notepad.exe x",
          "command notepad.exe x"}},
        {"an undefined macro",
         "<Nope>",
         {"macro Nope=(none)", "pass 1 <Nope>", "not there <Nope>", "command <Nope>"}},
        {"a search path",
         "a $S$\\b.txt",
         {"path S=C:\\none;C:\\Schem", "pass 1 C:\\none\\b.txt;C:\\Schem\\b.txt", "not there C:\\none\\b.txt",
          "there C:\\Schem\\b.txt", "command a C:\\Schem\\b.txt"}},
    };
    Observer observer;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        observer.seen.clear();
        Run(row.line);
        EXPECT_THAT(observer.seen, ElementsAreArray(row.expected));
    }
    observer.seen.clear();
    Run("a $E$");
    EXPECT_THAT(observer.seen, ::testing::Contains(::testing::StartsWith("endless ")));
}

class Filter final : public IStartFilter {
  public:
    Filter() : m_before(RegisterStartFilter(this)) {}
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;
    ~Filter() { RegisterStartFilter(m_before); }
    bool Allow(const ProgramStart& start, CStringA& reason) override {
        seen = std::string(start.program) + "|" + std::to_string(start.arguments.size()) + "|" +
               start.command + "|" + start.line;
        reason = "because";
        return allow;
    }
    bool allow = true;
    std::string seen;

  private:
    IStartFilter* m_before;
};

TEST_F(MacroCommand, AFilterDecides) {
    Filter filter;
    EXPECT_EQ(Run("<Editor> %c $LIB$/x %H"), 33);
    EXPECT_EQ(filter.seen, "notepad.exe|2|notepad.exe Cap C:\\lib/x|notepad.exe %c $LIB$/x %H");
    EXPECT_TRUE(m_data.calls.ends_with(",C:\\Schem,OK;")) << m_data.calls;
    m_programs.started.clear();
    m_data.calls.clear();
    filter.allow = false;
    EXPECT_EQ(Run("a %c"), 5);
    EXPECT_THAT(Started(), ElementsAre());
    EXPECT_EQ(m_data.calls, "log a Cap,C:\\Schem,because;");
    EXPECT_THAT(Messages(), ElementsAre()) << "the host has decided; it knows";
    EXPECT_EQ(m_files.CurrentDirectory(), "/other");
    EXPECT_EQ(ExecuteShellCommand(nullptr, "none x", "C:\\Schem"), 5) << "asked before anything is tried";
    EXPECT_EQ(filter.seen, "none|1|none x|none x");
}

// What a text from a device can do, and what it cannot.
TEST_F(MacroCommand, KeptTextsCanEndAnArgumentButRunNothing) {
    struct Row {
        const char* label;
        const char* caption;
        Texts started;
    };
    const std::vector<Row> rows = {
        {"what a shell would run", "; b $(id) `id` | b & b > f", {"a|; b $(id) `id` | b & b > f"}},
        {"a quote ends the argument", "x\" y", {"a|x|y"}},
        {"a macro's name in a text stays", "<Bell>", {"a|<Bell>"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_programs.started.clear();
        ExecuteMacroCommandLine(nullptr, "a \"%c\"", nullptr, "", row.caption, "", "", 0, "", -1, -1);
        EXPECT_THAT(Started(), ElementsAreArray(row.started));
    }
}

}  // namespace
