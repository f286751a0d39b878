#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ToolSkin : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brindle_skin_XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string Path(const std::string& name) const { return m_folder / name; }
    std::string File(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary) << text;
        return Path(name);
    }
    std::string Bytes(const std::string& name) const {
        std::stringstream bytes;
        bytes << std::ifstream(m_folder / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    static ToolResult Run(std::vector<std::string> arguments, OutputTo output = OutputTo::kPipe) {
        arguments.insert(arguments.begin(), "skin");
        return RunTool({std::move(arguments), "", {}, output});
    }

    std::filesystem::path m_folder;
};

TEST_F(ToolSkin, GetsEveryKind) {
    const std::string file = File("a.xml",
                                  "<skin><default><e n='300' c='#ff8001' t='text'/></default>"
                                  "<pressed><e n='-5'/></pressed><m><e t='own \xC3\xBC'/></m></skin>");
    const auto row = [&](const char* label, std::vector<std::string> rest, const char* out, int code = 0) {
        rest.insert(rest.begin(), {"skin", "get", file});
        return ToolRow{label, std::move(rest), out, "", code, {}};
    };
    const std::vector<ToolRow> rows = {
        row("text when no kind is given", {"default", "e", "t"}, "text\n"),
        row("a text of the mode", {"m", "e", "t"}, "own \xC3\xBC\n"),
        row("a text does not fall back", {"pressed", "e", "t"}, "", 1),
        row("a number does", {"checked", "e", "n", "--as", "int"}, "300\n"),
        row("long", {"checked", "e", "n", "--as", "long"}, "300\n"),
        row("byte", {"checked", "e", "n", "--as", "byte"}, "44\n"),
        row("colour", {"checked", "e", "c", "--as", "colour"}, "#FF8001\n"),
        row("a colour that is none", {"checked", "e", "n", "--as", "colour"}, "#000000\n"),
        row("a number that is none", {"default", "e", "t", "--as", "int"}, "0\n"),
        row("mode number", {"2", "e", "n", "--as", "int"}, "-5\n"),
        row("mode number out of range", {"7", "e", "n"}, "300\n"),
        row("negative mode number", {"-1", "e", "n"}, "300\n"),
        row("no such attribute", {"default", "e", "x", "--as", "int"}, "", 1),
        row("no such element", {"default", "f", "n", "--as", "colour"}, "", 1),
    };
    for (const ToolRow& line : rows) CheckRow(line);
    CheckRow({"unknown kind", {"skin", "get", file, "m", "e", "t", "--as", "word"}, "", "--as", 2, {}});
    CheckRow({"too few texts", {"skin", "get", file, "m", "e"}, "", "ATTRIBUTE", 2, {}});
}

TEST_F(ToolSkin, TheDefaultSkinStandsInForWhatCannotBeLoaded) {
    const std::string broken = File("broken.xml", "<skin>\n<m>");
    CheckRow({"missing",
              {"skin", "get", "missing.xml", "checked", "button", "bordersize", "--as", "int"},
              "2\n",
              "missing.xml: no such file or folder; the default skin stands in",
              0,
              {}});
    CheckRow({"text",
              {"skin", "get", "missing.xml", "checked", "button", "bordersize", "--as", "text"},
              "",
              "the default skin stands in",
              1,
              {}});
    CheckRow({"broken",
              {"skin", "get", broken, "default", "TimeFont1", "lfFaceName"},
              "Arial\n",
              "broken.xml:2:",
              0,
              {}});
    CheckRow({"no skin",
              {"skin", "get", File("other.xml", "<a/>"), "m", "e", "a"},
              "",
              "the document is no \"skin\"",
              2,
              {}});
}

TEST_F(ToolSkin, SetChangesOneValueAndKeepsTheOthers) {
    const std::string file = Path("f.xml");
    ASSERT_EQ(Run({"set", file, "pressed", "mark", "colour", "#ff0000", "--as", "colour"}).code, 0);
    const ToolResult before = Run({"xml", "missing.xml"});
    std::string expected = before.out;
    const std::string old = "<mark colour=\"#ffffff\"";
    ASSERT_NE(expected.find(old), std::string::npos);
    expected.replace(expected.find(old), old.size(), "<mark colour=\"#FF0000\"");
    EXPECT_EQ(Bytes("f.xml") + "\n", expected);
    const ToolResult again = Run({"set", file, "2", "mark", "thickness", "3", "--as", "byte"});
    EXPECT_EQ(again.err, "");
    EXPECT_EQ(Run({"get", file, "pressed", "mark", "thickness"}).out, "3\n");
    EXPECT_EQ(Run({"get", file, "pressed", "mark", "colour"}).out, "#FF0000\n");
}

TEST_F(ToolSkin, SetWritesUtf8AndNamesWhatIsLost) {
    const std::string file = File("s.xml", "<skin id='1'><!-- c --><m><e a='\xC3\xBC'>t</e></m></skin>");
    const ToolResult result = Run({"set", file, "m", "e", "b", "\xE2\x82\xAC <"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "brindle: " + file + ": attributes of the root are not kept\nbrindle: " + file +
                              ": texts are not kept\nbrindle: " + file + ": comments are not kept\n");
    EXPECT_EQ(Bytes("s.xml"),
              "<?xml version=\"1.0\"?><skin><m><e a=\"\xC3\xBC\" b=\"\xE2\x82\xAC &lt;\"/></m></skin>");
}

TEST_F(ToolSkin, SetRefusesWhatItCannotKeepAndLosesNothing) {
    const std::string good = "<skin><m><e a='1'/></m></skin>";
    const std::string file = File("s.xml", good);
    const std::string broken = File("broken.xml", "<skin><m>");
    const std::vector<ToolRow> rows = {
        {"no int", {"skin", "set", file, "m", "e", "a", "x", "--as", "int"}, "", "VALUE", 2, {}},
        {"no long", {"skin", "set", file, "m", "e", "a", "1.5", "--as", "long"}, "", "VALUE", 2, {}},
        {"no byte", {"skin", "set", file, "m", "e", "a", "256", "--as", "byte"}, "", "0 to 255", 2, {}},
        {"no colour",
         {"skin", "set", file, "m", "e", "a", "#12", "--as", "colour"},
         "",
         "not a colour",
         2,
         {}},
        {"a name with a blank", {"skin", "set", file, "m", "e f", "a", "1"}, "", "cannot hold", 1, {}},
        {"a control character", {"skin", "set", file, "m", "e", "a", "\x01"}, "", "cannot hold", 1, {}},
        {"a broken file", {"skin", "set", broken, "m", "e", "a", "1"}, "", "broken.xml:1:", 2, {}},
        {"no skin", {"skin", "set", File("o.xml", "<a/>"), "m", "e", "a", "1"}, "", "no \"skin\"", 2, {}},
        {"no folder", {"skin", "set", Path("no/s.xml"), "m", "e", "a", "1"}, "", "no/s.xml", 2, {}},
    };
    for (const ToolRow& row : rows) CheckRow(row);
    EXPECT_EQ(Bytes("s.xml"), good);
    EXPECT_EQ(Bytes("broken.xml"), "<skin><m>");
}

TEST_F(ToolSkin, ShowsWhereEachValueComesFrom) {
    const std::string file =
        File("s.xml", "<skin><pressed><e a='1'/></pressed><default><e a='2' b='#FF0080'/></default></skin>");
    EXPECT_EQ(Run({"show", file}).out,
              "MODE     ELEMENT  ATTRIBUTE  FROM     VALUE\n"
              "pressed  e        a          mode     1\n"
              "pressed  e        b          default  #FF0080\n"
              "default  e        a          mode     2\n"
              "default  e        b          mode     #FF0080\n");
    const std::string coloured = Run({"show", file}, OutputTo::kTerminal).out;
    EXPECT_THAT(coloured, HasSubstr("#FF0080 \x1b[48;2;255;0;128m  \x1b[0m"));
    EXPECT_THAT(coloured, HasSubstr("\x1b[2mdefault\x1b[0m"));
}

TEST_F(ToolSkin, ChecksFiles) {
    const std::string good = File("good.xml", "<skin><default><button bordersize='1'/></default></skin>");
    const std::string bad = File("bad.xml", "<skin>\n<default>\n<button colour='1'/></default></skin>");
    CheckRow({"good", {"skin", "check", good}, "", "", 0, {}});
    CheckRow({"bad",
              {"skin", "check", good, bad},
              bad + ":3:1: attribute \"colour\" of \"button\" is unknown\n",
              "",
              1,
              {}});
}

TEST_F(ToolSkin, ComparesValues) {
    const std::string one = File("1.xml", "<skin><m><e a='1' b='2' c='3'/></m></skin>");
    const std::string other = File("2.xml", "<skin><n><e d='4'/></n><m><e c='3' b='x'/></m></skin>");
    CheckRow({"alike", {"skin", "diff", one, one}, "", "", 0, {}});
    CheckRow({"different",
              {"skin", "diff", one, other},
              "-  m  e  a  1\n-  m  e  b  2\n+  m  e  b  x\n+  n  e  d  4\n",
              "",
              1,
              {}});
    CheckRow({"missing", {"skin", "diff", one, "missing.xml"}, "", "missing.xml", 2, {}});
}

}  // namespace
}  // namespace brindle::testing
