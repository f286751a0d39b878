// The whole way from the library's doors to windows and back, as a host goes it; what the user sees is saved to the
// test's folder, from where scripts/dialog-pictures takes the documents' pictures.
#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>

#include "brindle/behaviour/action_files.h"
#include "brindle/dialogs/select_colour.h"
#include "brindle/dialogs/themed_property_page.h"
#include "brindle/framework/ui/property_sheet.h"
#include "brindle/platform/qt/colour_box_qt.h"
#include "brindle/platform/qt/colour_dialog.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/dialogs_qt.h"
#include "brindle/platform/qt/dropper_button.h"
#include "brindle/platform/qt/screen_pixels_qt.h"
#include "brindle/platform/qt/sheet_window.h"
#include "brindle/platform/qt/widget_test_application.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

using testing::Front;
using testing::Then;

constexpr unsigned kPolling = 7400, kFolders = 7401, kPoll = 1001, kPeriodText = 1002, kPeriod = 1003;

class DialogPictures : public ::testing::Test {
  protected:
    DialogPictures() { testing::NeedWidgetApplication(); }
    ScopedService<Dialogs> m_dialogs{&SetDialogs, QtDialogs()};
    ScopedService<ColourBox> m_box{&SetColourBox, QtColourBox()};
    ScopedService<ScreenPixels> m_pixels{&SetScreenPixels, QtScreenPixels()};
};

QByteArray WholeFile(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

TEST_F(DialogPictures, AColourFromTheScreenAndSixteenInTheFile) {
    const QString path = QString::fromStdString(::testing::TempDir()) + "ui.ini";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("; the station's own\n[CustomColours]\nCustomColour0=200,30,30\nCustomColour1=30,160,60\n");
    file.close();
    SetUserInterfaceIniFile(path.toStdString().c_str());
    QWidget patch(nullptr, Qt::FramelessWindowHint);
    patch.setPalette(QPalette(QColor(0x12, 0x34, 0x56)));
    patch.setGeometry(0, 0, 200, 200);
    patch.show();
    const auto patchIsDrawn = [] {
        std::uint32_t pixel = 0;
        return testing::FrontWindow() && QtScreenPixels().Read({70, 80}, pixel) && pixel == 0x563412;
    };
    testing::ThenWhen(patchIsDrawn, [] {
        auto* const dialog = Front<SelectColourDialog>();
        testing::SavePicture(dialog, "picker.png");
        testing::ClickAt(dialog->DropperButton());
        testing::MouseAt(dialog, QEvent::MouseMove, {70, 80});
        testing::SavePicture(dialog, "picker_dropping.png");
        testing::MouseAt(dialog, QEvent::MouseButtonRelease, {70, 80});
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    unsigned long colour = 0x0000FF;
    EXPECT_EQ(SelectColour(nullptr, colour), 1);
    SetUserInterfaceIniFile("");
    EXPECT_EQ(colour, 0x563412u);
    QByteArray expected =
        "; the station's own\n[CustomColours]\nCustomColour0=200,30,30\nCustomColour1=30,160,60\n";
    for (int i = 2; i < 16; ++i) expected += "CustomColour" + QByteArray::number(i) + "=255,255,255\n";
    EXPECT_EQ(WholeFile(path).toStdString(), expected.toStdString());
}

// Whether it polls, and how often: the period's text is grey while nothing is polled.
class PollingPage final : public CThemedPropertyPage {
  public:
    PollingPage() : CThemedPropertyPage(kPolling, 0) {}

  protected:
    bool OnInitDialog() override {
        ShowWhatApplies();
        return true;
    }
    bool OnCommand(unsigned int control) override {
        if (control == kPoll) ShowWhatApplies();
        SetModified();
        return true;
    }

  private:
    void ShowWhatApplies() {
        const int polls = IsDlgButtonChecked(kPoll);
        GetDlgTextEnabler(kPeriodText)->EnableWindow(polls);
        GetDlgItem(kPeriod)->EnableWindow(polls != 0);
    }
};

void FillPolling(QWidget& window) {
    window.setWindowTitle("Polling");
    auto* const form = new QFormLayout(&window);
    auto* const poll = new QCheckBox("&Poll the devices");
    auto* const text = new QLabel("P&eriod in seconds");
    auto* const period = new QSpinBox;
    text->setBuddy(period);
    period->setValue(5);
    SetControlId(*poll, kPoll);
    SetControlId(*text, kPeriodText);
    SetControlId(*period, kPeriod);
    form->addRow(new QLabel("Devices"), new QLineEdit("devices.ini"));
    form->addRow(poll);
    form->addRow(text, period);
}

TEST_F(DialogPictures, APageThatGreysWhatDoesNotApply) {
    RegisterDialogTemplate(kPolling, &FillPolling);
    RegisterDialogTemplate(kFolders, [](QWidget& window) {
        window.setWindowTitle("Directories");
        (new QFormLayout(&window))->addRow("&Maps", new QLineEdit("C:\\Maps"));
    });
    PollingPage polling;
    CPropertyPage folders(kFolders);
    CPropertySheet sheet("Settings");
    sheet.AddPage(&polling);
    sheet.AddPage(&folders);
    const auto ink = [&] {
        QWidget* const text = WidgetOf(polling.GetDlgItem(kPeriodText)->GetSafeHwnd());
        static_cast<void>(text->grab());
        return text->palette().color(QPalette::WindowText);
    };
    const QColor normal = QApplication::palette().color(QPalette::WindowText);
    Then([&] {
        auto* const window = Front<SheetWindow>();
        window->resize(360, window->sizeHint().height());
        testing::SavePicture(window, "settings_greyed.png");
        EXPECT_NE(ink(), normal);
        testing::PressKey(WidgetOf(polling.GetDlgItem(kPoll)->GetSafeHwnd()), Qt::Key_Space, " ");
        EXPECT_EQ(ink(), normal);
        testing::SavePicture(window, "settings.png");
        window->reject();
    });
    EXPECT_EQ(sheet.DoModal(), 2);
}

}  // namespace
}  // namespace brindle
