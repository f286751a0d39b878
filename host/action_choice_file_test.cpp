// Behaviour list files that are edited in place: what changes, and that all else stays byte for byte.
#include "host/action_choice_file.h"

#include <brindle/behaviour/behaviour_list.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/action_choice.h"
#include "host/action_choice_xml.h"
#include "host/alignment.h"
#include "host/behaviour_items.h"
#include "host/host_files.h"
#include "host/register_types.h"
#include "host/site.h"
#include "host/words.h"
#include "host/written_site_test.h"

namespace brindle::host {
namespace {

const char* const kFile = R"(<?xml version="1.0"?>
<!-- The panel. -->
<BehaviourList>
  <!-- the first one -->
  <Behaviour>
    <TriggerList>
      <StateTrigger Name='Lost'   States="3-" Unheard="of"><!-- why --><Enabled value="TRUE"/></StateTrigger>
    </TriggerList>
    <ActionList>
      <WriteLogAction Text="%c &amp; more"/>   <!-- beside -->
      <SomebodyElses><deep/></SomebodyElses>
      <RunCommandAction Name="Bell" Command="bell.exe">
        <Enabled value="TRUE"/>
      </RunCommandAction>
    </ActionList>
    <Unknown/>
  </Behaviour>
  <Behaviour><TriggerList><RuleTrigger Rule="State = 1"/></TriggerList><ActionList/></Behaviour>
</BehaviourList>
<!-- the end -->
)";

class ActionChoiceFile : public ::testing::Test {
  protected:
    ActionChoiceFile() { RegisterHostTypes(); }

    // The file after the choice was changed and applied. An error begins with "!".
    std::string After(const std::string& text, const std::function<void(ActionChoice&)>& change) {
        m_site.Write("list.xml", text);
        const std::string path = m_site.Path("list.xml");
        const HostFileMarks marks = MarksOfHostFile(path);
        CCommandBehaviourList list(eHostMapObject);
        Problems problems;
        EXPECT_TRUE(ReadBehaviours(path, list, problems)) << text;
        ActionChoice choice(list, eHostMapObject);
        change(choice);
        choice.Apply();
        const Result result = SaveBehaviourList(path, marks, list);
        std::string written;
        EXPECT_EQ(ReadSiteFile(path, written), "");
        if (!result.ok()) {
            EXPECT_EQ(written, text) << "a failure changes nothing";
            return "!" + result.text;
        }
        return written;
    }
    // kFile with one part of it another one.
    static std::string With(const std::string& from, const std::string& to) {
        std::string text = kFile;
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        EXPECT_EQ(text.find(from, at + 1), std::string::npos) << from;
        return text.replace(at, from.size(), to);
    }
    static ChosenItem& Trigger(ActionChoice& choice, std::size_t behaviour, std::size_t item = 0) {
        return *choice.Behaviours().at(behaviour)->triggers.at(item);
    }
    static ChosenItem& Action(ActionChoice& choice, std::size_t behaviour, std::size_t item) {
        return *choice.Behaviours().at(behaviour)->actions.at(item);
    }
    static ChosenItem* Add(ActionChoice& choice, ChosenBehaviour& behaviour, const std::string& type) {
        for (const ActionChoice::Type& candidate : choice.Types())
            if (candidate.name == type) return choice.Add(behaviour, candidate);
        ADD_FAILURE() << type;
        return nullptr;
    }

    WrittenSite m_site;
};

TEST_F(ActionChoiceFile, OneEditEach) {
    struct Row {
        const char* label;
        std::function<void(ActionChoice&)> change;
        const char* from;
        const char* to;
    };
    const Row rows[] = {
        {"an attribute",
         [](ActionChoice& choice) { Action(choice, 0, 1).Set("Command", "horn.exe \"<%a>\" & more"); },
         "\"bell.exe\"", "\"horn.exe &quot;&lt;%a&gt;&quot; &amp; more\""},
        {"an attribute in other quotes",
         [](ActionChoice& choice) { Trigger(choice, 0).Set("Name", "It's \"lost\""); }, "'Lost'",
         "'It&apos;s &quot;lost&quot;'"},
        {"a new attribute", [](ActionChoice& choice) { Trigger(choice, 0).Set("Address", "0003:?:?"); },
         "Unheard=\"of\"", "Unheard=\"of\" Address=\"0003:?:?\""},
        {"a character that is not ASCII",
         [](ActionChoice& choice) { Trigger(choice, 1).Set("Name", "\xFC\x80"); },
         "<RuleTrigger Rule=\"State = 1\"/>", "<RuleTrigger Rule=\"State = 1\" Name=\"&#252;&#8364;\"/>"},
        {"a line break", [](ActionChoice& choice) { Trigger(choice, 1).Set("Name", "a\nb"); },
         "<RuleTrigger Rule=\"State = 1\"/>", "<RuleTrigger Rule=\"State = 1\" Name=\"a&#10;b\"/>"},
        {"disabled", [](ActionChoice& choice) { Action(choice, 0, 1).SetEnabled(false); },
         "<Enabled value=\"TRUE\"/>\n      </RunCommandAction>",
         "<Enabled value=\"FALSE\"/>\n      </RunCommandAction>"},
        {"disabled, with nothing that says so yet",
         [](ActionChoice& choice) { Action(choice, 0, 0).SetEnabled(false); },
         "<WriteLogAction Text=\"%c &amp; more\"/>",
         "<WriteLogAction Text=\"%c &amp; more\">\n        <Enabled value=\"FALSE\"/>\n      "
         "</WriteLogAction>"},
        {"an action removed", [](ActionChoice& choice) { choice.Remove(&Action(choice, 0, 1)); },
         "      <RunCommandAction Name=\"Bell\" Command=\"bell.exe\">\n        <Enabled value=\"TRUE\"/>\n   "
         "   "
         "</RunCommandAction>\n",
         ""},
        {"an action removed that shares its line",
         [](ActionChoice& choice) { choice.Remove(&Action(choice, 0, 0)); },
         "<WriteLogAction Text=\"%c &amp; more\"/>", ""},
        {"a behaviour removed", [](ActionChoice& choice) { choice.Remove(choice.Behaviours()[1].get()); },
         "  <Behaviour><TriggerList><RuleTrigger Rule=\"State = "
         "1\"/></TriggerList><ActionList/></Behaviour>\n",
         ""},
        {"an action added behind the others",
         [](ActionChoice& choice) {
             Add(choice, *choice.Behaviours()[0], "WriteLogAction")->Set("Text", "new");
         },
         "</RunCommandAction>",
         "</RunCommandAction>\n      <WriteLogAction Text=\"new\"><Enabled "
         "value=\"TRUE\"/></WriteLogAction>"},
        {"a trigger added",
         [](ActionChoice& choice) { Add(choice, *choice.Behaviours()[0], "ButtonTrigger"); },
         "</StateTrigger>",
         "</StateTrigger>\n      <ButtonTrigger><Enabled value=\"TRUE\"/></ButtonTrigger>"},
        {"two actions added to an empty list",
         [](ActionChoice& choice) {
             Add(choice, *choice.Behaviours()[1], "WriteLogAction")->Set("Text", "1");
             Add(choice, *choice.Behaviours()[1], "WriteLogAction")->Set("Text", "2");
         },
         "<ActionList/>",
         "<ActionList><WriteLogAction Text=\"1\"><Enabled value=\"TRUE\"/></WriteLogAction><WriteLogAction "
         "Text=\"2\"><Enabled value=\"TRUE\"/></WriteLogAction></ActionList>"},
        {"a behaviour added",
         [](ActionChoice& choice) {
             ChosenBehaviour* const behaviour = choice.AddBehaviour();
             Add(choice, *behaviour, "ButtonTrigger");
         },
         "<ActionList/></Behaviour>",
         "<ActionList/></Behaviour>\n  <Behaviour><TriggerList><ButtonTrigger><Enabled value=\"TRUE\"/>"
         "</ButtonTrigger></TriggerList><ActionList/></Behaviour>"},
        {"nothing", [](ActionChoice&) {}, "<!-- the end -->", "<!-- the end -->"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(After(kFile, row.change), With(row.from, row.to));
    }
}

TEST_F(ActionChoiceFile, TheFirstBehaviourRemovedAndTheSecondChanged) {
    const std::string edited = After(kFile, [](ActionChoice& choice) {
        choice.Remove(choice.Behaviours()[0].get());
        Trigger(choice, 0).Set("Rule", "State = 2");
    });
    EXPECT_EQ(edited.find("Lost"), std::string::npos);
    EXPECT_NE(edited.find("<RuleTrigger Rule=\"State = 2\"/>"), std::string::npos) << edited;
    EXPECT_NE(edited.find("<!-- the first one -->"), std::string::npos);
}

TEST_F(ActionChoiceFile, WindowsLinesStay) {
    const std::string before =
        "<BehaviourList>\r\n\t<Behaviour>\r\n\t\t<TriggerList/>\r\n\t\t<ActionList>\r\n\t\t\t<WriteLogAction "
        "Text='a'/>\r\n\t\t</ActionList>\r\n\t</Behaviour>\r\n</BehaviourList>\r\n";
    const std::string edited = After(before, [](ActionChoice& choice) {
        Add(choice, *choice.Behaviours()[0], "WriteLogAction")->Set("Text", "b");
        choice.Remove(&Action(choice, 0, 0));
    });
    EXPECT_EQ(
        edited,
        "<BehaviourList>\r\n\t<Behaviour>\r\n\t\t<TriggerList/>\r\n\t\t<ActionList>\r\n\t\t\t<WriteLogAction "
        "Text='b'/>\r\n\t\t</ActionList>\r\n\t</Behaviour>\r\n</BehaviourList>\r\n");
}

TEST_F(ActionChoiceFile, ListsThatAreEmptyOrMissing) {
    struct Row {
        const char* label;
        const char* before;
        const char* after;
    };
    const Row rows[] = {
        {"nothing but the list", "<BehaviourList/>",
         "<BehaviourList><Behaviour><TriggerList/><ActionList><WriteLogAction Text=\"x\"><Enabled "
         "value=\"TRUE\"/></WriteLogAction></ActionList></Behaviour></BehaviourList>"},
        {"an open list of two lines", "<BehaviourList>\n</BehaviourList>",
         "<BehaviourList><Behaviour><TriggerList/><ActionList><WriteLogAction Text=\"x\"><Enabled "
         "value=\"TRUE\"/></WriteLogAction></ActionList></Behaviour>\n</BehaviourList>"},
        {"no list of actions", "<BehaviourList><Behaviour><TriggerList/></Behaviour></BehaviourList>",
         "<BehaviourList><Behaviour><TriggerList/><ActionList><WriteLogAction Text=\"x\"><Enabled "
         "value=\"TRUE\"/></WriteLogAction></ActionList></Behaviour></BehaviourList>"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(After(row.before,
                        [](ActionChoice& choice) {
                            ChosenBehaviour* const behaviour = choice.Behaviours().empty()
                                                                   ? choice.AddBehaviour()
                                                                   : choice.Behaviours()[0].get();
                            Add(choice, *behaviour, "WriteLogAction")->Set("Text", "x");
                        }),
                  row.after);
    }
}

TEST_F(ActionChoiceFile, EncodingsItKnows) {
    const auto rename = [](ActionChoice& choice) { Trigger(choice, 0).Set("User", "x"); };
    const auto file = [](const std::string& head, const std::string& name) {
        return head + "<BehaviourList><Behaviour><TriggerList><ButtonTrigger Name='" + name +
               "'/></TriggerList></Behaviour></BehaviourList>";
    };
    struct Row {
        const char* head;
        const char* name;
        const char* error;
    };
    const char* const kNotThis = "!it cannot be edited in place: its encoding is not UTF-8";
    const Row rows[] = {
        {"", "gr\xC3\xBCn", ""},
        {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "gr\xC3\xBCn", ""},
        {"<?xml version='1.0' encoding='windows-1252'?>", "gr\xFCn", ""},
        {"<?xml version='1.0' encoding='ISO-8859-15'?>", "gr\xFCn", kNotThis},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.head);
        const std::string edited = After(file(row.head, row.name), rename);
        const std::string expected =
            Replaced(file(row.head, row.name), "'/></Trigger", "' User=\"x\"/></Trigger");
        EXPECT_EQ(edited, *row.error ? row.error : expected);
    }
}

TEST_F(ActionChoiceFile, WhatCannotBeEditedInPlaceIsNotTouched) {
    const auto add = [](ActionChoice& choice) {
        Add(choice, *choice.Behaviours()[0], "WriteLogAction")->Set("Text", "x");
    };
    EXPECT_EQ(
        After("<!DOCTYPE BehaviourList><BehaviourList><Behaviour><TriggerList/></Behaviour></BehaviourList>",
              add),
        "!it cannot be edited in place: it has a document type");
    EXPECT_EQ(After("<BehaviourList><Behaviour/></BehaviourList>", add),
              "!it cannot be edited in place: a behaviour has no \"TriggerList\"");
    EXPECT_EQ(After(kFile, [](ActionChoice& choice) { Trigger(choice, 0).Set("Name", "a\x01"); }),
              "!a text holds a character that XML cannot hold");
}

TEST_F(ActionChoiceFile, AFileThatSomebodyElseChangedIsLeftAlone) {
    m_site.Write("list.xml", kFile);
    const std::string path = m_site.Path("list.xml");
    const HostFileMarks marks = MarksOfHostFile(path);
    CCommandBehaviourList list(eHostMapObject);
    m_site.Write("list.xml", "<BehaviourList/>");
    EXPECT_EQ(SaveBehaviourList(path, marks, list).text, "somebody else has changed it meanwhile");
    std::string text;
    ReadSiteFile(path, text);
    EXPECT_EQ(text, "<BehaviourList/>");
}

TEST_F(ActionChoiceFile, AFileThatCannotBeWrittenSaysWhy) {
    const std::string path = m_site.Path("missing/list.xml");
    CCommandBehaviourList list(eHostMapObject);
    EXPECT_FALSE(SaveBehaviourList(path, HostFileMarks(), list).ok());
}

// Every beginning of a text is either whole or told.
TEST_F(ActionChoiceFile, EveryPrefixOfAText) {
    const std::string text =
        std::string("<?xml version='1.0'?><!-- c --><a:b x = 'y' z=\"&lt;\"><![CDATA[<]]><c/></a:b>");
    const std::size_t whole = text.size();
    for (std::size_t i = 0; i <= whole; ++i) {
        SCOPED_TRACE(text.substr(0, i));
        XmlPiece root;
        EXPECT_EQ(FindXmlPieces(text.substr(0, i), root).ok(), i == whole);
    }
    XmlPiece root;
    ASSERT_TRUE(FindXmlPieces(text, root).ok());
    EXPECT_EQ(root.name, "b");
    EXPECT_EQ(root.children.size(), 1u);
    EXPECT_EQ(text.substr(root.attributes.at(0).begin, 1), "y");
    EXPECT_EQ(root.attributes.at(1).name, "z");
    EXPECT_EQ(text.substr(root.contentEnd), "</a:b>");
}

TEST_F(ActionChoiceFile, DeepTextsNeedNoStack) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "<a>";
    XmlPiece root;
    EXPECT_FALSE(FindXmlPieces(text, root).ok());
}

TEST(Alignment, KeepsTheOrderAndTakesTheBestSum) {
    const auto of = [](const std::string& a, const std::string& b) {
        const Matches matches = Align(a.size(), b.size(), [&](std::size_t i, std::size_t j) {
            return a[i] == b[j] ? 10 : (a[i] ^ b[j]) == 0x20 ? 1 : 0;  // the same letter in the other case
        });
        std::string text;
        for (const auto& match : matches) text += match ? a[*match] : '-';
        return text;
    };
    EXPECT_EQ(of("abc", "abc"), "abc");
    EXPECT_EQ(of("abc", "ac"), "ac");
    EXPECT_EQ(of("ac", "abc"), "a-c");
    EXPECT_EQ(of("abc", "aBc"), "abc");
    EXPECT_EQ(of("abc", "xbx"), "-b-");
    EXPECT_EQ(of("", "ab"), "--");
    EXPECT_EQ(of("ab", "ba").size(), 2u);
    EXPECT_EQ(of(std::string(2'000, 'a'), std::string(2'000, 'a')), std::string(2'000, 'a'));
}

}  // namespace
}  // namespace brindle::host
