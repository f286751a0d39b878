// The action chooser as the library's SelectActions opens it, over Qt's own windows: chosen, refused, cancelled, by
// keys alone and in both directions; for lists and for objects of a site, whose files are saved. Its pictures go to the
// test's folder, from where scripts/dialog-pictures takes that of the documents.
#include "apps/brindle-map/action_chooser_dialog.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/action_selection.h>
#include <brindle/macro/brindle_data.h>
#include <brindle/variables/hook/rule_editor.h>
#include <brindle/xml/xml_reader.h>
#include <gtest/gtest.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QTreeWidget>

#include <thread>

#include "apps/brindle-map/action_chooser.h"
#include "apps/brindle-map/dialog_test_kit.h"
#include "host/behaviour_items.h"
#include "host/host_files.h"
#include "host/register_types.h"
#include "host/site_reloader.h"
#include "host/words.h"
#include "host/written_site_test.h"

namespace brindle::map {
namespace {

using testing::FrontWindow;
using testing::PressKey;
using testing::ThenIn;
using Dialog = ActionChooserDialog;

constexpr const char* kList =
    "<BehaviourList>\n"
    "  <!-- the first -->\n"
    "  <Behaviour><TriggerList><RuleTrigger Rule='State &gt; 2'/></TriggerList>\n"
    "    <ActionList>\n"
    "      <WriteLogAction Text='lost'/>\n"
    "      <RunCommandAction Name='Bell' Command='bell.exe' Repeat='TRUE'/>\n"
    "    </ActionList></Behaviour>\n"
    "  <Behaviour><TriggerList><ButtonTrigger/></TriggerList><ActionList/></Behaviour>\n"
    "</BehaviourList>\n";

// An action for buttons only.
class ButtonAction final : public CCommandAction {
  public:
    CStringA GetText(int) override { return "For Buttons"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
    bool SupportsHostType(eHostType host) const override { return host == eHostButton; }
    CCommandAction* Replicate() override { return new ButtonAction(*this); }
};

class ActionChooserTest : public ::testing::Test {
  protected:
    ActionChooserTest() {
        NeedDesktop();
        host::RegisterHostTypes();
        [[maybe_unused]] static const bool registered = [] {
            CCommandActionList::Register("ButtonAction",
                                         [](unsigned long) -> CCommandAction* { return new ButtonAction; });
            return true;
        }();
        m_written.WriteObjects({"a"});
        m_written.Write("site.ini", "[Site]\nDevices=devices.ini\n[Object a]\nAddress=1:1:1\n");
        m_written.Write("behaviours/a.xml", kList);
        host::Problems problems;
        EXPECT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        m_chooser.emplace(m_site);
        RegisterIBrindleData(&m_site.devices);
    }
    ~ActionChooserTest() override {
        RegisterIBrindleData(nullptr);
        RegisterRuleEditorFunct(nullptr);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    CCommandBehaviourList& List() { return m_site.objects[0]->list; }
    std::string File() const {
        std::string text;
        EXPECT_EQ(host::ReadSiteFile(m_site.objects[0]->plan.behaviours, text), "");
        return text;
    }
    static QTreeWidget* Tree() { return Numbered<QTreeWidget>(Dialog::kTree); }
    static QTreeWidget* Values() { return Numbered<QTreeWidget>(Dialog::kValues); }
    static QPushButton* Press(unsigned control) { return Numbered<QPushButton>(control); }
    static std::string Verdict() { return Numbered<QLabel>(Dialog::kVerdict)->text().toStdString(); }
    // The row of the tree: of a behaviour, or one of its items.
    static QTreeWidgetItem* Row(int behaviour, int item = -1) {
        QTreeWidgetItem* const row = Tree()->topLevelItem(behaviour);
        return item < 0 ? row : row->child(item);
    }
    static void Select(int behaviour, int item = -1) { Tree()->setCurrentItem(Row(behaviour, item)); }
    static std::string Texts() {
        std::string texts;
        for (int i = 0; i < Tree()->topLevelItemCount(); ++i) {
            texts += Row(i)->text(0).toStdString() + "\n";
            for (int k = 0; k < Row(i)->childCount(); ++k)
                texts +=
                    "  " + Row(i, k)->text(1).toStdString() + " " + Row(i, k)->text(0).toStdString() + "\n";
        }
        return texts;
    }
    static void ChooseType(const char* text) {
        auto* const types = Numbered<QComboBox>(Dialog::kType);
        const int index = types->findText(text);
        ASSERT_GE(index, 0) << text;
        types->setCurrentIndex(index);
        emit types->activated(index);
    }
    // Types into the value of an attribute of the selected item, as by hand.
    static void TypeValue(const QString& attribute, const QString& text) {
        for (int i = 0; i < Values()->topLevelItemCount(); ++i)
            if (Values()->topLevelItem(i)->text(0) == attribute)
                Values()->setCurrentItem(Values()->topLevelItem(i), 1);
        PressKey(Values(), Qt::Key_F2);
        auto* const editor = Values()->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr) << attribute.toStdString();
        testing::TypeText(editor, text);
        PressKey(editor, Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);  // the list hears of it soon
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static bool CanAccept() { return Button(QDialogButtonBox::Ok)->isEnabled(); }
    static void Accept() { Button(QDialogButtonBox::Ok)->click(); }
    static void Cancel() { Button(QDialogButtonBox::Cancel)->click(); }

    host::WrittenSite m_written;
    host::Site m_site;
    std::optional<ActionChooser> m_chooser;
};

TEST_F(ActionChooserTest, ShowsTheListWithItsTexts) {
    const std::string before = host::SavedText(List());
    ThenIn<QDialog>([] {
        EXPECT_EQ(Texts(),
                  "When Rule Trigger: Rule=\"State > 2\"\n"
                  "  trigger Rule Trigger: Rule=\"State > 2\"\n"
                  "  action Write Log: Text=\"lost\"\n"
                  "  action Run Command: Bell\n"
                  "When Button Trigger\n"
                  "  trigger Button Trigger\n");
        EXPECT_EQ(Tree()->currentItem(), Row(1)) << "the selected one";
        EXPECT_EQ(Verdict(), "");
        Select(0, 2);
        testing::SavePicture(FrontWindow(), "action_chooser.png");
        Accept();
    });
    EXPECT_EQ(SelectActions(List(), 1, eHostMapObject), 1);
    EXPECT_EQ(host::SavedText(List()), before);
}

TEST_F(ActionChooserTest, SelectionsThatAreNoneTakeTheFirst) {
    for (const int selection : {-1, 2, 1'000'000}) {
        ThenIn<QDialog>([] {
            EXPECT_EQ(Tree()->currentItem(), Row(0));
            FrontWindow()->close();
        });
        EXPECT_EQ(SelectActions(List(), selection, eHostMapObject), 0);
    }
}

TEST_F(ActionChooserTest, AddsRemovesEnablesAndSets) {
    ThenIn<QDialog>([] {
        Select(0, 1);
        Press(Dialog::kRemove)->click();
        EXPECT_EQ(Tree()->currentItem(), Row(0));
        Row(0, 1)->setCheckState(0, Qt::Unchecked);
        ChooseType("Action: Write Log");
        Press(Dialog::kAdd)->click();
        EXPECT_EQ(Tree()->currentItem(), Row(0, 2));
        TypeValue("Text", "%c is lost");
        EXPECT_EQ(Row(0, 2)->text(0), "Write Log: Text=\"%c is lost\"");
        ChooseType("Behaviour");
        Press(Dialog::kAdd)->click();
        EXPECT_EQ(Tree()->currentItem(), Row(2));
        ChooseType("Trigger: Button Trigger");
        Press(Dialog::kAdd)->click();
        EXPECT_EQ(Verdict(), "");
        Accept();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 1);
    const auto behaviours = host::BehavioursOf(List());
    ASSERT_EQ(behaviours.size(), 3u);
    const auto actions = host::ActionsOf(*behaviours[0]);
    ASSERT_EQ(actions.size(), 2u);
    EXPECT_FALSE(actions[0]->IsEnabled());
    EXPECT_EQ(actions[1]->GetReflect(), "Text=\"%c is lost\"");
    EXPECT_EQ(host::TriggersOf(*behaviours[2]).size(), 1u);
}

TEST_F(ActionChooserTest, CancelLeavesTheList) {
    const std::string before = host::SavedText(List());
    ThenIn<QDialog>([] {
        Press(Dialog::kRemove)->click();
        Row(0, 0)->setCheckState(0, Qt::Unchecked);
        Cancel();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 0);
    EXPECT_EQ(host::SavedText(List()), before);
}

TEST_F(ActionChooserTest, AValueThatCannotBeReadKeepsOkAway) {
    ThenIn<QDialog>([] {
        Select(0, 2);
        TypeValue("Period", "often");
        EXPECT_EQ(Verdict(),
                  "Wrong: Run Command: Bell: attribute \"Period\": \"often\" is not a whole number from 0 to "
                  "2147483647.");
        EXPECT_FALSE(CanAccept());
        Select(0, 1);
        EXPECT_FALSE(CanAccept()) << "wherever one looks meanwhile";
        Select(0, 2);
        EXPECT_EQ(Values()->findItems("often", Qt::MatchExactly, 1).size(), 1)
            << "what was typed is still there";
        TypeValue("Period", "500");
        EXPECT_TRUE(CanAccept());
        TypeValue("Name", QString::fromUtf8("\xCE\xA9"));
        EXPECT_NE(Verdict().find("a character is not in the station's code page"), std::string::npos);
        EXPECT_EQ(Row(0, 2)->text(0), "Run Command: Bell");
        Cancel();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 0);
}

TEST_F(ActionChooserTest, WhatDoesNotApplyIsGrey) {
    ThenIn<QDialog>([] {
        const QColor normal = TextColour(Dialog::kTypeText);
        Select(0);
        EXPECT_NE(TextColour(Dialog::kValuesText), normal) << "a behaviour has no attributes";
        EXPECT_FALSE(Press(Dialog::kRule)->isEnabled());
        Select(0, 0);
        EXPECT_EQ(TextColour(Dialog::kValuesText), normal);
        EXPECT_TRUE(Press(Dialog::kRule)->isEnabled());
        while (Tree()->topLevelItemCount() > 0) {
            Select(0);
            Press(Dialog::kRemove)->click();
        }
        EXPECT_FALSE(Press(Dialog::kRemove)->isEnabled());
        ChooseType("Action: Write Log");
        EXPECT_FALSE(Press(Dialog::kAdd)->isEnabled()) << "there is no behaviour to add it to";
        EXPECT_NE(TextColour(Dialog::kTypeText), normal);
        ChooseType("Behaviour");
        EXPECT_TRUE(Press(Dialog::kAdd)->isEnabled());
        EXPECT_EQ(TextColour(Dialog::kTypeText), normal);
        Accept();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 1);
    EXPECT_TRUE(List().IsEmpty());
}

TEST_F(ActionChooserTest, TypesAreThoseOfTheHostsKind) {
    for (const eHostType host : {eHostMapObject, eHostButton}) {
        ThenIn<QDialog>([&] {
            const auto* const types = Numbered<QComboBox>(Dialog::kType);
            EXPECT_GE(types->findText("Action: Run Command"), 0);
            EXPECT_GE(types->findText("Trigger: Rule Trigger"), 0);
            EXPECT_EQ(types->findText("Action: For Buttons") >= 0, host == eHostButton);
            Cancel();
        });
        EXPECT_EQ(SelectActions(List(), 0, host), 0);
    }
}

CStringA g_askedRule;
CAddressOv g_askedAddress;
bool AnswerRule(const CStringA& rule, const CAddressOv* address, CStringA& result) {
    g_askedRule = rule;
    g_askedAddress = address ? *address : CAddressOv();
    result = "State = 1";
    return true;
}

TEST_F(ActionChooserTest, ARuleIsEditedByTheRuleEditor) {
    RegisterRuleEditorFunct(&AnswerRule);
    ThenIn<QDialog>([] {
        Select(0, 0);
        Press(Dialog::kRule)->click();
        EXPECT_EQ(Row(0, 0)->text(0), "Rule Trigger: Rule=\"State = 1\"");
        EXPECT_EQ(Values()->findItems("State = 1", Qt::MatchExactly, 1).size(), 1);
        Accept();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 1);
    EXPECT_EQ(g_askedRule, "State > 2");
    EXPECT_EQ(g_askedAddress, CAddressOv(1, 1, 1)) << "of the object whose list it is";
}

TEST_F(ActionChooserTest, ByKeysAlone) {
    ThenIn<QDialog>([] {
        EXPECT_EQ(FrontWindow()->focusWidget(), Tree());
        PressKey(Tree(), Qt::Key_Down);
        PressKey(Tree(), Qt::Key_Down);
        EXPECT_EQ(Tree()->currentItem(), Row(0, 1));
        PressKey(Tree(), Qt::Key_Space, " ");
        EXPECT_EQ(Row(0, 1)->checkState(0), Qt::Unchecked);
        const unsigned stops[] = {Dialog::kRemove, Dialog::kType, Dialog::kAdd, Dialog::kValues, 1, 2};
        for (const unsigned stop : stops) {
            PressKey(FrontWindow()->focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(ControlId(*FrontWindow()->focusWidget()), stop);
        }
        PressKey(Tree(), Qt::Key_Return);
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 1);
    EXPECT_FALSE(host::ActionsOf(*host::BehavioursOf(List())[0])[0]->IsEnabled());
}

TEST_F(ActionChooserTest, NothingOverlapsInEitherDirection) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QApplication::setLayoutDirection(direction);
        ThenIn<QDialog>([&] {
            EXPECT_EQ(FrontWindow()->layoutDirection(), direction);
            ExpectNoOverlap(*FrontWindow());
            if (direction == Qt::RightToLeft) testing::SavePicture(FrontWindow(), "action_chooser_rtl.png");
            FrontWindow()->resize(FrontWindow()->minimumSizeHint());
            ExpectNoOverlap(*FrontWindow());
            Cancel();
        });
        SelectActions(List(), 0, eHostMapObject);
    }
}

TEST_F(ActionChooserTest, AListThatIsReadAgainMeanwhileStays) {
    ThenIn<QDialog>([this] {
        Row(0, 0)->setCheckState(0, Qt::Unchecked);
        XMLReader reader;
        CStringA unused;
        EXPECT_TRUE(reader.LoadFromString("<BehaviourList/>", unused));
        List().Load(reader);
        Select(0, 1);
        Select(1, 0);
        ThenIn<QMessageBox>([] { FrontWindow()->close(); });
        Accept();
    });
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 0);
    EXPECT_TRUE(List().IsEmpty());
}

TEST_F(ActionChooserTest, AnObjectsChoiceIsSavedInPlace) {
    const std::string list = host::SavedText(List());
    ThenIn<QDialog>([] {
        Select(0, 1);
        TypeValue("Text", "gone");
        Accept();
    });
    EXPECT_TRUE(m_chooser->EditObject("a"));
    EXPECT_EQ(File(), host::Replaced(kList, "'lost'", "'gone'"));
    EXPECT_EQ(host::SavedText(List()), list) << "the station takes it over when it reads the file again";
}

class Records final : public host::RunSink {
  public:
    void Write(const host::RunRecord& record) override { kinds.push_back(record["kind"]); }
    void Warn(const host::Problem& problem) override { kinds.push_back(problem.text); }
    std::vector<std::string> kinds;
};

TEST_F(ActionChooserTest, ARunningStationTakesTheChoiceOver) {
    m_written.WriteBehaviour("a", "<ButtonTrigger/>", "<WriteLogAction Text='lost'/>");
    Records records;
    host::RealPace pace;
    host::RunState state(m_site, records, pace);
    host::SiteReloader reloader(state);
    reloader.Look();
    records.kinds.clear();
    ThenIn<QDialog>([] {
        Select(0, 1);
        TypeValue("Text", "gone");
        Accept();
    });
    EXPECT_TRUE(m_chooser->EditObject("a"));
    reloader.Look();
    EXPECT_EQ(records.kinds, std::vector<std::string>{"reload"});
    const auto behaviours = host::BehavioursOf(List());
    ASSERT_EQ(behaviours.size(), 1u);
    EXPECT_EQ(host::ActionsOf(*behaviours[0])[0]->GetReflect(), "Text=\"gone\"");
}

TEST_F(ActionChooserTest, CancelWritesNothing) {
    const HostFileMarks marks = MarksOfHostFile(m_site.objects[0]->plan.behaviours);
    ThenIn<QDialog>([] {
        Press(Dialog::kRemove)->click();
        Cancel();
    });
    EXPECT_FALSE(m_chooser->EditObject("a"));
    EXPECT_EQ(MarksOfHostFile(m_site.objects[0]->plan.behaviours), marks);
    EXPECT_FALSE(m_chooser->EditObject("nobody"));
}

// Somebody else's change is not overwritten, and the choice is still there to be seen.
TEST_F(ActionChooserTest, AChoiceThatCannotBeSavedComesBack) {
    std::string told;
    ThenIn<QDialog>([&] {
        Row(0, 1)->setCheckState(0, Qt::Unchecked);
        m_written.Write("behaviours/a.xml", "<BehaviourList/>");
        ThenIn<QMessageBox>([&] {
            told = testing::Front<QMessageBox>()->text().toStdString();
            ThenIn<DialogWindow>([] {
                EXPECT_EQ(Row(0, 1)->checkState(0), Qt::Unchecked);
                Cancel();
            });
            FrontWindow()->close();
        });
        Accept();
    });
    EXPECT_FALSE(m_chooser->EditObject("a"));
    EXPECT_NE(told.find("a.xml: somebody else has changed it meanwhile"), std::string::npos) << told;
    EXPECT_EQ(File(), "<BehaviourList/>");
}

TEST_F(ActionChooserTest, AFileThatCannotBeReadIsTold) {
    m_written.Write("behaviours/a.xml", "<BehaviourList>");
    ThenIn<QMessageBox>([] {
        EXPECT_NE(testing::Front<QMessageBox>()->text().indexOf("a.xml:1"), -1);
        FrontWindow()->close();
    });
    EXPECT_FALSE(m_chooser->EditObject("a"));
}

TEST_F(ActionChooserTest, WithoutAChooserNobodyAnswers) {
    m_chooser.reset();
    EXPECT_EQ(SelectActions(List(), 0, eHostMapObject), 0);
}

TEST_F(ActionChooserTest, OtherThreadsHaveNone) {
    int answer = 1;
    std::thread([&] { answer = m_site.devices.SelectActions(List(), 0, eHostMapObject); }).join();
    EXPECT_EQ(answer, 0);
}

}  // namespace
}  // namespace brindle::map
