// System creation with this host's types: the example template to the byte, its way through a behaviour list into a
// run, and what the action types made for it keep.
#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/behaviour_list.h>
#include <brindle/behaviour/traveral_funct.h>
#include <brindle/syscreate/sys_create.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>

#include "host/configured_item.h"
#include "host/mask_lines.h"
#include "host/played_site_test.h"
#include "host/register_types.h"
#include "host/site_check.h"
#include "testing/golden.h"

namespace brindle::host {
namespace {

CStringArray Texts(std::initializer_list<const char*> texts) {
    RegisterHostTypes();
    CStringArray array;
    for (const char* text : texts) array.Add(text);
    return array;
}

std::string ExampleTemplate() {
    std::ifstream file(BRINDLE_TEST_FOLDER "/../examples/system-creation/transmitter.xml", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

CStringA ExpandExample(SysCreate& create) {
    const CStringArray fields = Texts({"F1", "F2"});
    const CStringArray values = Texts({"V1", "V2"});
    return create.ExpandXML(CStringA(ExampleTemplate()), &fields, &values);
}

TEST(SystemCreation, TheExample) {
    SysCreate create;
    testing::ExpectGolden("transmitter_list.xml", ExpandExample(create).str());
    testing::ExpectGolden("transmitter_results.xml", create.ResultInfo().str());
    SysCreate again;
    EXPECT_EQ(ExpandExample(again), ExpandExample(create)) << "the same every time";
    EXPECT_EQ(again.ResultInfo(), create.ResultInfo());
}

class Walk final : public TraveralFunct {
  public:
    void operator()(CCommandTreeItem* item) const override {
        if (auto* action = dynamic_cast<CCommandAction*>(item))
            found += action->GetText(1).str() + (action->IsTemplate() ? " template|" : "|");
    }
    mutable std::string found;
};

TEST(SystemCreation, TheExpansionLoadsAsABehaviourList) {
    SysCreate create;
    const CStringA expanded = ExpandExample(create);
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(reader.LoadFromString(expanded, unused));
    CCommandBehaviourList list(eHostMapObject);
    list.Load(reader);
    const Walk walk;
    list.Traverse(walk);
    EXPECT_EQ(walk.found, "Get SNMP template|Get SNMP|Get SNMP|Mask Unit|");
    // What is expanded a second time: the copies have nothing to fill in, the template is filled in anew.
    const CStringArray fields = Texts({"F3"});
    SysCreate later;
    EXPECT_NE(later.ExpandXML(expanded, &fields, &fields), expanded);
    EXPECT_NE(later.ResultInfo().str().find("Objval=\"F3\""), std::string::npos);
}

TEST(SystemCreation, ASiteRunsTheExpansion) {
    SysCreate create;
    const std::string expanded = ExpandExample(create).str();
    WrittenSite site;
    site.WriteObjects({"tx"});
    site.Write("behaviours/tx.xml", expanded);
    const Played played = RunEvents(site, R"({"kind":"poll"})");
    const Lines& lines = played.lines;
    EXPECT_EQ(lines.All("snmp", "oid"), "F1|F2") << "both copies, not the template: " << lines.Dump();
    EXPECT_EQ(lines.All("log", "text"), "masks Tx1, Tx2");
    EXPECT_TRUE(lines.warnings.empty());
    const CheckReport report = CheckPaths({site.Folder()});
    for (const Problem& problem : report.problems) ADD_FAILURE() << problem.Place() << ": " << problem.text;
}

TEST(SystemCreation, TheExampleTemplateIsChecked) {
    RegisterHostTypes();
    const CheckReport report =
        CheckPaths({BRINDLE_TEST_FOLDER "/../examples/system-creation/transmitter.xml"});
    EXPECT_TRUE(report.unopened.empty());
    for (const Problem& problem : report.problems) ADD_FAILURE() << problem.Place() << ": " << problem.text;
}

std::unique_ptr<CCommandAction> LoadAction(XMLReader& reader, const std::string& element) {
    RegisterHostTypes();
    CStringA unused;
    EXPECT_TRUE(reader.LoadFromString(("<ActionList>" + element + "</ActionList>").c_str(), unused));
    EXPECT_TRUE(reader.EnterSection("ActionList", true));
    const CStringA name = reader.GetChildSections().at(0);
    std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject(name, 0));
    EXPECT_TRUE(reader.EnterSection(name, false));
    if (action) action->Load(reader);
    return action;
}

std::string Saved(const CCommandAction& action) {
    XMLWriter writer;
    CStringA xml;
    writer.Initialize();
    action.Save(writer);
    writer.SaveToString(xml);
    return xml.str().substr(std::string("<?xml version=\"1.0\"?>").size());
}

TEST(SystemCreationActions, KeepTheirData) {
    const struct {
        const char* label;
        const char* element;
        const char* saved;  // null: as it was
        const char* reflect;
    } rows[] = {
        {"all of get SNMP",
         "<GetSNMPAction Name=\"N\" Agent=\"10.0.0.1\" Community=\"c\" Object=\"1.3\" Label=\"L\" "
         "Variable=\"V\" "
         "Scope=\"SITE\" Timeout=\"250\" Retries=\"0\" Repeat=\"TRUE\" Period=\"5000\" Template=\"TRUE\" "
         "SysCreated=\"TRUE\" ResultUnit=\"U\" ResultHeader=\"H\"><Enabled value=\"FALSE\"/></GetSNMPAction>",
         nullptr, "N"},
        {"get SNMP, as it begins", "<GetSNMPAction/>",
         "<GetSNMPAction Object=\"\"><Enabled value=\"TRUE\"/></GetSNMPAction>", ""},
        {"units", "<MaskUnitAction>Tx1\n Tx2 \n\n<Enabled value=\"FALSE\"/></MaskUnitAction>", nullptr,
         "Tx1,  Tx2 "},
        {"no units", "<MaskUnitAction/>", "<MaskUnitAction><Enabled value=\"TRUE\"/></MaskUnitAction>", ""},
        {"headers",
         "<MaskHeaderAction Name=\"\"><HeaderList>Power\nFan</HeaderList><Enabled value=\"FALSE\"/>"
         "<UnitList>A &amp; B</UnitList></MaskHeaderAction>",
         "<MaskHeaderAction><UnitList>A &amp; B</UnitList><HeaderList>Power\nFan</HeaderList>"
         "<Enabled value=\"FALSE\"/></MaskHeaderAction>",
         "A & B: Power, Fan"},
        {"no lists", "<MaskHeaderAction/>",
         "<MaskHeaderAction><UnitList/><HeaderList/><Enabled value=\"TRUE\"/></MaskHeaderAction>", ": "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        XMLReader reader;
        const auto action = LoadAction(reader, row.element);
        ASSERT_TRUE(action);
        EXPECT_EQ(Saved(*action), row.saved ? row.saved : row.element);
        EXPECT_EQ(action->GetReflect(), row.reflect);
        const std::unique_ptr<CCommandAction> copy(action->Replicate());
        EXPECT_EQ(Saved(*copy), Saved(*action));
    }
}

TEST(SystemCreationActions, TheirTypesAreKnownByTheirTexts) {
    const struct {
        const char* element;
        const char* text;
    } rows[] = {{"<GetSNMPAction/>", "Get SNMP"},
                {"<MaskUnitAction/>", "Mask Unit"},
                {"<MaskHeaderAction/>", "Mask Header"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        XMLReader reader;
        const auto action = LoadAction(reader, row.element);
        ASSERT_TRUE(action);
        EXPECT_EQ(action->GetText(1), row.text);
        EXPECT_FALSE(action->IsTemplate());
        action->SetTemplate(true);
        EXPECT_TRUE(action->IsTemplate());
        EXPECT_NE(Saved(*action).find("Template=\"TRUE\""), std::string::npos);
    }
}

TEST(SystemCreationActions, ACopyChangesNothingButThePlaceholders) {
    const struct {
        const char* label;
        const char* element;
        const char* copy;
        const char* unit;
        const char* header;
    } rows[] = {
        {"namespaces, comments, texts, unknown things",
         "<GetSNMPAction xmlns:v=\"urn:v\" Object=\"1.%OBJFLD%\" v:note=\"%OBJVAL%\" More=\"%\">"
         "text %OBJVAL%<!-- %OBJFLD% & more --><v:x>%OBJFLD%%OBJVAL%</v:x></GetSNMPAction>",
         "<GetSNMPAction xmlns:v=\"urn:v\" Object=\"1.F&quot;1\" v:note=\"&lt;V&gt;\" More=\"%\">"
         "text &lt;V&gt;<!-- F\"1 & more --><v:x>F\"1&lt;V&gt;</v:x></GetSNMPAction>",
         "", ""},
        {"the flag of the template goes", "<GetSNMPAction Object=\"%OBJFLD%\" Template=\"TRUE\"/>",
         "<GetSNMPAction Object=\"F&quot;1\" Template=\"FALSE\"/>", "", ""},
        {"result info from name and label", "<GetSNMPAction Name=\"N %OBJFLD%\" Label=\"L %OBJVAL%\"/>",
         "<GetSNMPAction Name=\"N F&quot;1\" Label=\"L &lt;V&gt;\"/>", "N F\"1", "L <V>"},
        {"result info of its own",
         "<GetSNMPAction Name=\"N\" Label=\"L\" ResultUnit=\"U%OBJVAL%\" ResultHeader=\"H%OBJFLD%\"/>",
         "<GetSNMPAction Name=\"N\" Label=\"L\" ResultUnit=\"U&lt;V&gt;\" ResultHeader=\"HF&quot;1\"/>",
         "U<V>", "HF\"1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        XMLReader reader;
        const auto action = LoadAction(reader, row.element);
        ASSERT_TRUE(action);
        XMLWriter writer;
        CStringA xml, unit, header;
        ASSERT_TRUE(writer.Initialize());
        action->ReplaceData(reader, writer, "%OBJFLD%", "F\"1", "%OBJVAL%", "<V>");
        ASSERT_TRUE(writer.SaveToString(xml));
        EXPECT_EQ(xml.str().substr(21), row.copy);
        action->GetResultInfo(unit, header);
        EXPECT_EQ(unit, row.unit);
        EXPECT_EQ(header, row.header);
    }
}

TEST(SystemCreationActions, PlaceholdersAreFilledInOnce) {
    const std::vector<XMLWriter::Replacement> both = {{"%F%", "%V%"}, {"%V%", "2"}, {"", "x"}};
    const std::pair<const char*, const char*> rows[] = {
        {"", ""}, {"plain", "plain"}, {"%F%%V%", "%V%2"}, {"%F", "%F"}, {"a%V%b%V%", "a2b2"}};
    for (const auto& [text, expected] : rows) EXPECT_EQ(FilledIn(text, both), expected) << text;
}

TEST(SystemCreationActions, ChecksSayWhatTheirListsLack) {
    WrittenSite site;
    site.WriteObjects({"tx"});
    site.WriteBehaviour(
        "tx", "<PollTrigger/>",
        "<MaskUnitAction>\n</MaskUnitAction><MaskHeaderAction><UnitList>A</UnitList><HeaderList/>"
        "<Other/></MaskHeaderAction><GetSNMPAction Timeout='0'/>");
    RegisterHostTypes();
    std::string problems;
    for (const Problem& problem : CheckPaths({site.Folder()}).problems) problems += problem.text + "\n";
    EXPECT_EQ(problems,
              "names no unit: nothing is masked\n"
              "element \"Other\" is unknown here and has no effect\n"
              "\"HeaderList\" names no header: nothing is masked\n"
              "attribute \"Object\" is missing: a text with fields\n"
              "attribute \"Timeout\": \"0\" is not a whole number from 1 to 600000\n");
}

}  // namespace
}  // namespace brindle::host
