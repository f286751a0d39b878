// The dialog of the action chooser. Tests: action_chooser_dialog_test.cpp.
#include "apps/brindle-map/action_chooser_dialog.h"

#include <brindle/library/host_text.h>
#include <brindle/platform/qt/dialog_templates.h>
#include <brindle/variables/hook/rule_editor.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

#include "apps/brindle-map/value_delegate.h"

namespace brindle::map {
namespace {

using host::ActionChoice;
using host::ChosenBehaviour;
using host::ChosenItem;

QString Shown(std::string_view bytes) {
    return QString::fromStdString(TextToSystem(bytes));
}

QPushButton* MakeButton(const char* text, unsigned controlId) {
    auto* const button = new QPushButton(text);
    button->setAutoDefault(false);
    SetControlId(*button, controlId);
    return button;
}

QLabel* MakeLabel(const char* text, QWidget* buddy, unsigned controlId) {
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    if (controlId) SetControlId(*label, controlId);
    return label;
}

QTreeWidget* MakeTree(unsigned controlId, const QStringList& headers, int firstLetters) {
    auto* const tree = new QTreeWidget;
    tree->setHeaderLabels(headers);
    tree->setAllColumnsShowFocus(true);
    tree->setTabKeyNavigation(false);
    tree->setUniformRowHeights(true);
    tree->header()->resizeSection(0, firstLetters * tree->fontMetrics().averageCharWidth());
    SetControlId(*tree, controlId);
    return tree;
}

// What is chosen and its buttons.
void FillChosen(QVBoxLayout& column) {
    QTreeWidget* const tree = MakeTree(ActionChooserDialog::kTree, {"When and what", "Kind"}, 60);
    column.addWidget(MakeLabel("&Behaviours", tree, 0));
    column.addWidget(tree, 3);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(MakeButton("Re&move", ActionChooserDialog::kRemove));
    buttons->addWidget(MakeButton("R&ule...", ActionChooserDialog::kRule));
    buttons->addStretch(1);
    column.addLayout(buttons);
    auto* const types = new QComboBox;
    types->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    types->setMinimumContentsLength(16);
    SetControlId(*types, ActionChooserDialog::kType);
    auto* const row = new QHBoxLayout;
    row->addWidget(MakeLabel("&Type", types, ActionChooserDialog::kTypeText));
    row->addWidget(types, 1);
    row->addWidget(MakeButton("A&dd", ActionChooserDialog::kAdd));
    column.addLayout(row);
}

void Fill(QWidget& window) {
    window.setWindowTitle("Actions");
    auto* const column = new QVBoxLayout(&window);
    FillChosen(*column);
    QTreeWidget* const values = MakeTree(ActionChooserDialog::kValues, {"Attribute", "Value"}, 20);
    values->setRootIsDecorated(false);
    values->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::AnyKeyPressed);
    values->setItemDelegate(new ValueDelegate(values));
    column->addWidget(MakeLabel("Attri&butes", values, ActionChooserDialog::kValuesText));
    column->addWidget(values, 2);
    auto* const verdict = new QLabel;
    verdict->setTextFormat(Qt::PlainText);
    verdict->setWordWrap(true);
    SetControlId(*verdict, ActionChooserDialog::kVerdict);
    column->addWidget(verdict);
    column->addWidget(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    window.resize(640, 560);
}

template <class T>
T* PointerOf(const QTreeWidgetItem* row) {
    return row ? reinterpret_cast<T*>(row->data(0, Qt::UserRole).toULongLong()) : nullptr;
}

void SetPointer(QTreeWidgetItem& row, const void* pointer) {
    row.setData(0, Qt::UserRole, static_cast<qulonglong>(reinterpret_cast<std::uintptr_t>(pointer)));
}

}  // namespace

void ActionChooserDialog::RegisterTemplate() {
    RegisterDialogTemplate(kTemplate, &Fill);
}

ActionChooserDialog::ActionChooserDialog(CCommandBehaviourList& list, int selection, eHostType host,
                                         const CAddressOv& own, CWnd* parent)
    : CThemedDlg(kTemplate, parent), m_choice(list, host), m_selection(selection), m_own(own) {}

template <class T>
T* ActionChooserDialog::Widget(unsigned controlId) {
    CWnd* const control = GetDlgItem(controlId);
    return control ? qobject_cast<T*>(WidgetOf(control->GetSafeHwnd())) : nullptr;
}

bool ActionChooserDialog::OnInitDialog() {
    FillTypes();
    auto* const tree = Widget<QTreeWidget>(kTree);
    auto* const values = Widget<QTreeWidget>(kValues);
    QObject::connect(tree, &QTreeWidget::currentItemChanged, tree, [this] {
        ShowValues();
        ShowState();
    });
    QObject::connect(tree, &QTreeWidget::itemChanged, tree,
                     [this](QTreeWidgetItem* row) { OnTreeChanged(row); });
    QObject::connect(values, &QTreeWidget::itemChanged, values,
                     [this](QTreeWidgetItem* row) { OnValueChanged(row); });
    const auto& behaviours = m_choice.Behaviours();
    const auto wanted = static_cast<std::size_t>(std::max(m_selection, 0));
    const ChosenBehaviour* const first =
        behaviours.empty() ? nullptr : behaviours[wanted < behaviours.size() ? wanted : 0].get();
    ShowTree(first, nullptr);
    tree->setFocus();
    return CThemedDlg::OnInitDialog();
}

void ActionChooserDialog::FillTypes() {
    auto* const types = Widget<QComboBox>(kType);
    const auto& offered = m_choice.Types();
    for (std::size_t i = 0; i < offered.size(); ++i) {
        const QString kind = offered[i].isTrigger ? "Trigger: " : "Action: ";
        types->addItem(kind + Shown(offered[i].text), static_cast<int>(i));
    }
    types->addItem("Behaviour", -1);
}

bool ActionChooserDialog::OnCommand(unsigned controlId) {
    switch (controlId) {
        case kAdd:
            Add();
            return true;
        case kRemove:
            Remove();
            return true;
        case kRule:
            EditRule();
            return true;
        case kType:
            ShowState();
            return true;
        default:
            return CThemedDlg::OnCommand(controlId);
    }
}

void ActionChooserDialog::OnOK() {
    if (m_choice.Fault().empty()) CThemedDlg::OnOK();
}

ActionChooserDialog::Selected ActionChooserDialog::Current() {
    QTreeWidgetItem* const row = Widget<QTreeWidget>(kTree)->currentItem();
    if (!row) return {};
    if (!row->parent()) return {PointerOf<ChosenBehaviour>(row), nullptr};
    return {PointerOf<ChosenBehaviour>(row->parent()), PointerOf<ChosenItem>(row)};
}

const ActionChoice::Type* ActionChooserDialog::TypeToAdd() {
    const int index = Widget<QComboBox>(kType)->currentData().toInt();
    return index < 0 ? nullptr : &m_choice.Types()[static_cast<std::size_t>(index)];
}

void ActionChooserDialog::ShowTree(const ChosenBehaviour* behaviour, const ChosenItem* item) {
    auto* const tree = Widget<QTreeWidget>(kTree);
    {
        const QSignalBlocker quiet(tree);
        tree->clear();
        QTreeWidgetItem* current = nullptr;
        for (const auto& chosen : m_choice.Behaviours()) {
            auto* const row = new QTreeWidgetItem(tree);
            row->setText(1, "behaviour");
            SetPointer(*row, chosen.get());
            if (chosen.get() == behaviour) current = row;
            for (const auto* const items : {&chosen->triggers, &chosen->actions})
                for (const auto& part : *items) {
                    QTreeWidgetItem* const added = AddRow(*row, *part);
                    if (part.get() == item) current = added;
                }
        }
        tree->expandAll();
        if (current) tree->setCurrentItem(current);
        ShowTexts();
    }
    ShowValues();
    ShowState();
}

QTreeWidgetItem* ActionChooserDialog::AddRow(QTreeWidgetItem& parent, const ChosenItem& item) {
    auto* const row = new QTreeWidgetItem(&parent);
    row->setText(1, item.IsTrigger() ? "trigger" : "action");
    row->setCheckState(0, item.IsEnabled() ? Qt::Checked : Qt::Unchecked);
    if (!item.IsCopied()) row->setFlags(row->flags() & ~Qt::ItemIsUserCheckable);
    SetPointer(*row, &item);
    return row;
}

// The texts of all rows: what an item is called follows from its attributes.
void ActionChooserDialog::ShowTexts() {
    auto* const tree = Widget<QTreeWidget>(kTree);
    const QSignalBlocker quiet(tree);
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* const row = tree->topLevelItem(i);
        row->setText(0, "When " + Shown(PointerOf<ChosenBehaviour>(row)->Text()));
        for (int k = 0; k < row->childCount(); ++k)
            row->child(k)->setText(0, Shown(PointerOf<ChosenItem>(row->child(k))->Text()));
    }
}

void ActionChooserDialog::ShowValues() {
    auto* const list = Widget<QTreeWidget>(kValues);
    const QSignalBlocker quiet(list);
    list->clear();
    const ChosenItem* const item = Current().item;
    if (!item) return;
    for (const ChosenItem::Value& value : item->Values()) {
        auto* const row = new QTreeWidgetItem(list, {Shown(value.name), Shown(value.text)});
        row->setFlags(row->flags() | Qt::ItemIsEditable);
        row->setToolTip(1, Shown(value.expects));
    }
    if (list->topLevelItemCount() > 0) list->setCurrentItem(list->topLevelItem(0), 1);
}

void ActionChooserDialog::ShowState() {
    const Selected now = Current();
    const ActionChoice::Type* const type = TypeToAdd();
    const bool canAdd = !type || now.behaviour;
    GetDlgItem(kAdd)->EnableWindow(canAdd);
    GetDlgTextEnabler(kTypeText)->EnableWindow(canAdd);
    GetDlgItem(kRemove)->EnableWindow(now.behaviour != nullptr);
    GetDlgItem(kRule)->EnableWindow(now.item && now.item->Rule());
    GetDlgTextEnabler(kValuesText)->EnableWindow(now.item && now.item->IsCopied());
    const std::string fault = m_choice.Fault();
    SetDlgItemTextA(kVerdict, fault.empty() ? CStringA() : CStringA("Wrong: " + fault + "."));
    GetDlgItem(1)->EnableWindow(fault.empty());
}

void ActionChooserDialog::OnTreeChanged(QTreeWidgetItem* row) {
    if (!row->parent()) return;
    PointerOf<ChosenItem>(row)->SetEnabled(row->checkState(0) == Qt::Checked);
    ShowState();
}

void ActionChooserDialog::OnValueChanged(QTreeWidgetItem* row) {
    ChosenItem* const item = Current().item;
    if (!item) return;
    std::string name;
    std::string text;
    TextFromSystem(row->text(0).toStdString(), name);
    if (TextFromSystem(row->text(1).toStdString(), text)) {
        item->Set(name, text);
        ShowTexts();
        ShowState();
        return;
    }
    {
        const QSignalBlocker quiet(row->treeWidget());
        for (const ChosenItem::Value& value : item->Values())
            if (value.name == name) row->setText(1, Shown(value.text));
    }
    ShowState();
    SetDlgItemTextA(kVerdict,
                    "Wrong: attribute \"" + name +
                        "\": a character is not in the station's code page; the value stays as it was.");
}

void ActionChooserDialog::Add() {
    const ActionChoice::Type* const type = TypeToAdd();
    if (!type) return ShowTree(m_choice.AddBehaviour(), nullptr);
    ChosenBehaviour* const behaviour = Current().behaviour;
    if (behaviour) ShowTree(behaviour, m_choice.Add(*behaviour, *type));
}

void ActionChooserDialog::Remove() {
    const Selected now = Current();
    if (now.item) {
        m_choice.Remove(now.item);
        return ShowTree(now.behaviour, nullptr);
    }
    if (!now.behaviour) return;
    m_choice.Remove(now.behaviour);
    ShowTree(m_choice.Behaviours().empty() ? nullptr : m_choice.Behaviours().back().get(), nullptr);
}

void ActionChooserDialog::EditRule() {
    ChosenItem* const item = Current().item;
    const std::optional<std::string> rule = item ? item->Rule() : std::nullopt;
    CStringA edited;
    // The window may have gone while the editor was open.
    if (!rule || !ShowRuleEditor(CStringA(*rule), &m_own, edited) || !GetSafeHwnd()) return;
    item->Set("Rule", edited.str());
    ShowTexts();
    ShowValues();
    ShowState();
}

}  // namespace brindle::map
