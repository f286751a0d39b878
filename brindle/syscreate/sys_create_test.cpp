// Expansions: what comes out of which template, with types of the test's own.
#include "brindle/syscreate/sys_create.h"

#include <memory>

#include "brindle/platform/fake/xml_dom_fake.h"
#include "brindle/platform/service.h"
#include "brindle/syscreate/template_expansion.h"
#include "testing/golden.h"
#include "testing/syscreate_kit.h"

namespace {

using namespace brindle::testing;

bool Has(const SysCreate& create, std::initializer_list<const char*> keys) {
    CMapStringToInt found;
    for (const char* key : keys) found[key] = 1;
    return !create.CheckMaskResults(found);
}

std::string Mask(const std::string& unit, const std::string& header) {
    return "<Result Type=\"3\" ID=\"0\" Unit=\"" + unit + "\" Header=\"" + header + "\" Mask=\"1\"/>";
}

std::string Value(int id, const std::string& value, const std::string& field) {
    return "<Result ID=\"" + std::to_string(id) + "\" Objval=\"" + value + "\" Unit=\"unit of " + field +
           "\" Header=\"header of " + value + "\"/>";
}

TEST(SysCreateExpand, TheExample) {
    SysCreate create;
    EXPECT_EQ(create.ResultInfo(), "");
    const CStringArray fields = Texts({"F1", "F2"});
    const CStringArray values = Texts({"V1", "V2"});
    const CStringA list = create.ExpandXML(
        Template("<GetSNMPAction "
                 "data='%OBJFLD%'>%OBJVAL%</GetSNMPAction><MaskUnitAction>Tx1\nTx2</MaskUnitAction>"),
        &fields, &values);
    ExpectGolden("example_list.xml", list.str());
    ExpectGolden("example_results.xml", create.ResultInfo().str());
    EXPECT_TRUE(Has(create, {"Tx1*", "Tx2*"}));
    EXPECT_FALSE(Has(create, {"Tx3*"}));
}

struct ExpandRow {
    const char* label;
    std::string actions;
    std::string list;
    std::string results;
};

void CheckExpansions(const std::vector<ExpandRow>& rows, const CStringArray& fields,
                     const CStringArray& values) {
    for (const ExpandRow& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        EXPECT_EQ(create.ExpandXML(Template(row.actions), &fields, &values), ExpandedTemplate(row.list));
        EXPECT_EQ(create.ResultInfo(), ResultsList(row.results));
    }
}

TEST(SysCreateExpand, ReplicatesGetSnmpActions) {
    const std::vector<ExpandRow> rows = {
        {"one placeholder is enough", "<GetSNMPAction data='%OBJFLD%'/>",
         "<GetSNMPAction data=\"%OBJFLD%\" Template=\"TRUE\"/><GetSNMPAction data=\"F1\"/><GetSNMPAction "
         "data=\"F2\"/>",
         Value(0, "V1", "F1") + Value(1, "V2", "F2")},
        {"the other one, in an element inside", "<GetSNMPAction><x>%OBJVAL%</x></GetSNMPAction>",
         "<GetSNMPAction Template=\"TRUE\">%OBJVAL%</GetSNMPAction><GetSNMPAction><x>V1</x></GetSNMPAction>"
         "<GetSNMPAction><x>V2</x></GetSNMPAction>",
         Value(0, "V1", "F1") + Value(1, "V2", "F2")},
        {"in a comment", "<GetSNMPAction><!--%OBJVAL%--></GetSNMPAction>",
         "<GetSNMPAction Template=\"TRUE\"/><GetSNMPAction><!--V1--></GetSNMPAction>"
         "<GetSNMPAction><!--V2--></GetSNMPAction>",
         Value(0, "V1", "F1") + Value(1, "V2", "F2")},
        {"namespaces, comments and texts survive",
         "<GetSNMPAction xmlns:p='u' p:k='%OBJFLD%'> a<!-- c --><p:b/>%OBJVAL%\n</GetSNMPAction>",
         "<GetSNMPAction Template=\"TRUE\"> a%OBJVAL%\n</GetSNMPAction>"
         "<GetSNMPAction xmlns:p=\"u\" p:k=\"F1\"> a<!-- c --><p:b/>V1\n</GetSNMPAction>"
         "<GetSNMPAction xmlns:p=\"u\" p:k=\"F2\"> a<!-- c --><p:b/>V2\n</GetSNMPAction>",
         Value(0, "V1", "F1") + Value(1, "V2", "F2")},
        {"no placeholder: no template", "<GetSNMPAction data='x' Template='TRUE'/>",
         "<GetSNMPAction data=\"x\"/>", ""},
        {"a placeholder in lower case is none", "<GetSNMPAction data='%objfld%'/>",
         "<GetSNMPAction data=\"%objfld%\"/>", ""},
        {"the type's name in another case", "<getsnmpaction data='%OBJFLD%'/>",
         "<GetSNMPAction data=\"%OBJFLD%\" Template=\"TRUE\"/><getsnmpaction data=\"F1\"/><getsnmpaction "
         "data=\"F2\"/>",
         Value(0, "V1", "F1") + Value(1, "V2", "F2")},
    };
    CheckExpansions(rows, Texts({"F1", "F2"}), Texts({"V1", "V2", "ignored"}));
}

TEST(SysCreateExpand, EmptyFieldsWriteTheTemplateOnce) {
    const std::vector<ExpandRow> rows = {{"no fields", "<GetSNMPAction data='%OBJFLD%'/>",
                                          "<GetSNMPAction data=\"%OBJFLD%\" Template=\"TRUE\"/>", ""}};
    CheckExpansions(rows, Texts({}), Texts({}));
    CheckExpansions(rows, Texts({}), Texts({"V1"}));
    SysCreate create;
    EXPECT_EQ(create.ExpandXML(Template(rows[0].actions), nullptr, nullptr), ExpandedTemplate(rows[0].list));
}

TEST(SysCreateExpand, MasksAndOtherActions) {
    const std::vector<ExpandRow> rows = {
        {"two units", "<MaskUnitAction>A\nB</MaskUnitAction>", "<MaskUnitAction>A\nB</MaskUnitAction>",
         Mask("A", "*") + Mask("B", "*")},
        {"separators in a row count once", "<MaskUnitAction>\n\nA\n\n\nB\n</MaskUnitAction>",
         "<MaskUnitAction>\n\nA\n\n\nB\n</MaskUnitAction>", Mask("A", "*") + Mask("B", "*")},
        {"other line ends and blanks", "<MaskUnitAction>A\r\n B </MaskUnitAction>",
         "<MaskUnitAction>A\n B </MaskUnitAction>", Mask("A", "*") + Mask(" B ", "*")},
        {"no units", "<MaskUnitAction/>", "<MaskUnitAction/>", ""},
        {"a mask is no template whatever it says",
         "<MaskUnitAction Template='TRUE'>%OBJFLD%</MaskUnitAction>",
         "<MaskUnitAction Template=\"TRUE\">%OBJFLD%</MaskUnitAction>", Mask("%OBJFLD%", "*")},
        {"every unit with every header",
         "<MaskHeaderAction><UnitList>A\nB</UnitList><HeaderList>\nx\ny</HeaderList></MaskHeaderAction>",
         "<MaskHeaderAction><UnitList>A\nB</UnitList><HeaderList>\nx\ny</HeaderList></MaskHeaderAction>",
         Mask("A", "x") + Mask("A", "y") + Mask("B", "x") + Mask("B", "y")},
        {"the lists in the other order",
         "<MaskHeaderAction><HeaderList>x</HeaderList><UnitList>A</UnitList></MaskHeaderAction>",
         "<MaskHeaderAction><HeaderList>x</HeaderList><UnitList>A</UnitList></MaskHeaderAction>",
         Mask("A", "x")},
        {"no headers", "<MaskHeaderAction><UnitList>A</UnitList></MaskHeaderAction>",
         "<MaskHeaderAction><UnitList>A</UnitList></MaskHeaderAction>", ""},
        {"only the element of that very name is read",
         "<maskheaderaction><UnitList>A</UnitList><HeaderList>x</HeaderList></maskheaderaction>",
         "<MaskHeaderAction><UnitList>A</UnitList><HeaderList>x</HeaderList></MaskHeaderAction>", ""},
        {"other actions", "<OtherAction data='%OBJFLD%' Template='TRUE'/>",
         "<OtherAction data=\"%OBJFLD%\"/>", ""},
        {"unknown types and types that make nothing are dropped",
         "<Unknown/><OtherAction/><NothingAction/><OtherAction data='2'/>",
         "<OtherAction/><OtherAction data=\"2\"/>", ""},
        {"texts are escaped", "<MaskUnitAction>A &amp; &lt;B&gt; \"C\"</MaskUnitAction>",
         "<MaskUnitAction>A &amp; &lt;B&gt; \"C\"</MaskUnitAction>",
         Mask("A &amp; &lt;B&gt; &quot;C&quot;", "*")},
        {"bytes of the code page", "<MaskUnitAction>\xFC\x80</MaskUnitAction>",
         "<MaskUnitAction>\xFC\x80</MaskUnitAction>", Mask("\xFC\x80", "*")},
        {"nothing", "", "", ""},
    };
    CheckExpansions(rows, Texts({"F1"}), Texts({"V1"}));
}

TEST(SysCreateExpand, WholeDocuments) {
    const struct {
        const char* label;
        const char* source;
        std::string expected;
    } rows[] = {
        {"unparsable", "<BehaviourList>", kDeclaration},
        {"nothing at all", "", kDeclaration},
        {"another root", "<Other><BehaviourList/></Other>", kDeclaration},
        {"no behaviours", "<BehaviourList/>", std::string(kDeclaration) + "<BehaviourList/>"},
        {"declared encodings do not count for texts",
         "<?xml version='1.0' encoding='UTF-8'?><BehaviourList/>",
         std::string(kDeclaration) + "<BehaviourList/>"},
        {"only behaviours count", "<BehaviourList><!-- c --><x/>t<Behaviour/></BehaviourList>",
         std::string(kDeclaration) + "<BehaviourList><Behaviour><TriggerList/></Behaviour></BehaviourList>"},
        {"triggers are saved again, unknown ones dropped",
         "<BehaviourList><Behaviour><TriggerList><Unknown/><ProbeTrigger "
         "note='%OBJFLD%'/></TriggerList></Behaviour>"
         "<Behaviour><TriggerList/></Behaviour></BehaviourList>",
         std::string(kDeclaration) + "<BehaviourList><Behaviour><TriggerList><ProbeTrigger "
                                     "note=\"%OBJFLD%\"><Enabled value=\"TRUE\"/>"
                                     "</ProbeTrigger></TriggerList></Behaviour><Behaviour><TriggerList/></"
                                     "Behaviour></BehaviourList>"},
        {"actions without triggers",
         "<BehaviourList><Behaviour><ActionList><OtherAction/></ActionList></Behaviour></BehaviourList>",
         ExpandedTemplate("<OtherAction/>")},
        {"actions before triggers",
         "<BehaviourList><Behaviour><ActionList><OtherAction/></ActionList><TriggerList/></Behaviour></"
         "BehaviourList>",
         ExpandedTemplate("<OtherAction/>")},
        {"an empty list of actions",
         "<BehaviourList><Behaviour><TriggerList/><ActionList/></Behaviour></BehaviourList>",
         ExpandedTemplate("")},
    };
    const CStringArray fields = Texts({"F1"});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        create.CreateResultsForStringsOfFields("before", "#x#");
        EXPECT_EQ(create.ExpandXML(row.source, &fields, &fields), row.expected);
        EXPECT_EQ(create.ResultInfo(), ResultsList(""));
    }
}

TEST(SysCreateExpand, SaysWhyThereIsNone) {
    const std::string longList = [] {
        std::string text;
        for (int i = 0; i < 1001; ++i) text += std::to_string(i) + "\n";
        return text;
    }();
    const std::string large(1u << 20, 'x');
    CStringArray many;
    many.SetSize(5000);
    const struct {
        const char* label;
        std::string source;
        const CStringArray& fields;
        brindle::ErrorCode code;
        const char* part;
        std::uint32_t line;
    } rows[] = {
        {"unparsable", "<BehaviourList>\n<a></b>", many, brindle::ErrorCode::kNotWellFormed, "", 2},
        {"another root", "<Other/>", many, brindle::ErrorCode::kNotFound, "BehaviourList", 0},
        {"too many combinations",
         Template("\n<MaskHeaderAction><UnitList>" + longList + "</UnitList><HeaderList>" + longList +
                  "</HeaderList></MaskHeaderAction>"),
         many, brindle::ErrorCode::kLimit, "more than 1000000 results", 2},
        {"too much text", Template("\n\n<GetSNMPAction data='" + large + "'>%OBJVAL%</GetSNMPAction>"), many,
         brindle::ErrorCode::kLimit, "4096 MiB", 3},
        {"too deep",
         [] {
             std::string deep;
             for (int i = 0; i < 300; ++i) deep += "<a>";
             for (int i = 0; i < 300; ++i) deep += "</a>";
             return deep;
         }(),
         many, brindle::ErrorCode::kLimit, "deeper", 1},
        {"too long", "<BehaviourList>" + std::string(17u << 20, ' ') + "</BehaviourList>", many,
         brindle::ErrorCode::kLimit, "16 MiB", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        CStringA expanded = "before";
        const brindle::Result result = create.ExpandPositioned(row.source, row.fields, row.fields, expanded);
        EXPECT_EQ(result.code, row.code) << result.text;
        EXPECT_NE(result.text.find(row.part), std::string::npos) << result.text;
        EXPECT_EQ(result.line, row.line);
        EXPECT_EQ(expanded, kDeclaration);
        EXPECT_EQ(create.ResultInfo(), ResultsList(""));
    }
}

TEST(SysCreateExpand, TheProductOfFieldsAndActionsIsLimited) {
    CStringArray fields;
    fields.SetSize(static_cast<std::ptrdiff_t>(SysCreate::kMaxResults + 1));
    SysCreate create;
    CStringA expanded;
    const CStringA one(Template("<GetSNMPAction>%OBJVAL%</GetSNMPAction>"));
    EXPECT_EQ(create.ExpandPositioned(one, fields, fields, expanded).code, brindle::ErrorCode::kLimit);
    EXPECT_NE(create.ExpandXML(Template("<OtherAction/>"), &fields, &fields), kDeclaration)
        << "makes no results";
}

// The same limits, small: they count over all actions and behaviours together.
TEST(SysCreateExpand, LimitsCountOverTheWholeTemplate) {
    const std::string snmp = "<GetSNMPAction data='%OBJFLD%'/>";
    const std::string units = "<MaskUnitAction>A\nB</MaskUnitAction>";
    const std::string headers =
        "<MaskHeaderAction><UnitList>A\nB</UnitList><HeaderList>x\ny</HeaderList></MaskHeaderAction>";
    const struct {
        const char* label;
        std::string actions;
        std::uint64_t results;  // that it makes with three fields
    } rows[] = {{"one action", snmp, 3},
                {"two of them", snmp + snmp, 6},
                {"units", units, 2},
                {"combinations", headers, 4},
                {"all together", snmp + units + headers + snmp, 12}};
    const CStringArray fields = Texts({"F1", "F2", "F3"});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        for (const std::uint64_t allowed : {row.results - 1, row.results}) {
            CMapStringToInt masks;
            CStringA expanded, results;
            const SysCreate::Progress silent;
            brindle::TemplateExpansion expansion(fields, fields, masks, silent, {allowed, 1u << 20});
            const brindle::Result result = expansion.Run(CStringA(Template(row.actions)), expanded, results);
            EXPECT_EQ(result.ok(), allowed == row.results);
            EXPECT_EQ(expanded == kDeclaration, allowed != row.results);
            EXPECT_EQ(results == ResultsList(""), allowed != row.results);
        }
        CMapStringToInt masks;
        CStringA expanded, results;
        const SysCreate::Progress silent;
        brindle::TemplateExpansion tight(fields, fields, masks, silent, {100, 500});
        EXPECT_EQ(tight.Run(CStringA(Template(row.actions)), expanded, results).code,
                  brindle::ErrorCode::kLimit)
            << "too much memory";
    }
}

TEST(SysCreateExpand, TellsItsProgress) {
    CStringArray fields;
    fields.SetSize(3000);
    SysCreate create;
    CStringA expanded;
    std::vector<std::size_t> told;
    create.ExpandPositioned(CStringA(Template("<GetSNMPAction>%OBJVAL%</GetSNMPAction>")), fields, fields,
                            expanded, [&](std::size_t results) { told.push_back(results); });
    EXPECT_EQ(told, (std::vector<std::size_t>{1024, 2048}));
}

TEST(SysCreateExpand, AFieldWithoutAValueRaisesTheError) {
    SysCreate create;
    create.CreateResultsForStringsOfFields("u", "#h#");
    const CStringA before = create.ResultInfo();
    const CStringArray fields = Texts({"F1", "F2"});
    const CStringArray values = Texts({"V1"});
    const CStringA source(
        Template("<MaskUnitAction>A</MaskUnitAction><GetSNMPAction "
                 "data='%OBJFLD%'/><MaskUnitAction>B</MaskUnitAction>"));
    EXPECT_THROW(create.ExpandXML(source, &fields, &values), std::invalid_argument);
    EXPECT_EQ(create.ResultInfo(), before) << "as it was";
    EXPECT_TRUE(Has(create, {"A*"})) << "the masks before are in the table";
    EXPECT_FALSE(Has(create, {"B*"})) << "those behind are not";
    EXPECT_THROW(create.ExpandXML(source, &fields, nullptr), std::invalid_argument);
    CStringA expanded = "before";
    EXPECT_THROW(create.ExpandPositioned(source, fields, values, expanded), std::invalid_argument);
    EXPECT_EQ(expanded, "before");
    EXPECT_NE(create.ExpandXML(source, &fields, &fields), "") << "and it goes on working";
    EXPECT_TRUE(Has(create, {"A*", "B*"}));
}

TEST(SysCreateExpand, ExceptionsOfTheHostPassThrough) {
    SysCreate create;
    const CStringArray fields = Texts({"F1"});
    EXPECT_THROW(
        create.ExpandXML(Template("<GetSNMPAction data='throw'>%OBJVAL%</GetSNMPAction>"), &fields, &fields),
        std::runtime_error);
    EXPECT_EQ(create.ResultInfo(), "");
}

TEST(SysCreateExpand, TextsThatXmlCannotHoldGiveNothing) {
    const struct {
        const char* label;
        const char* field;
        const char* value;
    } rows[] = {{"in the list", "\x01", "V"}, {"in both", "F", "\x1B"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        SysCreate create;
        const CStringArray fields = Texts({row.field});
        const CStringArray values = Texts({row.value});
        CStringA expanded;
        const auto result = create.ExpandPositioned(
            CStringA(Template("<GetSNMPAction data='%OBJFLD%'>%OBJVAL%</GetSNMPAction>")), fields, values,
            expanded);
        EXPECT_EQ(result.code, brindle::ErrorCode::kInvalidArgument);
        EXPECT_EQ(expanded, kDeclaration);
        EXPECT_EQ(create.ResultInfo(), ResultsList(""));
    }
    SysCreate create;
    EXPECT_EQ(create.CreateResultsForStringsOfFields("u", "#\x01#"), ResultsList(""));
}

TEST(SysCreateExpand, WithoutDocumentsThereIsNone) {
    brindle::FakeXmlDom dom;
    const brindle::ScopedService<brindle::XmlDom> installed(brindle::SetXmlDom, dom);
    dom.FaultSwitches().create = true;
    SysCreate create;
    EXPECT_EQ(create.ExpandXML("<BehaviourList/>", nullptr, nullptr), kDeclaration);
    EXPECT_EQ(create.ResultInfo(), ResultsList(""));
}

TEST(SysCreateMasks, TheTableGrowsAndIsShared) {
    Texts({});
    SysCreate create;
    const auto expand = [](SysCreate& with, const char* unit) {
        with.ExpandXML(Template(std::string("<MaskUnitAction>") + unit + "</MaskUnitAction>"), nullptr,
                       nullptr);
    };
    expand(create, "A");
    expand(create, "B");
    EXPECT_TRUE(Has(create, {"A*", "B*"})) << "never cleared";
    auto copy = std::make_unique<SysCreate>(create);
    SysCreate assigned;
    assigned = create;
    EXPECT_EQ(copy->ResultInfo(), create.ResultInfo());
    expand(*copy, "C");
    EXPECT_TRUE(Has(create, {"C*"})) << "one table for both";
    EXPECT_NE(copy->ResultInfo(), create.ResultInfo()) << "but each its result info";
    copy.reset();
    EXPECT_TRUE(Has(create, {"A*", "B*", "C*"})) << "the table lives on";
    EXPECT_TRUE(Has(assigned, {"A*", "B*", "C*"}));
    SysCreate& same = assigned;
    assigned = same;
    EXPECT_TRUE(Has(assigned, {"C*"}));
    EXPECT_FALSE(Has(SysCreate(), {"A*"}));
}

TEST(SysCreateMasks, FoundCombinationsAreCompared) {
    Texts({});
    SysCreate create;
    create.ExpandXML(Template("<MaskUnitAction>A\nB</MaskUnitAction>"), nullptr, nullptr);
    const struct {
        const char* label;
        std::vector<std::pair<const char*, int>> found;
        bool unexpected;
    } rows[] = {{"nothing found", {}, false},
                {"some of them", {{"A*", 1}}, false},
                {"all of them", {{"B*", 1}, {"A*", 1}}, false},
                {"one more", {{"B*", 1}, {"A*", 1}, {"C*", 1}}, true},
                {"another value", {{"A*", 2}}, true},
                {"another case", {{"a*", 1}}, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        CMapStringToInt found;
        for (const auto& [key, value] : row.found) found[key] = value;
        EXPECT_EQ(create.CheckMaskResults(found), row.unexpected);
    }
}

TEST(SysCreateExpand, EveryPrefixOfATemplateIsHarmless) {
    const CStringArray fields = Texts({"F1"});
    const std::string whole = Template(
        "<GetSNMPAction data='%OBJFLD%'>%OBJVAL%<!-- c "
        "--></GetSNMPAction><MaskUnitAction>A\nB</MaskUnitAction>"
        "<MaskHeaderAction><UnitList>A</UnitList><HeaderList>x</HeaderList></MaskHeaderAction>");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SysCreate create;
        EXPECT_EQ(create.ExpandXML(whole.substr(0, length), &fields, &fields), kDeclaration) << length;
        EXPECT_EQ(create.ResultInfo(), ResultsList(""));
    }
}

}  // namespace
