// The rule editor as the library opens it, over Qt's own windows: typed in, cancelled, from right to left and by keys
// alone. Its pictures go to the test's folder, from where scripts/dialog-pictures takes those of the documents.
#include "apps/brindle-map/rule_editor_registration.h"

#include <brindle/address/events.h>
#include <brindle/variables/hook/rule_editor.h>
#include <gtest/gtest.h>

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>

#include <thread>

#include "apps/brindle-map/dialog_test_kit.h"
#include "apps/brindle-map/rule_editor_dialog.h"
#include "apps/brindle-map/rule_field.h"
#include "host/device_table.h"

namespace brindle::map {
namespace {

using testing::FrontWindow;
using testing::PressKey;
using testing::ThenIn;

class RuleEditorTest : public ::testing::Test {
  protected:
    RuleEditorTest() {
        NeedDesktop();
        host::Problems problems;
        m_devices.Load(host::IniText("[0001:02:03]\nName=Transmitter A\nState=1\nPower=1000\nText=all well\n"
                                     "[0001:02:09]\nName=Transmitter B\nState=3\n",
                                     "f", problems),
                       "f", problems);
    }
    ~RuleEditorTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    // Opens the editor; the step runs in it.
    bool Edit(const CStringA& rule, std::function<void()> step) {
        ThenIn<QDialog>(std::move(step));
        return ShowRuleEditor(rule, &m_own, m_result);
    }
    static RuleField* Field() { return Numbered<RuleField>(RuleEditorDialog::kField); }
    static QTreeWidget* Names() { return Numbered<QTreeWidget>(RuleEditorDialog::kNames); }
    static std::string Verdict() {
        return Numbered<QLabel>(RuleEditorDialog::kVerdict)->text().toStdString();
    }
    static std::string Now() { return Numbered<QLineEdit>(RuleEditorDialog::kNow)->text().toStdString(); }
    static std::string Polish() {
        return Numbered<QLineEdit>(RuleEditorDialog::kPolish)->text().toStdString();
    }
    static void Type(const QString& text) {
        Field()->selectAll();
        if (text.isEmpty()) PressKey(Field(), Qt::Key_Delete);
        for (const QChar letter : text) PressKey(Field(), 0, letter);
    }
    // The character that is marked; -1: none.
    static int Marked() {
        const auto marks = Field()->extraSelections();
        return marks.isEmpty() ? -1 : marks[0].cursor.selectionStart();
    }
    static std::string Row(int row) {
        std::string text;
        for (int i = 0; i < 4; ++i)
            text += (i ? "|" : "") + Names()->topLevelItem(row)->text(i).toStdString();
        return text;
    }

    host::DeviceTable m_devices;
    CAddressOv m_own{1, 2, 3};
    RuleEditorRegistration m_editor{m_devices};
    CStringA m_result = "untouched";
};

TEST_F(RuleEditorTest, ShowsAndAcceptsARule) {
    EXPECT_TRUE(Edit("Power > 500 & State = 1", [] {
        EXPECT_EQ(Verdict(), "The rule can be evaluated.");
        EXPECT_EQ(Polish(), "Power 500 > State 1 = &");
        Type("Power > 500 & (0001:02:09,State < 3)");
        EXPECT_EQ(Names()->topLevelItemCount(), 2);
        EXPECT_EQ(Row(0), "Power|0001:02:03|Int|1000");
        EXPECT_EQ(Row(1), "0001:02:09,State|0001:02:09|Int|3");
        EXPECT_EQ(Polish(), "Power 500 > 0001:02:09,State 3 < &");
        EXPECT_EQ(Now(), "FALSE (Bool): a condition does not hold");
        EXPECT_EQ(Marked(), -1);
        testing::SavePicture(FrontWindow(), "rule_editor.png");
        Button(QDialogButtonBox::Ok)->click();
    }));
    EXPECT_EQ(m_result, "Power > 500 & (0001:02:09,State < 3)");
}

TEST_F(RuleEditorTest, ABrokenRuleIsMarkedAndNotAccepted) {
    EXPECT_FALSE(Edit("Power > 500", [] {
        const QColor normal = TextColour(RuleEditorDialog::kNamesText);
        Type("Power > & State = 1");
        EXPECT_EQ(Verdict(), "Wrong at character 7: an operand is missing.");
        EXPECT_EQ(Marked(), 6);
        EXPECT_EQ(Field()->accessibleDescription().toStdString(), Verdict());
        EXPECT_FALSE(Button(QDialogButtonBox::Ok)->isEnabled());
        for (const unsigned text :
             {RuleEditorDialog::kNamesText, RuleEditorDialog::kPolishText, RuleEditorDialog::kNowText})
            EXPECT_NE(TextColour(text), normal) << text;
        EXPECT_EQ(Names()->topLevelItemCount(), 0);
        EXPECT_EQ(Polish() + Now(), "");
        testing::SavePicture(FrontWindow(), "rule_editor_broken.png");
        PressKey(Field(), Qt::Key_Return);
        EXPECT_TRUE(FrontWindow()->isVisible()) << "Enter accepts no broken rule";
        Type("State = 1");
        EXPECT_EQ(Verdict(), "The rule can be evaluated.");
        EXPECT_EQ(TextColour(RuleEditorDialog::kNamesText), normal);
        EXPECT_TRUE(Button(QDialogButtonBox::Ok)->isEnabled());
        PressKey(Field(), Qt::Key_Escape);
    }));
    EXPECT_EQ(m_result, "untouched");
}

TEST_F(RuleEditorTest, MarksTheLastCharacterWhereTheTextEnds) {
    Edit("State = 1", [] {
        Type("State = (");
        EXPECT_EQ(Verdict(), "Wrong at character 9: \"(\" without \")\".");
        EXPECT_EQ(Marked(), 8);
        Type("");
        EXPECT_EQ(Verdict(), "Wrong at character 1: the rule is empty.");
        EXPECT_EQ(Marked(), -1);
        Button(QDialogButtonBox::Cancel)->click();
    });
}

TEST_F(RuleEditorTest, FollowsTheStationWhileItIsOpen) {
    Edit("State = 3", [this] {
        EXPECT_EQ(Row(0), "State|0001:02:03|Int|1");
        QTreeWidgetItem* const row = Names()->topLevelItem(0);
        const CStateEvent* event =
            new CStateChangedEvent(CAddressOv(1, 2, 3), false, 3, "", "", "", "", "", "");
        m_devices.Take(*event);
        event->Release();
        testing::ThenWhen([] { return Now() == "TRUE (Bool): a condition holds"; },
                          [row] {
                              EXPECT_EQ(Row(0), "State|0001:02:03|Int|3");
                              EXPECT_EQ(Names()->topLevelItem(0), row);
                              FrontWindow()->close();
                          });
    });
    EXPECT_EQ(m_result, "untouched");
}

TEST_F(RuleEditorTest, ByKeysAlone) {
    EXPECT_TRUE(Edit("State = 1", [] {
        EXPECT_EQ(FrontWindow()->focusWidget(), Field());
        PressKey(FrontWindow()->focusWidget(), Qt::Key_End);
        PressKey(FrontWindow()->focusWidget(), 0, "2");
        const char* const stops[] = {"QTreeWidget", "QLineEdit", "QLineEdit", "QPushButton", "QPushButton"};
        for (const char* const stop : stops) {
            PressKey(FrontWindow()->focusWidget(), Qt::Key_Tab);
            EXPECT_STREQ(FrontWindow()->focusWidget()->metaObject()->className(), stop);
        }
        PressKey(FrontWindow()->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(FrontWindow()->focusWidget(), Field());
        PressKey(FrontWindow()->focusWidget(), Qt::Key_Return);
    }));
    EXPECT_EQ(m_result, "State = 12");
}

TEST_F(RuleEditorTest, NothingOverlapsInEitherDirection) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QApplication::setLayoutDirection(direction);
        Edit("Power > 500 & nobody = 1", [&] {
            EXPECT_EQ(FrontWindow()->layoutDirection(), direction);
            EXPECT_EQ(Field()->layoutDirection(), Qt::LeftToRight);
            ExpectNoOverlap(*FrontWindow());
            FrontWindow()->resize(FrontWindow()->minimumSizeHint());
            ExpectNoOverlap(*FrontWindow());
            if (direction == Qt::RightToLeft) testing::SavePicture(FrontWindow(), "rule_editor_rtl.png");
            FrontWindow()->close();
        });
    }
}

// Bytes that a rule passes over, line breaks and blanks that do not break among them, come back as they were.
TEST_F(RuleEditorTest, AnUnchangedRuleComesBackByteForByte) {
    const CStringA rule = "State\r\n = \x01 1\xA0\x81";
    EXPECT_TRUE(Edit(rule, [] { Button(QDialogButtonBox::Ok)->click(); }));
    EXPECT_EQ(m_result, rule);
    const CStringA lines = "State\n = 1";
    EXPECT_TRUE(Edit(lines, [] {
        PressKey(Field(), 0, "0");
        Button(QDialogButtonBox::Ok)->click();
    }));
    EXPECT_EQ(m_result, "State\n = 10");
}

TEST_F(RuleEditorTest, ACharacterWithoutAByteIsNotLost) {
    Edit("State = 1", [] {
        Type(QString::fromUtf8("Text = \"\xC3\xA9\xCE\xA9\""));
        EXPECT_EQ(Verdict(), "Wrong at character 10: no byte of the station's code page is this character.");
        EXPECT_EQ(Marked(), 9);
        EXPECT_FALSE(Button(QDialogButtonBox::Ok)->isEnabled());
        Type(QString::fromUtf8("Text = \"\xC3\xA9\""));
        EXPECT_TRUE(Button(QDialogButtonBox::Ok)->isEnabled());
        Button(QDialogButtonBox::Ok)->click();
    });
    EXPECT_EQ(m_result, "Text = \"\xE9\"");
}

TEST_F(RuleEditorTest, ATextTooLongIsNeitherPastedNorChanged) {
    Edit("State = 1", [] {
        QApplication::clipboard()->setText(QString(10'000'000, '('));
        Field()->paste();
        EXPECT_EQ(Verdict(), "The text is too long for a rule: nothing was pasted.");
        EXPECT_EQ(Field()->Shown(), "State = 1");
        QApplication::clipboard()->setText(" + 1");
        Field()->paste();
        EXPECT_EQ(Field()->Shown(), "State = 1 + 1");
        FrontWindow()->close();
    });
    Edit(CStringA(std::string(100'000, '1')), [] {
        EXPECT_EQ(Verdict(), "Wrong: the rule is longer than 65536 bytes.");
        EXPECT_TRUE(Field()->isReadOnly());
        EXPECT_FALSE(Button(QDialogButtonBox::Ok)->isEnabled());
        Button(QDialogButtonBox::Cancel)->click();
    });
    EXPECT_EQ(m_result, "untouched");
}

TEST_F(RuleEditorTest, TextsOfDevicesAreNoMarkUp) {
    m_devices.SetField(0x010203, "Text", "<b>bold</b>");
    Edit("Text = \"x\"", [] {
        EXPECT_EQ(Row(0), "Text|0001:02:03|String|<b>bold</b>");
        FrontWindow()->close();
    });
}

TEST_F(RuleEditorTest, WithoutAnAddressANameSaysSo) {
    ThenIn<QDialog>([] {
        EXPECT_EQ(Row(0),
                  "State||String|\"State\" is a field of the object's own device, but the object has no full "
                  "address");
        Button(QDialogButtonBox::Ok)->click();
    });
    EXPECT_TRUE(ShowRuleEditor("State = 1", nullptr, m_result));
}

TEST_F(RuleEditorTest, ThereIsNoneOnceItsStationIsGone) {
    {
        const host::DeviceTable other;
        const RuleEditorRegistration later(other);
        Edit("State = 1", [] {
            EXPECT_EQ(
                Row(0),
                "State|0001:02:03|String|\"State\" asks for the object's own device, which does not exist");
            FrontWindow()->close();
        });
    }
    EXPECT_FALSE(ShowRuleEditor("State = 1", &m_own, m_result));
    EXPECT_EQ(m_result, "untouched");
}

TEST_F(RuleEditorTest, OtherThreadsHaveNoEditor) {
    bool accepted = true;
    std::thread([&] { accepted = ShowRuleEditor("State = 1", &m_own, m_result); }).join();
    EXPECT_FALSE(accepted);
}

}  // namespace
}  // namespace brindle::map
