// What stands on the pages. Tests: settings_dialog_test.cpp.
#include <brindle/library/host_text.h>
#include <brindle/platform/qt/dialog_templates.h>

#include <QtGui/QValidator>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

#include "apps/brindle-map/settings_dialog.h"

namespace brindle::map {
namespace {

// Only characters that the station's files can hold.
class CodePageValidator final : public QValidator {
  public:
    using QValidator::QValidator;
    State validate(QString& text, int&) const override {
        std::string unused;
        return TextFromSystem(text.toStdString(), unused) ? Acceptable : Invalid;
    }
};

QLabel* Label(const char* text, unsigned controlId, QWidget* buddy) {
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    SetControlId(*label, controlId);
    return label;
}

QLineEdit* Line(unsigned controlId, int characters) {
    auto* const line = new QLineEdit;
    line->setValidator(new CodePageValidator(line));
    line->setMinimumWidth(characters * line->fontMetrics().averageCharWidth());
    SetControlId(*line, controlId);
    return line;
}

void AddLine(QFormLayout& form, const char* text, unsigned labelId, unsigned controlId, int characters) {
    QLineEdit* const line = Line(controlId, characters);
    form.addRow(Label(text, labelId, line), line);
}

// Behind the others, over the whole width; as high as two lines, so that nothing moves when it speaks.
void AddFault(QFormLayout& form) {
    auto* const fault = new QLabel;
    fault->setWordWrap(true);
    fault->setTextFormat(Qt::PlainText);
    fault->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    fault->setMinimumHeight(3 * fault->fontMetrics().lineSpacing());
    SetControlId(*fault, kFault);
    form.addRow(fault);
}

void FillSkin(QWidget& window) {
    window.setWindowTitle("Skin");
    auto* const form = new QFormLayout(&window);
    auto* const colours = new QListWidget;
    SetControlId(*colours, kColours);
    form->addRow(Label("&Colours of the skin", kColoursText, colours));
    form->addRow(colours);
    auto* const state = new QLabel;
    SetControlId(*state, kState);
    form->addRow(Label("State", kStateText, nullptr), state);
    auto* const change = new QPushButton("Change c&olour...");
    change->setAutoDefault(false);
    SetControlId(*change, kChange);
    form->addRow(change);
    AddFault(*form);
}

void FillDirectories(QWidget& window) {
    window.setWindowTitle("Directories");
    auto* const form = new QFormLayout(&window);
    const char* const texts[] = {"Last &site", "Last co&mponent", "Last &picture"};
    for (unsigned i = 0; i < 3; ++i) AddLine(*form, texts[i], kLastText + i, kLast + i, 40);
    auto* const names = new QComboBox;
    SetControlId(*names, kPathName);
    form->addRow(Label("Search pa&th", kPathNameText, names), names);
    AddLine(*form, "Its &directories, with \";\" between", kPathText, kPath, 40);
    AddFault(*form);
}

void FillPolling(QWidget& window) {
    window.setWindowTitle("Polling");
    auto* const form = new QFormLayout(&window);
    auto* const devices = new QComboBox;
    SetControlId(*devices, kDevice);
    form->addRow(Label("&Device", kDeviceText, devices), devices);
    auto* const polled = new QCheckBox("&Poll this device");
    SetControlId(*polled, kPolled);
    form->addRow(polled);
    AddLine(*form, "P&eriod in milliseconds", kPeriodText, kPeriod, 12);
    AddLine(*form, "&Timeout in milliseconds", kTimeoutText, kTimeout, 12);
    AddLine(*form, "Attempts after the &first", kRetriesText, kRetries, 12);
    AddFault(*form);
}

}  // namespace

void RegisterSettingsTemplates() {
    RegisterDialogTemplate(kSkinPage, &FillSkin);
    RegisterDialogTemplate(kDirectoriesPage, &FillDirectories);
    RegisterDialogTemplate(kPollingPage, &FillPolling);
}

}  // namespace brindle::map
