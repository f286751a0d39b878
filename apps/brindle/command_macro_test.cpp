// brindle macro: what starts, what is printed, and which exit code it gives.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

class MacroFolder {
  public:
    MacroFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_macro_XXXXXX";
        m_folder = std::filesystem::canonical(mkdtemp(pattern.data()));
        std::filesystem::create_directory(m_folder + "/work");
        std::filesystem::create_symlink("/bin/echo", m_folder + "/say.exe");
        std::ofstream(In("m.ini"))
            << "[SearchPath]\nTOOLS=C:\\none;C:\\\n[CommandActions]\nSay=Says,C:\\say.exe\n"
               "Where=pwd\nTool=$TOOLS$\\say.exe\n";
    }
    MacroFolder(const MacroFolder&) = delete;
    MacroFolder& operator=(const MacroFolder&) = delete;
    ~MacroFolder() { std::filesystem::remove_all(m_folder); }
    std::string In(const std::string& name) const { return m_folder + "/" + name; }
    std::vector<std::string> Call(std::vector<std::string> arguments) const {
        for (const char* option : {"--ini", "--drive"}) arguments.emplace_back(option);
        arguments.insert(arguments.end() - 1, In("m.ini"));
        arguments.push_back("C=" + m_folder);
        return arguments;
    }

  private:
    std::string m_folder;
};

TEST(ToolMacro, Runs) {
    const MacroFolder folder;
    const std::vector<ToolRow> rows = {
        {"a macro", folder.Call({"macro", "run", "<Say> a \"b  c\" '%c'", "--wait", "--caption", "x y"}),
         "a b  c 'x y'\n", "", 0},
        {"no shell",
         folder.Call({"macro", "run", "<Say> \"%c\"", "--wait", "--caption", "; id $(id) `id` | id"}),
         "; id $(id) `id` | id\n", "", 0},
        {"in a folder", folder.Call({"macro", "run", "<Where>", "--wait", "--path", folder.In("work")}),
         folder.In("work\n"), "", 0},
        {"hidden", folder.Call({"macro", "run", "<Say> a %H", "--wait"}), "", "", 0},
        {"by a search path", folder.Call({"macro", "run", "<Tool>", "--wait"}), "\n", "", 0},
        {"the last one counts", folder.Call({"macro", "run", "no_such_program;/bin/true", "--wait"}), "",
         "Failed to execute command line 'no_such_program'. Returned code 2.", 0},
        {"it failed", folder.Call({"macro", "run", "no_such_program"}), "", "Returned code 2", 1},
        {"an undefined macro", folder.Call({"macro", "run", "<Nope>"}), "",
         "brindle: warning: Macro <Nope> is not defined in the Orvane configuration.  Please see", 1},
        {"nothing", folder.Call({"macro", "run", " ; "}), "", "", 1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolMacro, ADryRunPrintsEachCommand) {
    const MacroFolder folder;
    const std::vector<ToolRow> rows = {
        {"expanded, the sign to hide left in",
         folder.Call({"macro", "run", "<Say> %c %H;no_such_program", "--dry-run", "--caption", "x"}),
         "C:\\say.exe x %H\nno_such_program\n", "", 0},
        {"none", folder.Call({"macro", "run", ";", "--dry-run"}), "", "", 1},
        {"as JSON", folder.Call({"macro", "run", "<Say> \"a b\" c %H", "--dry-run", "--json"}),
         R"({"command":"C:\\say.exe \"a b\" c %H","program":"C:\\say.exe",)"
         R"("arguments":["a b","c"],"hidden":true,"dryRun":true})"
         "\n",
         "", 0},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolMacro, JsonTellsEachOutcome) {
    const MacroFolder folder;
    CheckRow({"started and failed",
              folder.Call({"macro", "run", "/bin/true;no_such_program x", "--json", "--wait"}),
              "{\"command\":\"/bin/true\",\"program\":\"/bin/true\",\"arguments\":[],\"code\":33}\n"
              "{\"command\":\"no_such_program x\",\"opened\":true,\"code\":2}\n",
              "Returned code 2", 1});
}

TEST(ToolMacro, ExpandsNames) {
    const MacroFolder folder;
    const std::vector<ToolRow> rows = {
        {"a macro", folder.Call({"macro", "expand", "<Say>"}), "C:\\say.exe\n", "", 0},
        {"the candidate that exists", folder.Call({"macro", "expand", "<Tool>"}), "C:\\say.exe\n", "", 0},
        {"a path", folder.Call({"macro", "expand", "$TOOLS$\\x"}), "C:\\none\\x;C:\\x\n", "", 0},
        {"not defined", folder.Call({"macro", "expand", "<Nope>"}), "", "stands for nothing", 1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
    const ToolResult traced =
        RunTool({folder.Call({"macro", "expand", "<Tool>", "--trace"}), "", {}, OutputTo::kPipe});
    EXPECT_THAT(traced.err, ::testing::HasSubstr("brindle: macro    : <Tool> = $TOOLS$\\say.exe\n"));
    EXPECT_THAT(traced.err,
                ::testing::HasSubstr("brindle: candidate: C:\\none\\say.exe  (does not exist)\n"));
}

}  // namespace
}  // namespace brindle::testing
