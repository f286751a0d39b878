#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

const std::string kDeclaration = "<?xml version=\"1.0\"?>";
const std::string kExample = BRINDLE_SOURCE_FOLDER "/examples/system-creation/transmitter.xml";

class ToolCreate : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brindle_create_XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    std::string File(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_folder / name).parent_path());
        std::ofstream(m_folder / name, std::ios::binary) << text;
        return Path(name);
    }
    std::string Read(const std::string& name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(none)";
    }
    // A template of one behaviour.
    std::string Template(const std::string& actions, const std::string& triggers = "<PollTrigger/>") const {
        return File("template.xml", "<BehaviourList><Behaviour>\n<TriggerList>" + triggers +
                                        "</TriggerList>\n<ActionList>" + actions +
                                        "</ActionList></Behaviour></BehaviourList>");
    }
    static ToolResult Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "create");
        return RunTool({std::move(arguments), {}, {}, OutputTo::kPipe});
    }

    std::filesystem::path m_folder;
};

std::string Golden(const std::string& name) {
    std::ifstream file(BRINDLE_SOURCE_FOLDER "/host/golden/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(ToolCreate, ExpandsTheExample) {
    const ToolResult printed = Run({"expand", kExample, "--pair", "F1=V1", "--pair", "F2=V2"});
    EXPECT_EQ(printed.code, 0);
    EXPECT_EQ(printed.out, Golden("transmitter_list.xml") + "\n");
    EXPECT_EQ(printed.err, "");
    const std::string pairs = File("pairs.csv", "F1,V1\r\n");
    const ToolResult written = Run({"expand", kExample, "--pairs", pairs, "--pair", "F2=V2", "--out",
                                    Path("tx.xml"), "--results", Path("results.xml"), "--strict"});
    EXPECT_EQ(written.code, 0);
    EXPECT_EQ(written.out + written.err, "");
    EXPECT_EQ(Read("tx.xml"), Golden("transmitter_list.xml"));
    EXPECT_EQ(Read("results.xml"), Golden("transmitter_results.xml"));
}

// A site whose list is the expansion, checked and run.
TEST_F(ToolCreate, ASiteThatUsesTheExpansionRuns) {
    File("site/site.ini", "[Site]\nName=Tx\nRecording=events.jsonl\n[Object tx]\n");
    File("site/events.jsonl", "{\"kind\":\"poll\"}\n");
    std::filesystem::create_directories(m_folder / "site/behaviours");
    ASSERT_EQ(Run({"expand", kExample, "--pair", "1.3.1=Power", "--pair", "1.3.2=Fan", "--out",
                   Path("site/behaviours/tx.xml")})
                  .code,
              0);
    CheckRow({"checks", {"check", Path("site")}, "", "", 0});
    const ToolResult run = RunTool({{"run", Path("site"), "--fast", "--json"}, {}, {}, OutputTo::kPipe});
    EXPECT_EQ(run.code, 0) << run.err;
    for (const char* oid : {"1.3.1", "1.3.2"})
        EXPECT_THAT(run.out, HasSubstr("\"what\":\"get\",\"agent\":\"10.0.0.11\",\"oid\":\"" +
                                       std::string(oid) + "\""));
    EXPECT_THAT(run.out, HasSubstr("\"text\":\"masks Tx1, Tx2\""));
}

TEST_F(ToolCreate, FilesAreUtf8) {
    const std::string file = Template(
        "<MaskUnitAction>\xC3\xBC \xE2\x82\xAC</MaskUnitAction>"
        "<GetSNMPAction Object='%OBJFLD%' Label='%OBJVAL%'/>");
    const std::string pairs = File("pairs.csv", "\xEF\xBB\xBF\"\xC3\xA4,b\",\xE2\x82\xAC\n");
    const ToolResult result =
        Run({"expand", file, "--pairs", pairs, "--out", Path("out.xml"), "--results", Path("results.xml")});
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(Read("out.xml"), HasSubstr("<MaskUnitAction>\xC3\xBC \xE2\x82\xAC<"));
    EXPECT_THAT(Read("out.xml"), HasSubstr("Object=\"\xC3\xA4,b\" Label=\"\xE2\x82\xAC\""));
    EXPECT_THAT(Read("results.xml"), HasSubstr("Unit=\"\xC3\xBC \xE2\x82\xAC\" Header=\"*\""));
    // Read back, they are the same.
    CheckRow({"alarms",
              {"create", "triggers", Path("results.xml")},
              "3  \xC3\xBC \xE2\x82\xAC  *  mask 4 2 -999 Mask\n-       \xE2\x82\xAC\n",
              "",
              0});
    CheckRow({"no difference",
              {"create", "expand", file, "--pairs", pairs, "--diff", Path("out.xml")},
              "",
              "",
              0});
    // A document may declare what it is in.
    const std::string declared = File("declared.xml",
                                      "<?xml version='1.0' encoding='windows-1252'?><BehaviourList>"
                                      "<Behaviour><ActionList><MaskUnitAction>\xFC</MaskUnitAction>"
                                      "</ActionList></Behaviour></BehaviourList>");
    EXPECT_THAT(Run({"expand", declared}).out, HasSubstr(">\xC3\xBC<"));
}

TEST_F(ToolCreate, WarnsAndIsStrict) {
    const std::string file =
        Template("<Unknown/>\n<WriteLogAction Text='%OBJVAL%'/><GetSNMPAction Object='%OBJFLD%'/>",
                 "<PollTrigger/><NoTrigger/>");
    const std::string warnings =
        "brindle: " + file + ":2:28: trigger type \"NoTrigger\" is unknown: it is left out\n" +
        "brindle: " + file + ":3:13: action type \"Unknown\" is unknown: it is left out\n" +
        "brindle: " + file + ": behaviour 1: \"WriteLogAction\" still holds \"%OBJVAL%\"\n";
    const ToolResult loose = Run({"expand", file, "--pair", "F=V"});
    EXPECT_EQ(loose.code, 0);
    EXPECT_EQ(loose.err, warnings);
    EXPECT_THAT(loose.out, HasSubstr("Object=\"F\""));
    const ToolResult strict = Run(
        {"expand", file, "--pair", "F=V", "--strict", "--out", Path("out.xml"), "--log", Path("log.txt")});
    EXPECT_EQ(strict.code, 1);
    EXPECT_EQ(strict.err, warnings);
    EXPECT_EQ(strict.out, "");
    EXPECT_EQ(Read("out.xml"), "(none)");
    const std::string log = Read("log.txt");
    EXPECT_THAT(log, MatchesRegex("(.*\r\n){4}"));
    EXPECT_THAT(log,
                HasSubstr("   " + file + ":3:13: action type \"Unknown\" is unknown: it is left out\r\n"));
    EXPECT_THAT(log, HasSubstr("   " + file + ": 1 pairs, 1 results\r\n"));
    const std::string only = Template("<PollTrigger/>");
    EXPECT_EQ(Run({"expand", only, "--strict"}).code, 1) << "a trigger is no action";
    const std::string triggers = Template("", "<NoTrigger/>");
    EXPECT_EQ(Run({"expand", triggers, "--strict"}).code, 0) << "only actions count";
    EXPECT_EQ(Run({"expand", Template("<MaskUnitAction>%OBJFLD%</MaskUnitAction>"), "--strict"}).code, 1);
    EXPECT_EQ(Run({"expand", Template("", "<StateTrigger Text='%OBJFLD%'/>"), "--strict"}).code, 1);
    EXPECT_EQ(Run({"expand", Template("<GetSNMPAction Object='%OBJFLD%'/>"), "--strict"}).code, 0);
}

TEST_F(ToolCreate, ShowsWhatWouldChange) {
    const std::string old = Path("old.xml");
    ASSERT_EQ(Run({"expand", kExample, "--pair", "F1=V1", "--pair", "F2=V2", "--out", old}).code, 0);
    const std::string before = Read("old.xml");
    CheckRow({"nothing",
              {"create", "expand", kExample, "--pair", "F1=V1", "--pair", "F2=V2", "--diff", old},
              "",
              "",
              0});
    const ToolResult changed = Run({"expand", kExample, "--pair", "F1=V1", "--pair", "F3=V3", "--diff", old});
    EXPECT_EQ(changed.code, 1);
    EXPECT_THAT(changed.out, MatchesRegex("- behaviour 1: action <GetSNMPAction .*\"F2\".*>\n"
                                          "\\+ behaviour 1: action <GetSNMPAction .*\"F3\".*>\n"));
    EXPECT_EQ(changed.err, "brindle: " + old + ": 1 items would go, 1 would come\n");
    EXPECT_EQ(Read("old.xml"), before) << "nothing is written";
    const ToolResult written = Run({"expand", kExample, "--pair", "F1=V1", "--diff", old, "--out", old});
    EXPECT_EQ(written.code, 1);
    EXPECT_THAT(written.out, StartsWith("- behaviour 1: action <GetSNMPAction "));
    EXPECT_EQ(Run({"expand", kExample, "--pair", "F1=V1", "--diff", old}).code, 0)
        << "the new one was written";
    const std::string two =
        File("two.xml",
             "<BehaviourList><Behaviour><TriggerList><PollTrigger/></TriggerList></Behaviour><Behaviour/>"
             "</BehaviourList>");
    const std::string one =
        File("one.xml",
             "<BehaviourList><Behaviour><TriggerList><PollTrigger><Enabled value='TRUE'/></PollTrigger>"
             "</TriggerList></Behaviour></BehaviourList>");
    CheckRow({"a behaviour more",
              {"create", "expand", two, "--diff", one},
              "+ behaviour 2\n",
              "0 items would go",
              1});
}

TEST_F(ToolCreate, RefusesWhatCannotBeExpanded) {
    const std::string broken = File("broken.xml", "<BehaviourList>\n  <Behaviour></BehaviourList>");
    const std::string other = File("other.xml", "<Variables/>");
    std::string lines;
    for (int i = 0; i < 1001; ++i) lines += std::to_string(i) + "\n";
    const std::string many = Template("\n  <MaskHeaderAction><UnitList>" + lines + "</UnitList><HeaderList>" +
                                      lines + "</HeaderList></MaskHeaderAction>");
    const std::string columns = File("columns.csv", "a,b\na,b,c\n");
    const std::string quote = File("quote.csv", "a,b\n\"a,b\n");
    const std::string foreign = File("foreign.csv", "a,b\n\na,\xE2\x86\x92\n");
    const std::vector<ToolRow> rows = {
        {"no template", {"create", "expand"}, "", "TEMPLATE", 2},
        {"a missing one", {"create", "expand", Path("none.xml")}, "", "none.xml: no such file", 2},
        {"not well-formed", {"create", "expand", broken}, "", "broken.xml:2:", 2},
        {"another document",
         {"create", "expand", other},
         "",
         "other.xml:1:1: the root element is not \"Beh",
         2},
        {"too many results",
         {"create", "expand", many},
         "",
         "template.xml:4:3: the template makes more than 1000000",
         2},
        {"a pair without =",
         {"create", "expand", kExample, "--pair", "F"},
         "",
         "--pair: \"F\" has no \"=\"",
         2},
        {"missing pairs", {"create", "expand", kExample, "--pairs", Path("none.csv")}, "", "none.csv", 2},
        {"three columns",
         {"create", "expand", kExample, "--pairs", columns},
         "",
         "columns.csv:2: 3 columns instead of FIELD,VALUE",
         2},
        {"an open quote",
         {"create", "expand", kExample, "--pairs", quote},
         "",
         "quote.csv:2: a quote is never closed",
         2},
        {"a character without a byte",
         {"create", "expand", kExample, "--pairs", foreign},
         "",
         "foreign.csv:3: a character without a byte in code page 1252",
         2},
        {"a value XML cannot hold",
         {"create", "expand", kExample, "--pair", "F=\x01"},
         "",
         "XML cannot hold",
         2},
        {"a folder to write",
         {"create", "expand", kExample, "--out", m_folder.string()},
         "",
         "is a folder",
         2},
        {"an old list that is none", {"create", "expand", kExample, "--diff", other}, "", "other.xml:1:1", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
    const std::string arrow = Template("<WriteLogAction Text='\xE2\x86\x92'/>");
    const ToolResult lost = Run({"expand", arrow});
    EXPECT_EQ(lost.code, 0);
    EXPECT_EQ(lost.err,
              "brindle: " + arrow + ":3: a character without a byte in code page 1252 becomes \"?\"\n");
}

TEST_F(ToolCreate, ListsAlarmRecords) {
    const std::string results =
        File("results.xml",
             "<ResultsList><Result Type='1' Unit='U1' Header='H'/><Result Type='2' Unit='Unit 2' "
             "Header='Caption'/><Result Type='3' Unit='U' Header='*'/><Result Unit='U' Header='V'/>"
             "<Result Type='7' Unit='U' Header='V'/></ResultsList>");
    const std::string empty = File("empty.xml", "<ResultsList/>");
    const std::vector<ToolRow> rows = {
        {"lines",
         {"create", "triggers", results},
         "1  U1      H        state 4 2 6 State\n"
         "2  Unit 2  Caption  caption 4 8 -518 Caption\n"
         "3  U       *        mask 4 2 -999 Mask\n"
         "-  U       V\n"
         "7  U       V\n",
         "",
         0},
        {"json",
         {"create", "triggers", results, "--json"},
         R"({"type":1,"unit":"U1","header":"H","state":{"code":4,"mode":2,"value":6,"field":"State"}})"
         "\n"
         R"({"type":2,"unit":"Unit 2","header":"Caption","caption":{"code":4,"mode":8,"value":-518,"field":"Caption"}})"
         "\n"
         R"({"type":3,"unit":"U","header":"*","mask":{"code":4,"mode":2,"value":-999,"field":"Mask"}})"
         "\n"
         R"({"unit":"U","header":"V"})"
         "\n"
         R"({"type":7,"unit":"U","header":"V"})"
         "\n",
         "",
         0},
        {"none", {"create", "triggers", empty}, "", "", 0},
        {"no results list",
         {"create", "triggers", kExample},
         "",
         "the root element is not \"ResultsList\"",
         2},
        {"missing", {"create", "triggers", Path("none.xml")}, "", "none.xml", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST_F(ToolCreate, ComparesFoundMasks) {
    const std::string file = Template(
        "<MaskUnitAction>Tx1\nTx2</MaskUnitAction><MaskHeaderAction><UnitList>A</UnitList>"
        "<HeaderList>x, y</HeaderList></MaskHeaderAction>");
    const std::vector<ToolRow> rows = {
        {"all known", {"create", "mask", file, File("a.csv", "Tx2,*\nA,\"x, y\"\n")}, "", "", 0},
        {"nothing found", {"create", "mask", file, File("b.csv", "")}, "", "", 0},
        {"unknown ones, once each",
         {"create", "mask", file, File("c.csv", "Tx3,*\nTx1,*\n\"A\",\"x, \"\"z\"\"\"\nTx3,*\n")},
         "Tx3,*\nA,\"x, \"\"z\"\"\"\n",
         "c.csv: holds combinations that the template does not produce",
         1},
        {"one column",
         {"create", "mask", file, File("d.csv", "Tx1\n")},
         "",
         "d.csv:1: 1 columns instead of UNIT,HEADER",
         2},
        {"no template", {"create", "mask", Path("none.xml"), Path("a.csv")}, "", "none.xml", 2},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST_F(ToolCreate, FieldsAndDynamicTexts) {
    const std::vector<ToolRow> rows = {
        {"two fields",
         {"create", "fields", "U \xC3\xBC", "a #x# #\xE2\x82\xAC# #"},
         kDeclaration +
             "<ResultsList><Result Type=\"2\" ID=\"0\" Unit=\"U \xC3\xBC\" Header=\"x\"/>"
             "<Result Type=\"2\" ID=\"0\" Unit=\"U \xC3\xBC\" Header=\"\xE2\x82\xAC\"/></ResultsList>\n",
         "",
         0},
        {"no field", {"create", "fields", "U", "plain"}, kDeclaration + "<ResultsList/>\n", "", 0},
        {"XML cannot hold it", {"create", "fields", "U", "#\x02#"}, "", "TEXT", 2},
        {"no text", {"create", "fields", "U"}, "", "TEXT", 2},
        {"dynamic", {"create", "dynamic", "{x}"}, "yes\n", "", 0},
        {"not dynamic", {"create", "dynamic", "%h only"}, "no\n", "", 1},
        {"begins with a minus", {"create", "dynamic", "-%a"}, "yes\n", "", 0},
        {"empty", {"create", "dynamic", ""}, "no\n", "", 1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

}  // namespace
}  // namespace brindle::testing
