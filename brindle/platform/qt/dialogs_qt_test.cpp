// The contract of dialogs over Qt's windows, and what only real windows have: colours that are drawn, keys, directions.
#include "brindle/platform/qt/dialogs_qt.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabWidget>

#include "brindle/dialogs/themed_dlg.h"
#include "brindle/framework/ui/property_sheet.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/dialog_window.h"
#include "brindle/platform/qt/sheet_window.h"
#include "brindle/platform/qt/widget_test_application.h"
#include "brindle/platform/qt/widget_text.h"
#include "brindle/platform/service.h"
#include "testing/dialogs_contract.h"

namespace brindle {
namespace {

using testing::Front;
using testing::NeedWidgetApplication;
using testing::Then;

template <class T>
T* Numbered(T* control, unsigned controlId) {
    SetControlId(*control, controlId);
    return control;
}

void FillRigDialog(QWidget& window) {
    using namespace testing;
    window.setWindowTitle("Title");
    auto* const form = new QFormLayout(&window);
    form->addRow(Numbered(new QLabel("Text"), kRigText));
    form->addRow(Numbered(new QLineEdit("edit"), kRigEdit));
    form->addRow(Numbered(new QCheckBox("Check"), kRigCheck));
    form->addRow(Numbered(new QPushButton("Press"), kRigButton));
    form->addRow(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
}

void FillRigPage(QWidget& window) {
    window.setWindowTitle("Page");
    auto* const form = new QFormLayout(&window);
    form->addRow("&Name", Numbered(new QLineEdit("edit"), testing::kRigEdit));
}

class QtRig final : public testing::DialogsRig {
  public:
    QtRig() {
        NeedWidgetApplication();
        RegisterDialogTemplate(testing::kRigDialog, &FillRigDialog);
        RegisterDialogTemplate(testing::kRigPage, &FillRigPage);
        RegisterDialogCaption(testing::kRigCaption, "Captioned");
    }
    ~QtRig() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    Dialogs& Service() override { return QtDialogs(); }
    void Then(std::function<void()> step) override { testing::Then(std::move(step)); }
    void Click(HWND control) override { qobject_cast<QAbstractButton*>(WidgetOf(control))->click(); }
    void Type(HWND control, std::string_view text) override {
        testing::TypeText(WidgetOf(control),
                          QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    }
    void Close(HWND window) override { WidgetOf(window)->close(); }
    void TurnTo(std::size_t page) override { Tabs()->setCurrentIndex(static_cast<int>(page)); }
    void PressInSheet(unsigned button) override {
        using Box = QDialogButtonBox;
        const auto which = button == kControlOk       ? Box::Ok
                           : button == kControlCancel ? Box::Cancel
                                                      : Box::Apply;
        QPushButton* const found = Front<SheetWindow>()->findChild<Box*>()->button(which);
        EXPECT_TRUE(found->isEnabled());
        found->click();
    }
    std::size_t FrontPage() override { return static_cast<std::size_t>(Tabs()->currentIndex()); }
    std::uint32_t DrawnColour(HWND control) override {
        QWidget* const widget = WidgetOf(control);
        static_cast<void>(widget->grab());
        return ReferenceOf(widget->palette().color(QPalette::Active, QPalette::WindowText));
    }

  private:
    static QTabWidget* Tabs() { return Front<SheetWindow>()->findChild<QTabWidget*>(); }
};

std::unique_ptr<testing::DialogsRig> MakeQtRig() {
    return std::make_unique<QtRig>();
}

class QtDialogsTest : public ::testing::Test {
  protected:
    QtDialogsTest() {
        NeedWidgetApplication();
        RegisterDialogTemplate(testing::kRigDialog, &FillRigDialog);
        RegisterDialogTemplate(testing::kRigPage, &FillRigPage);
    }
    ~QtDialogsTest() override { RegisterDialogTemplate(kTemplate, nullptr); }
    static constexpr unsigned kTemplate = 7300, kFirst = 10, kSecond = 11;
    ScopedService<Dialogs> m_installed{&SetDialogs, QtDialogs()};
};

// The colour of a text on a light ground, where its strokes cover whole pixels.
QString Ink(QWidget* label) {
    const QImage image = label->grab().toImage();
    QRgb darkest = 0xFFFFFFFF;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < qGray(darkest)) darkest = image.pixel(x, y);
    return QColor(darkest).name();
}

TEST_F(QtDialogsTest, AGreyedTextIsDrawnGreyBesideANormalOne) {
    RegisterDialogTemplate(kTemplate, [](QWidget& window) {
        window.setWindowTitle("Polling");
        auto* const form = new QFormLayout(&window);
        QFont large = window.font();
        large.setPointSize(40);
        large.setBold(true);
        for (const unsigned controlId : {kFirst, kSecond}) {
            auto* const label = Numbered(new QLabel(controlId == kFirst ? "Device" : "Period"), controlId);
            label->setFont(large);
            form->addRow(label, new QLineEdit("value"));
        }
    });
    CThemedDlg dialog(kTemplate, nullptr);
    ASSERT_TRUE(dialog.Create(kTemplate));
    dialog.EnableText(kFirst, 0);
    dialog.ShowWindow();
    auto* const window = WidgetOf(dialog.GetSafeHwnd());
    auto* const first = WidgetOf(dialog.GetDlgItem(kFirst)->GetSafeHwnd());
    auto* const second = WidgetOf(dialog.GetDlgItem(kSecond)->GetSafeHwnd());
    testing::SavePicture(window, "greyed_text.png");
    const auto reference =
        Midpoint(QtDialogs().SystemColour(kColourButtonFace), QtDialogs().SystemColour(kColourWindowText));
    const QString grey = ColourOf(reference).name();
    const QString normal = QApplication::palette().color(QPalette::WindowText).name();
    EXPECT_EQ(Ink(first), grey);
    EXPECT_EQ(Ink(second), normal);
    EXPECT_TRUE(first->isEnabled());
    dialog.EnableText(kFirst, 1);
    EXPECT_EQ(Ink(first), normal);
}

TEST_F(QtDialogsTest, AGreyedTextFollowsTheSystemsColours) {
    CThemedDlg dialog(testing::kRigDialog, nullptr);
    ASSERT_TRUE(dialog.Create(testing::kRigDialog));
    dialog.EnableText(testing::kRigText, 0);
    QWidget* const label = WidgetOf(dialog.GetDlgItem(testing::kRigText)->GetSafeHwnd());
    const QPalette before = QApplication::palette();
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Button, Qt::black);
    QApplication::setPalette(dark);
    static_cast<void>(label->grab());
    EXPECT_EQ(label->palette().color(QPalette::WindowText).name(), "#808080");
    QApplication::setPalette(before);
}

TEST_F(QtDialogsTest, AWindowOfTheHostMayOwnADialogAndTakeItAlong) {
    auto host = std::make_unique<QWidget>();
    testing::RecordedEvents events;
    const HWND window = QtDialogs().Create(testing::kRigDialog, HandleOf(host.get()), events);
    EXPECT_EQ(WidgetOf(window)->parentWidget(), host.get());
    host.reset();
    EXPECT_EQ(events.gone, 1);
    EXPECT_EQ(WidgetOf(window), nullptr);
}

TEST_F(QtDialogsTest, ARunEndsWhenItsOwnerGoes) {
    auto host = std::make_unique<QWidget>();
    testing::RecordedEvents events;
    const HWND window = QtDialogs().Create(testing::kRigDialog, HandleOf(host.get()), events);
    Then([&] { host.reset(); });
    EXPECT_EQ(QtDialogs().RunModal(window), static_cast<int>(kControlCancel));
    EXPECT_EQ(events.gone, 1);
    testing::RecordedSheet sheet;
    host = std::make_unique<QWidget>();
    const HWND page = QtDialogs().Create(testing::kRigPage, nullptr, events);
    Then([&] { host.reset(); });
    EXPECT_EQ(QtDialogs().RunSheet(HandleOf(host.get()), "Sheet", {{page, ""}}, 0, sheet),
              static_cast<int>(kControlCancel));
    EXPECT_NE(WidgetOf(page), nullptr) << "pages stay their maker's";
    QtDialogs().Destroy(page);
}

TEST_F(QtDialogsTest, EveryKindOfControlTellsWhatTheUserDoes) {
    RegisterDialogTemplate(kTemplate, [](QWidget& window) {
        auto* const form = new QFormLayout(&window);
        form->addRow(Numbered(new QPlainTextEdit, 1001));
        auto* const choice = Numbered(new QComboBox, 1002);
        choice->addItems({"a", "b"});
        form->addRow(choice);
        auto* const list = Numbered(new QListWidget, 1003);
        list->addItems({"a", "b"});
        form->addRow(list);
        form->addRow(Numbered(new QSpinBox, 1004));
        auto* const group = Numbered(new QGroupBox("Group"), 1005);
        group->setCheckable(true);
        form->addRow(group);
        auto* const free = Numbered(new QComboBox, 1006);
        free->setEditable(true);
        form->addRow(free);
    });
    testing::RecordedEvents events;
    const HWND window = QtDialogs().Create(kTemplate, nullptr, events);
    const auto at = [&](unsigned controlId) { return WidgetOf(QtDialogs().Control(window, controlId)); };
    const auto set = [&](unsigned controlId, const char* text) {
        QtDialogs().SetText(QtDialogs().Control(window, controlId), text);
        EXPECT_EQ(QtDialogs().Text(QtDialogs().Control(window, controlId)), text);
    };
    set(1001, "two\nlines");
    set(1002, "b");
    set(1004, "7");
    set(1005, "Renamed");
    set(1006, "anything");
    QtDialogs().SetChecked(QtDialogs().Control(window, 1005), false);
    EXPECT_FALSE(QtDialogs().IsChecked(QtDialogs().Control(window, 1005)));
    EXPECT_EQ(QtDialogs().Text(QtDialogs().Control(window, 1003)), "") << "a list has no text";
    EXPECT_TRUE(events.commands.empty()) << "what the program sets is no doing of the user";
    testing::PressKey(at(1001), 0, "x");
    testing::PressKey(at(1002), Qt::Key_Up);
    testing::PressKey(at(1003), Qt::Key_Down);
    testing::PressKey(at(1004), Qt::Key_Up);
    testing::PressKey(at(1005), Qt::Key_Space, " ");
    testing::PressKey(qobject_cast<QComboBox*>(at(1006))->lineEdit(), 0, "x");
    for (const unsigned controlId : {1001u, 1002u, 1003u, 1004u, 1005u, 1006u}) {
        SCOPED_TRACE(controlId);
        EXPECT_NE(std::find(events.commands.begin(), events.commands.end(), controlId),
                  events.commands.end());
    }
    QtDialogs().Destroy(window);
}

TEST_F(QtDialogsTest, KeysAloneFillASheetIn) {
    class Page : public CPropertyPage {
      public:
        Page() : CPropertyPage(testing::kRigPage) {}
        CStringA name;

      protected:
        void OnOK() override { name = GetDlgItemTextA(testing::kRigEdit); }
    };
    Page first, second;
    CPropertySheet sheet("Sheet");
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    Then([&] {
        auto* const window = Front<SheetWindow>();
        auto* const tabs = window->findChild<QTabWidget*>();
        testing::PressKey(tabs, Qt::Key_Tab, {}, Qt::ControlModifier);
        EXPECT_EQ(tabs->currentIndex(), 1);
        QWidget* const edit = WidgetOf(second.GetDlgItem(testing::kRigEdit)->GetSafeHwnd());
        testing::TypeText(edit, "typed");
        testing::SavePicture(window, "sheet.png");
        testing::PressKey(edit, Qt::Key_Return);
    });
    EXPECT_EQ(sheet.DoModal(), 1) << "Enter is OK, within a page too";
    EXPECT_EQ(second.name, "typed");
    Then([&] {
        testing::PressKey(WidgetOf(first.GetDlgItem(testing::kRigEdit)->GetSafeHwnd()), Qt::Key_Escape);
    });
    EXPECT_EQ(sheet.DoModal(), 2) << "Escape cancels the sheet, not the page";
}

TEST_F(QtDialogsTest, TextsOfDevicesAreNoMarkUp) {
    testing::RecordedEvents events;
    const HWND window = QtDialogs().Create(testing::kRigDialog, nullptr, events);
    const HWND text = QtDialogs().Control(window, testing::kRigText);
    QtDialogs().SetText(text, "<img src='file:///etc/passwd'>");
    EXPECT_EQ(qobject_cast<QLabel*>(WidgetOf(text))->textFormat(), Qt::PlainText);
    QtDialogs().Destroy(window);
}

TEST_F(QtDialogsTest, ColoursAreThePalettes) {
    const QPalette palette = QApplication::palette();
    const auto reference = [&](QPalette::ColorRole role) { return ReferenceOf(palette.color(role)); };
    EXPECT_EQ(QtDialogs().SystemColour(15), reference(QPalette::Button));
    EXPECT_EQ(QtDialogs().SystemColour(8), reference(QPalette::WindowText));
    EXPECT_EQ(QtDialogs().SystemColour(20), reference(QPalette::Light));
    EXPECT_EQ(QtDialogs().SystemColour(16), reference(QPalette::Dark));
    EXPECT_EQ(QtDialogs().SystemColour(21), reference(QPalette::Shadow));
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Qt, DialogsContract, ::testing::Values(&MakeQtRig));
}

}  // namespace brindle
