// What the trigger list and the action list have in common, run on both: the registry of types, loading, saving
// and copying.
#include "brindle/behaviour/type_registry.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/behaviour/action_list.h"
#include "brindle/behaviour/trigger_list.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

struct Triggers {
    using List = CCommandTriggerList;
    using Item = CCommandTrigger;
    using Probe = ProbeTrigger;
    static constexpr const char* kSection = "TriggerList";
    static constexpr const char* kElement = "ProbeTrigger";
};

struct Actions {
    using List = CCommandActionList;
    using Item = CCommandAction;
    using Probe = ProbeAction;
    static constexpr const char* kSection = "ActionList";
    static constexpr const char* kElement = "ProbeAction";
};

template <class Kind>
std::vector<std::string> Names() {
    CStringList names;
    Kind::List::GetTypeList(names);
    std::vector<std::string> result;
    for (POSITION position = names.GetHeadPosition(); position;)
        result.push_back(names.GetNext(position).str());
    return result;
}

// Before main, when nobody has registered anything yet.
const std::size_t g_triggerTypesAtStart = Names<Triggers>().size();
const std::size_t g_actionTypesAtStart = Names<Actions>().size();

// Notes of a list's items in order, "-" for null ones.
template <class Kind>
std::string Notes(const typename Kind::List& list) {
    std::string notes;
    for (POSITION position = list.GetFirstChildPosition(); position;) {
        const auto* item = dynamic_cast<const typename Kind::Probe*>(list.GetNextChild(position));
        notes += (notes.empty() ? "" : " ") + (item ? item->note : "-");
    }
    return notes;
}

template <class Kind>
void LoadInto(typename Kind::List& list, const std::string& inside) {
    XMLReader reader = ReaderOf("<root>" + inside + "</root>");
    ASSERT_TRUE(reader.EnterSection("root", false));
    list.Load(reader);
    reader.CloseSection();
    ASSERT_TRUE(reader.EnterSection("root", false)) << "a section was left open";
}

template <class Kind>
std::string Section(const std::string& inside) {
    return std::string("<") + Kind::kSection + ">" + inside + "</" + Kind::kSection + ">";
}

template <class Kind>
std::string Element(const std::string& note) {
    return std::string("<") + Kind::kElement + " note='" + note + "'/>";
}

template <class Kind>
typename Kind::Probe* NewProbe(const std::string& note) {
    auto* probe = new typename Kind::Probe;
    probe->note = note;
    return probe;
}

// Appends in order, whatever Add does.
template <class Kind>
void Fill(typename Kind::List& list, const std::vector<typename Kind::Item*>& items) {
    if constexpr (std::is_same_v<Kind, Actions>)
        for (auto item = items.rbegin(); item != items.rend(); ++item) list.Add(*item);
    else
        for (auto* item : items) list.Add(item);
}

template <class Kind>
class TypeRegistryTest : public BehaviourTest {};
using Kinds = ::testing::Types<Triggers, Actions>;
TYPED_TEST_SUITE(TypeRegistryTest, Kinds);

TYPED_TEST(TypeRegistryTest, StartsEmpty) {
    EXPECT_EQ(g_triggerTypesAtStart, 0u);
    EXPECT_EQ(g_actionTypesAtStart, 0u);
    const brindle::TypeRegistry<typename TypeParam::Item> registry;
    CStringList names;
    names.AddTail("left from before");
    registry.GetNames(names);
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_EQ(registry.Create("anything", 0), nullptr);
}

TYPED_TEST(TypeRegistryTest, ListsNamesInOrderOfRegistrationDuplicatesIncluded) {
    const auto before = Names<TypeParam>();
    for (const char* name : {"Zeta", "Alpha", "ALPHA", "Zeta"}) TypeParam::List::Register(name, nullptr);
    auto expected = before;
    for (const char* name : {"Zeta", "Alpha", "ALPHA", "Zeta"}) expected.push_back(name);
    EXPECT_EQ(Names<TypeParam>(), expected);
    EXPECT_EQ(Names<TypeParam>(), expected) << "the list is emptied first";
}

TYPED_TEST(TypeRegistryTest, TriggersAndActionsHaveRegistriesOfTheirOwn) {
    for (const std::string& name : Names<Triggers>()) EXPECT_NE(name, "ProbeAction");
    EXPECT_EQ(CCommandTriggerList::CreateObject("ProbeAction", 0), nullptr);
    EXPECT_EQ(CCommandActionList::CreateObject("ProbeTrigger", 0), nullptr);
}

TYPED_TEST(TypeRegistryTest, CreatesByTheFirstEntryOfTheNameWithoutRegardToCase) {
    static unsigned long given = 0;
    static int madeBy = 0;
    using Item = typename TypeParam::Item;
    TypeParam::List::Register("Twice", [](unsigned long id) -> Item* {
        given = id;
        madeBy = 1;
        return NewProbe<TypeParam>("first");
    });
    TypeParam::List::Register("TWICE", [](unsigned long) -> Item* {
        madeBy = 2;
        return nullptr;
    });
    struct Row {
        const char* name;
        unsigned long id;
        unsigned long expected;
    };
    for (const Row& row : {Row{"Twice", 7, 7}, Row{"TWICE", 0, 0}, Row{"tWiCe", 0xFFFFFFFFul, 0xFFFFFFFFul},
                           Row{"twice", 0x1'0000'0005ul, 5}}) {
        SCOPED_TRACE(row.name);
        madeBy = 0;
        const std::unique_ptr<Item> made(TypeParam::List::CreateObject(row.name, row.id));
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(madeBy, 1);
        EXPECT_EQ(given, row.expected);
    }
}

TYPED_TEST(TypeRegistryTest, CreatesNothingForOtherNames) {
    for (const char* name : {"", "Prob", "ProbeTriggerX", "ProbeActionX", " ProbeTrigger", "nobody"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(TypeParam::List::CreateObject(name, 0), nullptr);
    }
    EXPECT_EQ(TypeParam::List::CreateObject(nullptr, 0), nullptr);
    TypeParam::List::Register("NoFactory", nullptr);
    EXPECT_EQ(TypeParam::List::CreateObject("NoFactory", 0), nullptr);
}

TYPED_TEST(TypeRegistryTest, Loads) {
    using Item = typename TypeParam::Item;
    static int calls = 0;
    calls = 0;
    TypeParam::List::Register("Refused", [](unsigned long) -> Item* { return nullptr; });
    TypeParam::List::Register("Second", [](unsigned long) -> Item* {
        return ++calls % 2 == 0 ? NewProbe<TypeParam>("") : nullptr;
    });
    struct Row {
        const char* label;
        std::string xml;
        const char* notes;
    };
    const std::string e = TypeParam::kElement;
    const auto one = [](const char* note) { return Element<TypeParam>(note); };
    const std::string upper = e == "ProbeTrigger" ? "PROBETRIGGER" : "PROBEACTION";
    const Row rows[] = {
        {"no section", "<Other/>", ""},
        {"section name is case-sensitive", "<triggerlist/><actionlist/>", ""},
        {"empty section", Section<TypeParam>(""), ""},
        {"document order", Section<TypeParam>(one("a") + one("b") + one("c")), "a b c"},
        {"unregistered skipped", Section<TypeParam>("<X/>" + one("a") + "<X/><Y/>" + one("b") + "<X/>"),
         "a b"},
        {"factory refuses", Section<TypeParam>("<Refused/>" + one("a") + "<Refused/>"), "a"},
        {"nothing registered", Section<TypeParam>("<X><" + e + "/></X>"), ""},
        {"names in any case", Section<TypeParam>("<" + upper + " note='u'/>" + one("a")), "u a"},
        {"case told apart when entering",
         Section<TypeParam>(one("a") + "<" + upper + " note='u'/>" + one("b")), "a u b"},
        {"text and comments between", Section<TypeParam>("text" + one("a") + "<!--c-->" + one("b")), "a b"},
        {"behind other sections", "<X/>" + Section<TypeParam>(one("a")), "a"},
        {"only the next section of the name", Section<TypeParam>(one("a")) + Section<TypeParam>(one("b")),
         "a"},
        {"nested ones belong to their item",
         Section<TypeParam>("<" + e + " note='a'>" + one("inner") + "</" + e + ">" + one("b")), "a b"},
        // A refused element is not entered, so the next one of its name reads the refused one's element.
        {"Kept: after a refusal the earlier element is read",
         Section<TypeParam>("<Second note='first'/><Second note='second'/>"), "first"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        typename TypeParam::List list;
        LoadInto<TypeParam>(list, row.xml);
        EXPECT_EQ(Notes<TypeParam>(list), row.notes);
    }
}

TYPED_TEST(TypeRegistryTest, LoadingCallsFactoriesWithZero) {
    static unsigned long given = 1;
    given = 1;
    TypeParam::List::Register("Asked", [](unsigned long id) -> typename TypeParam::Item* {
        given = id;
        return nullptr;
    });
    typename TypeParam::List list;
    LoadInto<TypeParam>(list, Section<TypeParam>("<Asked/>"));
    EXPECT_EQ(given, 0u);
}

TYPED_TEST(TypeRegistryTest, LoadingAppends) {
    typename TypeParam::List list;
    list.Add(NewProbe<TypeParam>("there"));
    LoadInto<TypeParam>(list, Section<TypeParam>(Element<TypeParam>("a") + Element<TypeParam>("b")));
    EXPECT_EQ(Notes<TypeParam>(list), "there a b");
}

TYPED_TEST(TypeRegistryTest, LoadsTheEnabledFlagOfEachItem) {
    typename TypeParam::List list;
    const std::string open = std::string("<") + TypeParam::kElement + ">";
    const std::string close = std::string("</") + TypeParam::kElement + ">";
    LoadInto<TypeParam>(list, Section<TypeParam>(open + "<Enabled value='FALSE'/>" + close + open + close));
    POSITION position = list.GetFirstChildPosition();
    EXPECT_FALSE(list.GetNextChild(position)->IsEnabled());
    EXPECT_TRUE(list.GetNextChild(position)->IsEnabled());
}

TYPED_TEST(TypeRegistryTest, SavesItemsInOrderInsideItsSectionAndSkipsNullOnes) {
    typename TypeParam::List list;
    auto* second = NewProbe<TypeParam>("b");
    second->SetEnabled(false);
    Fill<TypeParam>(list, {NewProbe<TypeParam>("a"), nullptr, second});
    const std::string xml = Written([&](XMLWriter& writer) {
        writer.EnterSection("root");
        list.Save(writer);
        writer.EnterSection("after");
        writer.CloseSection();
        writer.CloseSection();
    });
    const std::size_t start = xml.find("<root><" + std::string(TypeParam::kSection) + "><");
    const std::size_t a = xml.find("note=\"a\"");
    const std::size_t on = xml.find("<Enabled value=\"TRUE\"/></" + std::string(TypeParam::kElement) + "><");
    const std::size_t b = xml.find("note=\"b\"");
    const std::size_t off = xml.find("<Enabled value=\"FALSE\"/></" + std::string(TypeParam::kElement) +
                                     "></" + std::string(TypeParam::kSection) + "><after/></root>");
    EXPECT_LT(start, a) << xml;
    EXPECT_LT(a, on) << xml;
    EXPECT_LT(on, b) << xml;
    EXPECT_LT(b, off) << xml;
    EXPECT_NE(off, std::string::npos) << xml;
}

TYPED_TEST(TypeRegistryTest, SavesAnEmptySection) {
    const typename TypeParam::List list;
    const std::string xml = Written([&](XMLWriter& writer) { list.Save(writer); });
    EXPECT_NE(xml.find("<" + std::string(TypeParam::kSection) + "/>"), std::string::npos) << xml;
}

TYPED_TEST(TypeRegistryTest, AssignmentAppendsReplicasNullOnesIncluded) {
    typename TypeParam::List source;
    auto* a = NewProbe<TypeParam>("a");
    a->onReplicate = [] { return NewProbe<TypeParam>("a2"); };
    auto* none = NewProbe<TypeParam>("no replica");
    auto* c = NewProbe<TypeParam>("c");
    c->onReplicate = [] { return NewProbe<TypeParam>("c2"); };
    Fill<TypeParam>(source, {a, none, nullptr, c});

    typename TypeParam::List target;
    target.Add(NewProbe<TypeParam>("there"));
    target = source;
    EXPECT_EQ(Notes<TypeParam>(target), "there a2 - - c2") << "Kept: assigning does not empty first";
    EXPECT_EQ(target.GetChildCount(), 5);
    EXPECT_EQ(Notes<TypeParam>(source), "a no replica - c");
    target = source;
    EXPECT_EQ(target.GetChildCount(), 9);
}

TYPED_TEST(TypeRegistryTest, AssignedToItselfAListDoubles) {
    typename TypeParam::List list;
    auto* a = NewProbe<TypeParam>("a");
    a->onReplicate = [] { return NewProbe<TypeParam>("a2"); };
    list.Add(a);
    auto& same = list;
    list = same;
    EXPECT_EQ(Notes<TypeParam>(list), "a a2");
}

TYPED_TEST(TypeRegistryTest, AFailingReplicateLeavesWhatWasCopied) {
    typename TypeParam::List source;
    auto* a = NewProbe<TypeParam>("a");
    a->onReplicate = [] { return NewProbe<TypeParam>("a2"); };
    auto* b = NewProbe<TypeParam>("b");
    b->onReplicate = []() -> typename TypeParam::Item* { throw std::runtime_error("no"); };
    Fill<TypeParam>(source, {a, b});
    typename TypeParam::List target;
    EXPECT_THROW(target = source, std::runtime_error);
    EXPECT_EQ(Notes<TypeParam>(target), "a2");
}

TYPED_TEST(TypeRegistryTest, RemoveDestroysAndIgnoresStrangers) {
    typename TypeParam::List list;
    auto* a = NewProbe<TypeParam>("a");
    auto* b = NewProbe<TypeParam>("b");
    Fill<TypeParam>(list, {a, nullptr, b});
    const int live = LiveProbes();
    list.Remove(a);
    EXPECT_EQ(LiveProbes(), live - 1);
    EXPECT_EQ(Notes<TypeParam>(list), "- b");
    typename TypeParam::Probe stranger;
    list.Remove(&stranger);
    list.Remove(nullptr);
    EXPECT_EQ(Notes<TypeParam>(list), "- b");
}

TYPED_TEST(TypeRegistryTest, DestroysItsItems) {
    const int live = LiveProbes();
    {
        typename TypeParam::List list;
        Fill<TypeParam>(list, {NewProbe<TypeParam>("a"), nullptr, NewProbe<TypeParam>("b")});
        EXPECT_EQ(LiveProbes(), live + 2);
    }
    EXPECT_EQ(LiveProbes(), live);
}

TYPED_TEST(TypeRegistryTest, AnItemThatFailsToLoadIsNotAddedAndSectionsAreClosed) {
    using Item = typename TypeParam::Item;
    TypeParam::List::Register("Fails", [](unsigned long) -> Item* {
        auto* item = NewProbe<TypeParam>("");
        item->onLoad = [] { throw std::runtime_error("unreadable"); };
        return item;
    });
    const int live = LiveProbes();
    typename TypeParam::List list;
    XMLReader reader =
        ReaderOf("<root>" + Section<TypeParam>(Element<TypeParam>("a") + "<Fails/>") + "<Next/></root>");
    ASSERT_TRUE(reader.EnterSection("root", false));
    EXPECT_THROW(list.Load(reader), std::runtime_error);
    EXPECT_EQ(LiveProbes(), live + 1);
    EXPECT_EQ(Notes<TypeParam>(list), "a");
    EXPECT_TRUE(reader.EnterSection("Next", false)) << "a section was left open";
}

TYPED_TEST(TypeRegistryTest, AnItemThatFailsToSaveLeavesNoSectionOpen) {
    typename TypeParam::List list;
    auto* item = NewProbe<TypeParam>("a");
    item->onSave = [] { throw std::runtime_error("no"); };
    list.Add(item);
    const std::string xml = Written([&](XMLWriter& writer) {
        writer.EnterSection("root");
        EXPECT_THROW(list.Save(writer), std::runtime_error);
        writer.WriteAttribute("here", "1");
        writer.CloseSection();
    });
    EXPECT_NE(xml.find("<root here=\"1\">"), std::string::npos) << xml;
}

}  // namespace
