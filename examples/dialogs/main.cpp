// Dialogs on Qt: a text is grey while what it belongs to does not apply, and a button asks for a colour.
// usage: dialogs [INI-FILE [PICTURE]]      of the user's colours; of the dialog at the end of a user who is played
#include <brindle/brindle.h>
#include <brindle/platform/qt/dialog_templates.h>
#include <brindle/platform/qt/qt_services.h>

#include <QtWidgets/QtWidgets>
#include <iostream>

constexpr unsigned kSettings = 100, kPoll = 1001, kPeriodText = 1002, kPeriod = 1003, kColour = 1004;

void FillSettings(QWidget& window) {
    const auto add = [&](QWidget* widget, unsigned number, const QRect& place) {
        widget->setParent(&window);
        widget->setGeometry(place);
        brindle::SetControlId(*widget, number);
    };
    window.setFixedSize(300, 120);
    add(new QCheckBox("Poll the devices"), kPoll, {10, 10, 280, 25});
    add(new QLabel("Period in seconds"), kPeriodText, {10, 45, 180, 25});
    add(new QSpinBox, kPeriod, {200, 45, 90, 25});
    add(new QPushButton("Colour of alarms..."), kColour, {10, 80, 280, 30});
}

class Settings final : public CThemedDlg {
  public:
    Settings() : CThemedDlg(kSettings, nullptr) {}
    unsigned long colour = 0x2020C0;  // 0x00BBGGRR: red

  protected:
    bool OnInitDialog() override { return CheckDlgButton(kPoll, 1), true; }
    bool OnCommand(unsigned control) override {
        if (control == kPoll) EnableText(kPeriodText, IsDlgButtonChecked(kPoll));
        if (control == kColour) SelectColour(GetSafeHwnd(), colour);
        return CThemedDlg::OnCommand(control);
    }
};

// The user unticks the box and takes green; the dialog of colours runs within the click that opens it.
void Play(const char* picture) {
    QWidget* const window = QApplication::activeModalWidget();
    window->findChild<QCheckBox*>()->click();
    QTimer::singleShot(0, [] {
        auto* const colours = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        colours->setCurrentColor(Qt::green), colours->accept();
    });
    window->findChild<QPushButton*>()->click();
    window->grab().save(picture), window->close();
}

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    brindle::InstallQtServices();
    brindle::RegisterDialogTemplate(kSettings, &FillSettings);
    if (count > 1) SetUserInterfaceIniFile(arguments[1]);
    if (count > 2) QTimer::singleShot(0, [&] { Play(arguments[2]); });
    Settings settings;
    if (settings.DoModal() < 0) return 1;
    std::cout << "colour of alarms: 0x" << std::hex << settings.colour << "\n";
}
