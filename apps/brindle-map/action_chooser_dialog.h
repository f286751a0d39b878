// ActionChooserDialog: the dialog behind action_chooser.h. Numbers of its controls are here for tests.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/dialogs/themed_dlg.h>

#include "host/action_choice.h"

class QComboBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace brindle::map {

class ActionChooserDialog final : public CThemedDlg {
  public:
    static constexpr unsigned kTemplate = 7602;
    enum Control : unsigned {
        kTree = 1001,
        kRemove,
        kRule,
        kTypeText,
        kType,
        kAdd,
        kValuesText,
        kValues,
        kVerdict,
    };

    // Before the first dialog; again is no harm.
    static void RegisterTemplate();

    // The list and the parent (null: none) are borrowed. `own`: the address that rules are edited for.
    ActionChooserDialog(CCommandBehaviourList& list, int selection, eHostType host, const CAddressOv& own,
                        CWnd* parent);

    // After DoModal has answered 1: changes the list. As ActionChoice::Apply.
    bool Apply() { return m_choice.Apply(); }

  protected:
    bool OnInitDialog() override;
    bool OnCommand(unsigned controlId) override;
    void OnOK() override;

  private:
    // What is selected: a behaviour, or one of its items.
    struct Selected {
        host::ChosenBehaviour* behaviour = nullptr;
        host::ChosenItem* item = nullptr;
    };

    template <class T>
    T* Widget(unsigned controlId);
    Selected Current();
    // The type that is to be added; null: a behaviour.
    const host::ActionChoice::Type* TypeToAdd();
    void FillTypes();
    // The tree and everything that hangs on it, with this selected.
    void ShowTree(const host::ChosenBehaviour* behaviour, const host::ChosenItem* item);
    QTreeWidgetItem* AddRow(QTreeWidgetItem& parent, const host::ChosenItem& item);
    void ShowTexts();
    void ShowValues();
    void ShowState();
    void OnTreeChanged(QTreeWidgetItem* row);
    void OnValueChanged(QTreeWidgetItem* row);
    void Add();
    void Remove();
    void EditRule();

    host::ActionChoice m_choice;
    int m_selection;
    CAddressOv m_own;
};

}  // namespace brindle::map
