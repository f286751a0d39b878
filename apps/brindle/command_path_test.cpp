// brindle path: search paths in both directions, and what their trace shows.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

// A folder with f.ini, "a/x" and "b/x".
class PathFolder {
  public:
    PathFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_path_XXXXXX";
        m_folder = std::filesystem::canonical(mkdtemp(pattern.data()));
        std::filesystem::create_directory(m_folder + "/b");
        std::ofstream(In("b/x")) << "x";
        std::ofstream(In("f.ini")) << "[SearchPath]\r\nLIB=C:\\A;D:\\B\\\r\nHERE=" << m_folder << "/a;"
                                   << m_folder << "/b\r\nDEEP=$HERE$\r\nA=$B$\r\nB=$A$\r\n";
    }
    PathFolder(const PathFolder&) = delete;
    PathFolder& operator=(const PathFolder&) = delete;
    ~PathFolder() { std::filesystem::remove_all(m_folder); }
    std::string In(const std::string& name) const { return m_folder + "/" + name; }

  private:
    std::string m_folder;
};

TEST(ToolPath, Expands) {
    const PathFolder folder;
    const std::string ini = folder.In("f.ini");
    const std::vector<ToolRow> rows = {
        {"two directories",
         {"path", "expand", "$LIB$\\x.dll", "--ini", ini},
         "C:\\A\\x.dll;D:\\B\\x.dll\n",
         "",
         0},
        {"not defined", {"path", "expand", "$NOPE$\\x", "--ini", ini}, "?NOPE?\\x\n", "", 0},
        {"what exists", {"path", "expand", "$DEEP$/x", "--exists", "--ini", ini}, folder.In("b/x\n"), "", 0},
        {"nothing exists",
         {"path", "expand", "$LIB$/x", "--exists", "--ini", ini},
         "C:\\A/x;D:\\B/x\n",
         "",
         0},
        {"a drive",
         {"path", "expand", "C:\\x", "--exists", "--ini", ini, "--drive", "C=" + folder.In("b")},
         "C:\\x\n",
         "",
         0},
        {"fields",
         {"path", "expand", "%c %a {V}", "--ini", ini, "--caption", "C", "--set", "V=1"},
         "C %a 1\n",
         "",
         0},
        {"no end", {"path", "expand", "$A$", "--ini", ini}, "$A$\n", "do not come to an end", 0},
        {"no file", {"path", "expand", "x", "--ini", folder.In("none")}, "", "no such file", 2},
        {"no --ini", {"path", "expand", "x"}, "", "is required", 2},
        {"no drive",
         {"path", "expand", "x", "--ini", ini, "--drive", "1=/"},
         "",
         "not the letter of a drive",
         2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolPath, Finds) {
    const PathFolder folder;
    const std::string ini = folder.In("f.ini");
    const std::string one = folder.In("one.ini");
    std::ofstream(one) << "[SearchPath]\nLIB=C:\\A\n";
    const std::vector<ToolRow> rows = {
        {"a search path",
         {"path", "find", "C:\\S", "C:\\A\\sub\\f.txt", "--ini", one},
         "2 $LIB$\\sub\\f.txt\n",
         "",
         0},
        {"no base", {"path", "find", "", "C:\\f", "--ini", one}, "0 C:\\f\n", "", 0},
        {"in the base", {"path", "find", "/s", "/s/f.txt", "--ini", one}, "1 f.txt\n", "", 0},
        {"beside the base",
         {"path", "find", "C:\\S\\a", "C:\\S\\f.txt", "--ini", one},
         "3 ..\\f.txt\n",
         "",
         0},
        {"unrelated", {"path", "find", "C:\\S", "D:\\f.txt", "--ini", one}, "4 D:\\f.txt\n", "", 0},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolPath, TheTraceShowsEveryStep) {
    const PathFolder folder;
    const ToolResult result =
        RunTool({{"path", "expand", "$DEEP$/x", "--exists", "--trace", "--ini", folder.In("f.ini")},
                 "",
                 {},
                 OutputTo::kPipe});
    EXPECT_EQ(result.out, folder.In("b/x\n"));
    const std::string here = folder.In("a;") + folder.In("b");
    EXPECT_EQ(result.err,
              "brindle: look up  : $DEEP$ = $HERE$\n"
              "brindle: pass 1   : $HERE$/x\n"
              "brindle: look up  : $HERE$ = " +
                  here + "\n" + "brindle: pass 2   : " + folder.In("a/x;") + folder.In("b/x") + "\n" +
                  "brindle: candidate: " + folder.In("a/x") + "  (does not exist)\n" +
                  "brindle: candidate: " + folder.In("b/x") + "  (exists: wins)\n");
}

}  // namespace
}  // namespace brindle::testing
