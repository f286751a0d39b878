// The dialog of the rule editor. Tests: rule_editor_dialog_test.cpp.
#include "apps/brindle-map/rule_editor_dialog.h"

#include <brindle/library/host_text.h>
#include <brindle/platform/qt/dialog_templates.h>

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <array>

#include "apps/brindle-map/rule_field.h"

namespace brindle::map {
namespace {

QString Shown(std::string_view bytes) {
    return QString::fromStdString(TextToSystem(bytes));
}

QLabel* AddLabel(QVBoxLayout& column, const char* text, unsigned controlId, QWidget* buddy) {
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    SetControlId(*label, controlId);
    column.addWidget(label);
    return label;
}

QLineEdit* AddReadOnly(QVBoxLayout& column, const char* text, unsigned labelId, unsigned controlId) {
    auto* const line = new QLineEdit;
    line->setReadOnly(true);
    line->setLayoutDirection(Qt::LeftToRight);
    SetControlId(*line, controlId);
    AddLabel(column, text, labelId, line);
    column.addWidget(line);
    return line;
}

QTreeWidget* MakeNames() {
    auto* const names = new QTreeWidget;
    names->setHeaderLabels({"Name", "Device", "Type", "Value"});
    names->setRootIsDecorated(false);
    names->setUniformRowHeights(true);
    names->setAllColumnsShowFocus(true);
    names->setTabKeyNavigation(false);
    names->header()->setStretchLastSection(true);
    const int letter = names->fontMetrics().averageCharWidth();
    names->header()->resizeSection(0, 24 * letter);
    names->header()->resizeSection(1, 14 * letter);
    names->header()->resizeSection(2, 12 * letter);
    return names;
}

void Fill(QWidget& window) {
    window.setWindowTitle("Rule");
    auto* const column = new QVBoxLayout(&window);
    auto* const field = new RuleField;
    field->setMinimumHeight(4 * field->fontMetrics().lineSpacing());
    SetControlId(*field, RuleEditorDialog::kField);
    AddLabel(*column, "&Rule", 0, field);
    column->addWidget(field, 1);
    auto* const verdict = new QLabel;
    verdict->setTextFormat(Qt::PlainText);
    verdict->setWordWrap(true);
    SetControlId(*verdict, RuleEditorDialog::kVerdict);
    column->addWidget(verdict);
    QTreeWidget* const names = MakeNames();
    SetControlId(*names, RuleEditorDialog::kNames);
    AddLabel(*column, "&Names and what they stand for now", RuleEditorDialog::kNamesText, names);
    column->addWidget(names, 2);
    AddReadOnly(*column, "Reverse &Polish form", RuleEditorDialog::kPolishText, RuleEditorDialog::kPolish);
    AddReadOnly(*column, "Result n&ow", RuleEditorDialog::kNowText, RuleEditorDialog::kNow);
    column->addWidget(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    window.resize(620, 480);
}

using Cells = std::array<QString, 4>;

Cells CellsOf(const host::RuleEditName& name) {
    return {Shown(name.text), Shown(name.device), Shown(name.type),
            Shown(name.why.empty() ? name.value : name.why)};
}

// Changes only what is another text, so that the selection and the place in the list stay.
void SetCells(QTreeWidgetItem& row, const Cells& cells) {
    for (int i = 0; i < 4; ++i) {
        const QString& text = cells[static_cast<std::size_t>(i)];
        if (row.text(i) == text) continue;
        row.setText(i, text);
        row.setToolTip(i, text);
    }
}

}  // namespace

void RuleEditorDialog::RegisterTemplate() {
    RegisterDialogTemplate(kTemplate, &Fill);
}

RuleEditorDialog::RuleEditorDialog(const host::DeviceTable& devices, const CAddressOv& own,
                                   const CStringA& rule, CWnd* parent)
    : CThemedDlg(kTemplate, parent), m_rule(rule), m_edit(devices, own) {
    m_edit.SetText(rule.view());
}

RuleField* RuleEditorDialog::Field() {
    CWnd* const field = GetDlgItem(kField);
    return field ? dynamic_cast<RuleField*>(WidgetOf(field->GetSafeHwnd())) : nullptr;
}

QTreeWidget* RuleEditorDialog::Names() {
    CWnd* const names = GetDlgItem(kNames);
    return names ? qobject_cast<QTreeWidget*>(WidgetOf(names->GetSafeHwnd())) : nullptr;
}

bool RuleEditorDialog::OnInitDialog() {
    Field()->Show(Shown(m_rule.view()));
    m_shown = Field()->Shown();
    Field()->refused = [this] {
        SetDlgItemTextA(kVerdict, "The text is too long for a rule: nothing was pasted.");
    };
    Field()->setFocus();
    Show();
    m_ticks.Start();
    return CThemedDlg::OnInitDialog();
}

void RuleEditorDialog::OnDestroy() {
    m_ticks.DestroyWindow();
    CThemedDlg::OnDestroy();
}

bool RuleEditorDialog::OnCommand(unsigned controlId) {
    if (controlId != kField) return CThemedDlg::OnCommand(controlId);
    TakeText();
    Show();
    return true;
}

// Also by Enter, whatever the button says.
void RuleEditorDialog::OnOK() {
    if (!FindFault().text.IsEmpty()) return;
    m_rule = m_edit.Text();
    CThemedDlg::OnOK();
}

void RuleEditorDialog::TakeText() {
    const QString text = Field()->Shown();
    m_foreign = -1;
    std::string bytes;
    if (text == m_shown) {
        bytes = m_rule.str();
    } else if (!TextFromSystem(text.toStdString(), bytes)) {
        const auto isForeign = [](char32_t character) {
            std::string unused;
            return !TextFromSystem(QString::fromUcs4(&character, 1).toStdString(), unused);
        };
        for (int place = 0; place < text.size() && m_foreign < 0; ++place) {
            const bool pair = text[place].isHighSurrogate() && place + 1 < text.size();
            const char32_t character = pair ? QChar::surrogateToUcs4(text[place], text[place + 1])
                                            : static_cast<char32_t>(text[place].unicode());
            if (isForeign(character)) m_foreign = place;
            if (pair) ++place;
        }
    }
    m_edit.SetText(bytes);
}

RuleEditorDialog::Fault RuleEditorDialog::FindFault() const {
    Fault fault;
    if (m_foreign >= 0) {
        fault.text = "no byte of the station's code page is this character";
        fault.place = m_foreign;
    } else if (!m_edit.IsValid()) {
        fault.text = m_edit.Fault().text;
        if (const std::uint32_t column = m_edit.Fault().column)
            fault.place = static_cast<int>(Shown(m_edit.Text().substr(0, column - 1)).size());
    }
    return fault;
}

void RuleEditorDialog::Refresh() {
    if (!m_edit.Refresh()) return;
    ShowNames();
    ShowNow();
}

void RuleEditorDialog::Show() {
    ShowVerdict();
    ShowNames();
    ShowBeginning(kPolish, m_edit.ReversePolish());
    ShowNow();
}

void RuleEditorDialog::ShowVerdict() {
    const Fault fault = FindFault();
    const bool valid = fault.text.IsEmpty();
    CStringA verdict = "The rule can be evaluated.";
    if (!valid) verdict = "Wrong: " + fault.text.str() + ".";
    if (!valid && fault.place >= 0)
        verdict = "Wrong at character " + std::to_string(fault.place + 1) + ": " + fault.text.str() + ".";
    SetDlgItemTextA(kVerdict, verdict);
    Field()->Mark(fault.place);
    Field()->setAccessibleDescription(Shown(verdict.view()));
    for (const unsigned text : {kNamesText, kPolishText, kNowText})
        GetDlgTextEnabler(text)->EnableWindow(valid);
    GetDlgItem(1)->EnableWindow(valid);
}

void RuleEditorDialog::ShowNames() {
    QTreeWidget* const list = Names();
    std::vector<Cells> rows;
    for (const host::RuleEditName& name : m_edit.Names()) rows.push_back(CellsOf(name));
    if (const std::size_t more = m_edit.MoreNames())
        rows.push_back({"and " + QString::number(more) + " more", "", "", ""});
    const int count = static_cast<int>(rows.size());
    while (list->topLevelItemCount() > count) delete list->takeTopLevelItem(count);
    while (list->topLevelItemCount() < count) list->addTopLevelItem(new QTreeWidgetItem);
    for (int i = 0; i < count; ++i) SetCells(*list->topLevelItem(i), rows[static_cast<std::size_t>(i)]);
}

void RuleEditorDialog::ShowNow() {
    const host::RuleEditResult& now = m_edit.Now();
    std::string text = now.why;
    if (!now.type.empty())
        text = now.value + " (" + now.type + "): a condition " + (now.holds ? "holds" : "does not hold");
    if (GetDlgItemTextA(kNow) != CStringA(text)) ShowBeginning(kNow, text);
}

void RuleEditorDialog::ShowBeginning(unsigned controlId, const CStringA& text) {
    SetDlgItemTextA(controlId, text);
    if (auto* const line = qobject_cast<QLineEdit*>(WidgetOf(GetDlgItem(controlId)->GetSafeHwnd())))
        line->setCursorPosition(0);
}

}  // namespace brindle::map
