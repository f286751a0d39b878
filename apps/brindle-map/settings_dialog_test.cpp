// The settings as people use them: pages, grey texts, what is refused, what is saved. Pictures go to the test's folder,
// from where scripts/dialog-pictures takes those of the documents.
#include "apps/brindle-map/settings_dialog.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QTabWidget>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "apps/brindle-map/dialog_test_kit.h"
#include "brindle/platform/qt/sheet_window.h"
#include "host/written_site_test.h"

namespace brindle::map {
namespace {

using testing::Front;
using testing::PressKey;
using testing::ThenIn;
using testing::TypeText;

constexpr const char* kSkin =
    "<skin>\n <!-- dark -->\n <default><button bordercolour='#1E2329' fillcoloura='#3A424C' "
    "fillcolourb='#242A31'/>"
    "<TimeFont1 colour='#E8ECEF'/></default>\n <pressed><mark colour='#FFB000'/></pressed>\n</skin>\n";
constexpr const char* kMacros = "; ours\n[SearchPath]\nTools = C:\\Station\\Tools\nPictures = C:\\Pictures\n";
constexpr const char* kDevices =
    "; all\n[0001:01:01]\nName = Transmitter A\nAgent = h\nPoll = 2000\nPoll.P = 1.3.6\n"
    "[0001:01:02]\nName = Transmitter B\nAgent = h\nPoll = 3000\nPoll.P = 1.3.6\n";

class SettingsTest : public ::testing::Test {
  protected:
    SettingsTest() {
        NeedDesktop();
        m_site.WriteObjects({"a"});
        m_site.WriteBehaviour("a", "<ButtonTrigger/>", "");
        m_site.Write("site.ini",
                     "[Site]\nName=Studio North\nDevices=devices.ini\nMacros=macros.ini\nSkin=skin.xml\n"
                     "[Object a]\n");
        m_site.Write("skin.xml", kSkin);
        m_site.Write("macros.ini", kMacros);
        m_site.Write("devices.ini", kDevices);
        ReadPlan();
    }
    ~SettingsTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }
    void ReadPlan() {
        host::Problems problems;
        EXPECT_TRUE(ReadSitePlan(m_site.Folder(), m_plan, problems));
    }

    int Run(std::function<void()> step) {
        ThenIn<SheetWindow>(std::move(step));
        return ShowSettings(m_plan, nullptr);
    }
    std::string Text(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_site.Path(name), std::ios::binary).rdbuf();
        return text.str();
    }
    static QTabWidget& Tabs() { return *Front<SheetWindow>()->findChild<QTabWidget*>(); }
    template <class T>
    static T* On(unsigned controlId) {
        auto* const page = dynamic_cast<DialogWindow*>(Tabs().currentWidget());
        T* const control = page ? dynamic_cast<T*>(page->Control(controlId)) : nullptr;
        EXPECT_NE(control, nullptr) << controlId;
        return control;
    }
    static void GoTo(int page) { Tabs().setCurrentIndex(page); }
    static bool IsGrey(unsigned textId) {
        auto* const text = On<QLabel>(textId);
        static_cast<void>(text->grab());
        return text->palette().color(QPalette::Active, QPalette::WindowText) !=
               QApplication::palette().color(QPalette::Active, QPalette::WindowText);
    }
    static std::string Fault() { return On<QLabel>(kFault)->text().toStdString(); }
    static void ExpectUntouched(const SettingsTest& test) {
        EXPECT_EQ(test.Text("skin.xml"), kSkin);
        EXPECT_EQ(test.Text("macros.ini"), kMacros);
        EXPECT_EQ(test.Text("devices.ini"), kDevices);
    }

    host::WrittenSite m_site;
    host::SitePlan m_plan;
};

TEST_F(SettingsTest, AColourOfTheSkinThroughThePicker) {
    EXPECT_EQ(Run([] {
                  auto* const list = On<QListWidget>(kColours);
                  ASSERT_EQ(list->count(), 5);
                  EXPECT_EQ(list->item(0)->text().toStdString(), "Button, border colour (Normal): #1E2329");
                  EXPECT_EQ(list->item(4)->text().toStdString(), "Mark, colour (Pressed): #FFB000");
                  EXPECT_EQ(On<QLabel>(kState)->text(), "Normal");
                  PressKey(list, Qt::Key_End);
                  EXPECT_EQ(On<QLabel>(kState)->text(), "Pressed");
                  EXPECT_FALSE(Button(QDialogButtonBox::Apply)->isEnabled());
                  ThenIn<QColorDialog>([] {
                      auto* const picker = Front<QColorDialog>();
                      EXPECT_EQ(picker->currentColor(), QColor(0xFF, 0xB0, 0));
                      picker->setCurrentColor(QColor(0x12, 0x34, 0x56));
                      Button(QDialogButtonBox::Ok)->click();
                  });
                  On<QPushButton>(kChange)->click();
                  EXPECT_EQ(list->item(4)->text().toStdString(), "Mark, colour (Pressed): #123456");
                  EXPECT_TRUE(Button(QDialogButtonBox::Apply)->isEnabled());
                  testing::SavePicture(Front<SheetWindow>(), "map_settings_skin.png");
                  Button(QDialogButtonBox::Ok)->click();
              }),
              1);
    std::string expected = kSkin;
    expected.replace(expected.find("#FFB000"), 7, "#123456");
    EXPECT_EQ(Text("skin.xml"), expected);
    EXPECT_EQ(Text("devices.ini"), kDevices);
}

TEST_F(SettingsTest, TextsAreGreyWhileNothingIsPolled) {
    EXPECT_EQ(Run([] {
                  GoTo(2);
                  EXPECT_FALSE(IsGrey(kPeriodText));
                  testing::SavePicture(Front<SheetWindow>(), "map_settings_polling.png");
                  PressKey(On<QCheckBox>(kPolled), Qt::Key_Space, " ");
                  for (const unsigned text : {kPeriodText, kTimeoutText, kRetriesText})
                      EXPECT_TRUE(IsGrey(text)) << text;
                  EXPECT_FALSE(IsGrey(kDeviceText));
                  EXPECT_FALSE(On<QLineEdit>(kPeriod)->isEnabled());
                  testing::SavePicture(Front<SheetWindow>(), "map_settings_polling_off.png");
                  On<QComboBox>(kDevice)->setFocus();
                  PressKey(On<QComboBox>(kDevice), Qt::Key_Down);
                  EXPECT_EQ(On<QLineEdit>(kPeriod)->text(), "3000");
                  EXPECT_FALSE(IsGrey(kPeriodText)) << "of this one";
                  TypeText(On<QLineEdit>(kPeriod), "750");
                  Button(QDialogButtonBox::Apply)->click();
                  EXPECT_FALSE(Button(QDialogButtonBox::Apply)->isEnabled());
                  TypeText(On<QLineEdit>(kPeriod), "800");
                  Front<SheetWindow>()->reject();
              }),
              2);
    std::string expected = kDevices;
    expected.replace(expected.find("3000"), 4, "750");
    expected.insert(expected.find("[0001:01:02]"), "Polled = FALSE\n");
    EXPECT_EQ(Text("devices.ini"), expected) << "what was applied, and not what was cancelled";
}

TEST_F(SettingsTest, WhatIsWrongIsToldAndKeepsThePageInFront) {
    EXPECT_EQ(Run([this] {
                  GoTo(2);
                  TypeText(On<QLineEdit>(kPeriod), "5 s");
                  EXPECT_EQ(Fault(), "Period: \"5 s\" is no whole number from 100 to 86400000.");
                  testing::SavePicture(Front<SheetWindow>(), "map_settings_fault.png");
                  GoTo(0);
                  EXPECT_EQ(Tabs().currentIndex(), 2);
                  PressKey(On<QComboBox>(kDevice), Qt::Key_Down);
                  EXPECT_EQ(On<QComboBox>(kDevice)->currentIndex(), 1);
                  Button(QDialogButtonBox::Ok)->click();
                  EXPECT_EQ(On<QComboBox>(kDevice)->currentIndex(), 0) << "there it is wrong";
                  EXPECT_EQ(On<QLineEdit>(kPeriod)->text(), "5 s") << "and nothing is lost";
                  ExpectUntouched(*this);
                  TypeText(On<QLineEdit>(kPeriod), "5000");
                  EXPECT_EQ(Fault(), "");
                  Button(QDialogButtonBox::Ok)->click();
              }),
              1);
    EXPECT_NE(Text("devices.ini").find("Poll = 5000\n"), std::string::npos);
}

TEST_F(SettingsTest, DirectoriesOfTheSite) {
    EXPECT_EQ(Run([] {
                  GoTo(1);
                  testing::SavePicture(Front<SheetWindow>(), "map_settings_directories.png");
                  TypeText(On<QLineEdit>(kLast), QString(260, 'x'));
                  EXPECT_EQ(Fault(), "LastSchematicDir: the directory has 260 characters, more than 259.");
                  TypeText(On<QLineEdit>(kLast), "C:\\Maps");
                  EXPECT_EQ(Fault(), "");
                  TypeText(On<QLineEdit>(kLast + 1), QString::fromUtf8("\xE6\xBC\xA2"));
                  EXPECT_EQ(Fault(), "The station's code page has no such character: it was not taken.");
                  EXPECT_EQ(On<QLineEdit>(kPath)->text(), "C:\\Station\\Tools");
                  PressKey(On<QComboBox>(kPathName), Qt::Key_Down);
                  EXPECT_EQ(On<QLineEdit>(kPath)->text(), "C:\\Pictures");
                  TypeText(On<QLineEdit>(kPath), "D:\\Pictures;E:\\");
                  Button(QDialogButtonBox::Ok)->click();
              }),
              1);
    EXPECT_EQ(Text("macros.ini"),
              "; ours\n[SearchPath]\nTools = C:\\Station\\Tools\nPictures = D:\\Pictures;E:\\\n"
              "\n[Directories]\nLastSchematicDir=C:\\Maps\n");
}

TEST_F(SettingsTest, CancellingWritesNothing) {
    EXPECT_EQ(Run([] {
                  GoTo(2);
                  TypeText(On<QLineEdit>(kPeriod), "500");
                  GoTo(1);
                  TypeText(On<QLineEdit>(kLast), "C:\\Maps");
                  Button(QDialogButtonBox::Cancel)->click();
              }),
              2);
    ExpectUntouched(*this);
}

TEST_F(SettingsTest, ASiteWithNothingToSetSaysSo) {
    m_site.Write("site.ini", "[Site]\n[Object a]\n");
    ReadPlan();
    EXPECT_EQ(Run([] {
                  const std::vector<std::pair<unsigned, const char*>> pages = {
                      {kColoursText, "Skin"}, {kPathText, "Macros"}, {kDeviceText, "Devices"}};
                  for (std::size_t i = 0; i < pages.size(); ++i) {
                      GoTo(static_cast<int>(i));
                      EXPECT_TRUE(IsGrey(pages[i].first));
                      EXPECT_EQ(Fault(), "The site names no \"" + std::string(pages[i].second) +
                                             "\" file in its site.ini.");
                  }
                  Button(QDialogButtonBox::Ok)->click();
              }),
              1);
}

TEST_F(SettingsTest, AFileThatCannotBeWrittenIsToldAndTheSheetStays) {
    EXPECT_EQ(Run([this] {
                  GoTo(2);
                  TypeText(On<QLineEdit>(kPeriod), "500");
                  std::filesystem::rename(m_site.Path("devices.ini"), m_site.Path("away.ini"));
                  ThenIn<QMessageBox>([] {
                      EXPECT_TRUE(Front<QMessageBox>()->text().startsWith("Not saved: "));
                      Front<QMessageBox>()->accept();
                  });
                  Button(QDialogButtonBox::Ok)->click();
                  EXPECT_TRUE(Front<SheetWindow>()->isVisible());
                  EXPECT_EQ(On<QLineEdit>(kPeriod)->text(), "500");
                  std::filesystem::rename(m_site.Path("away.ini"), m_site.Path("devices.ini"));
                  Button(QDialogButtonBox::Ok)->click();
              }),
              1);
    EXPECT_NE(Text("devices.ini").find("Poll = 500\n"), std::string::npos);
}

TEST_F(SettingsTest, FromRightToLeftNothingOverlaps) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Run([] {
        for (int page = 0; page < 3; ++page) {
            GoTo(page);
            QCoreApplication::sendPostedEvents();
            ExpectNoOverlap(*Tabs().currentWidget());
            testing::SavePicture(Front<SheetWindow>(), "map_settings_rtl_" + QString::number(page) + ".png");
        }
        Front<SheetWindow>()->reject();
    });
}

TEST_F(SettingsTest, ByKeysAlone) {
    EXPECT_EQ(
        Run([] {
            auto* const sheet = Front<SheetWindow>();
            GoTo(2);
            On<QComboBox>(kDevice)->setFocus();
            std::vector<const QWidget*> reached;
            for (int i = 0; i < 12; ++i) {
                QWidget* const now = sheet->focusWidget();
                ASSERT_NE(now, nullptr);
                reached.push_back(now);
                if (now) PressKey(now, Qt::Key_Tab, "\t");
            }
            for (const unsigned control : {kDevice, kPolled, kPeriod, kTimeout, kRetries})
                EXPECT_NE(std::find(reached.begin(), reached.end(), On<QWidget>(control)), reached.end())
                    << control;
            EXPECT_NE(std::find(reached.begin(), reached.end(), Button(QDialogButtonBox::Ok)), reached.end());
            PressKey(sheet, Qt::Key_Escape);
        }),
        2);
    ExpectUntouched(*this);
}

}  // namespace
}  // namespace brindle::map
