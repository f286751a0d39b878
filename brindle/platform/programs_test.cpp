// How command lines are split, and the contract of starting programs over the system's service and the fake one.
#include "brindle/platform/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "brindle/platform/backend.h"
#include "brindle/platform/fake/programs_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

using ::testing::ElementsAreArray;
using Texts = std::vector<std::string>;

TEST(SplitArguments, Rows) {
    struct Row {
        const char* label;
        const char* text;
        Texts expected;
    };
    const std::vector<Row> rows = {
        {"nothing", "", {}},
        {"blanks only", " \t ", {}},
        {"one", "a", {"a"}},
        {"several, blanks around", "  a \t b  ", {"a", "b"}},
        {"quoted", "\"a b\" c", {"a b", "c"}},
        {"an empty argument", "\"\" x", {"", "x"}},
        {"quotes inside", "a\" \"b", {"a b"}},
        {"quotes that touch", "\"a\"\"b\"", {"a\"b"}},
        {"two quotes within quotes", "\"a\"\"b c\" d", {"a\"b c", "d"}},
        {"a quote that is not closed", "\"a b", {"a b"}},
        {"a quote alone", "\"", {""}},
        {"backslashes are themselves", "C:\\a\\\\b \\", {"C:\\a\\\\b", "\\"}},
        {"backslash before a quote", "a\\\"b", {"a\"b"}},
        {"two before a quote", "a\\\\\"b c\"", {"a\\b c"}},
        {"three before a quote", "a\\\\\\\"b", {"a\\\"b"}},
        {"a folder in quotes", "\"C:\\my dir\\\\\" x", {"C:\\my dir\\", "x"}},
        {"the classic mistake", "\"C:\\my dir\\\" x", {"C:\\my dir\" x"}},
        {"other characters mean nothing",
         "$(id) `id` ; | & > < * ? ~ 'a b'",
         {"$(id)", "`id`", ";", "|", "&", ">", "<", "*", "?", "~", "'a", "b'"}},
        {"line ends are no blanks", "a\nb", {"a\nb"}},
        {"bytes of the code page", "Caf\xE9", {"Caf\xE9"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_THAT(SplitArguments(row.text), ElementsAreArray(row.expected));
    }
}

TEST(SplitProgram, Rows) {
    struct Row {
        const char* label;
        const char* line;
        const char* program;
        const char* arguments;
    };
    const std::vector<Row> rows = {
        {"nothing", "", "", ""},
        {"blanks", "  ", "", ""},
        {"plain", "a.exe b c", "a.exe", " b c"},
        {"tab", "a.exe\tb", "a.exe", "\tb"},
        {"blanks before it", "  a b", "a", " b"},
        {"quoted", "\"C:\\my dir\\a.exe\" b", "C:\\my dir\\a.exe", " b"},
        {"backslashes before the quote count nothing", "\"C:\\a\\\" b", "C:\\a\\", " b"},
        {"text at the quote", "\"a\"b c", "a", "b c"},
        {"not closed", "\"a b", "a b", ""},
        {"quotes only", "\"\"", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ProgramText text = SplitProgram(row.line);
        EXPECT_EQ(text.program, row.program);
        EXPECT_EQ(text.arguments, row.arguments);
    }
}

// Every prefix of a line splits, and no argument holds more than the text.
TEST(SplitArguments, EveryPrefix) {
    const std::string line = "\"C:\\my dir\\a.exe\" \"x\\\\\\\" y\" \"\"\"z\" \\\\ \\\" w";
    for (std::size_t length = 0; length <= line.size(); ++length) {
        std::size_t total = 0;
        for (const std::string& argument : SplitArguments(line.substr(0, length))) total += argument.size();
        EXPECT_LE(total, length);
    }
}

// A world with the program "tool.exe" and the document "notes.txt" in a folder.
class ProgramWorld {
  public:
    virtual ~ProgramWorld() = default;
    virtual Programs& Service() = 0;
    virtual std::string Folder() = 0;
};

class SystemPrograms final : public ProgramWorld {
  public:
    SystemPrograms() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_programs_XXXXXX";
        m_folder = mkdtemp(pattern.data());
        std::filesystem::create_symlink("/bin/true", m_folder + "/tool.exe");
        std::ofstream(m_folder + "/notes.txt") << "x";
        std::filesystem::create_symlink("/bin/true", m_folder + "/xdg-open");
        m_path = getenv("PATH");
        setenv("PATH", (m_folder + ":" + m_path).c_str(), 1);
    }
    ~SystemPrograms() override {
        BackendPrograms().WaitForAll();
        setenv("PATH", m_path.c_str(), 1);
        std::filesystem::remove_all(m_folder);
    }
    Programs& Service() override { return BackendPrograms(); }
    std::string Folder() override { return m_folder; }

  private:
    std::string m_folder;
    std::string m_path;
};

class MemoryPrograms final : public ProgramWorld {
  public:
    MemoryPrograms() {
        m_programs.AddProgram("/f/tool.exe");
        m_programs.AddDocument("/f/notes.txt");
        m_programs.AddDocument("https://host/");
    }
    Programs& Service() override { return m_programs; }
    std::string Folder() override { return "/f"; }

  private:
    FakePrograms m_programs;
};

class ProgramsContract : public ::testing::TestWithParam<bool> {
  protected:
    ProgramsContract() {
        if (GetParam())
            m_world = std::make_unique<SystemPrograms>();
        else
            m_world = std::make_unique<MemoryPrograms>();
    }
    Programs& programs() { return m_world->Service(); }
    std::string In(const std::string& name) { return m_world->Folder() + "/" + name; }

  private:
    std::unique_ptr<ProgramWorld> m_world;
};

INSTANTIATE_TEST_SUITE_P(Services, ProgramsContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(ProgramsContract, PlansWhatALineMeans) {
    struct Row {
        const char* label;
        std::string line;
        bool found;
        Texts arguments;
    };
    const std::vector<Row> rows = {
        {"plain", In("tool.exe"), true, {}},
        {"with arguments", In("tool.exe") + " a \"b c\"", true, {"a", "b c"}},
        {"quoted", "\"" + In("tool.exe") + "\" a", true, {"a"}},
        {"in other case", In("TOOL.EXE") + " a", true, {"a"}},
        {"without its extension", In("tool") + " a", true, {"a"}},
        {"missing", In("none.exe") + " a", false, {"a"}},
        {"a name with ;", In("a;b"), false, {}},
        {"empty", "", false, {}},
        {"quotes only", "\"\"", false, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ProgramPlan plan = programs().Plan(row.line);
        EXPECT_EQ(plan.code, row.found ? kProgramStarted : kProgramNotFound);
        EXPECT_EQ(!plan.systemPath.empty(), row.found);
        EXPECT_THAT(plan.arguments, ElementsAreArray(row.arguments));
        EXPECT_EQ(programs().Start(plan, true), plan.code);
    }
}

TEST_P(ProgramsContract, OpensDocumentsByOneName) {
    struct Row {
        const char* label;
        std::string document;
        bool opened;
    };
    const std::vector<Row> rows = {
        {"a document", In("notes.txt"), true},
        {"in quotes", "\"" + In("notes.txt") + "\"", true},
        {"in other case", In("Notes.TXT"), true},
        {"an address", "https://host/", true},
        {"missing", In("none.txt"), false},
        {"never split", In("notes.txt") + " x", false},
        {"empty", "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(programs().Open(row.document, "", true), row.opened ? kProgramStarted : kProgramNotFound);
    }
    programs().Reap();
    programs().WaitForAll();
}

TEST(Programs, SlotFallsBackToTheBackend) {
    FakePrograms fake;
    {
        const ScopedService<Programs> installed(&SetPrograms, fake);
        EXPECT_EQ(&CurrentPrograms(), &fake);
    }
    EXPECT_EQ(&CurrentPrograms(), &BackendPrograms());
}

TEST(Programs, FakeCodes) {
    FakePrograms fake;
    fake.AddProgram("broken", kProgramBadFormat);
    EXPECT_EQ(fake.Start(fake.Plan("broken x"), false), kProgramBadFormat);
    EXPECT_TRUE(fake.started.empty());
}

}  // namespace
}  // namespace brindle
