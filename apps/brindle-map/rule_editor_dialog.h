// RuleEditorDialog: the dialog behind rule_editor_registration.h. Numbers of its controls are here for tests.
#pragma once

#include <brindle/dialogs/themed_dlg.h>
#include <brindle/util/timer.h>

#include <QtCore/QString>

#include "host/rule_edit.h"

class QTreeWidget;

namespace brindle::map {

class RuleField;

class RuleEditorDialog final : public CThemedDlg {
  public:
    static constexpr unsigned kTemplate = 7601;
    enum Control : unsigned {
        kField = 1001,
        kVerdict,
        kNamesText,
        kNames,
        kPolishText,
        kPolish,
        kNowText,
        kNow,
    };
    static constexpr unsigned kPeriod = 250;  // milliseconds between two looks at the station

    // Before the first dialog; again is no harm.
    static void RegisterTemplate();

    // The devices and the parent (null: none) are borrowed.
    RuleEditorDialog(const host::DeviceTable& devices, const CAddressOv& own, const CStringA& rule,
                     CWnd* parent);

    // After DoModal has answered 1: the rule. The one it began with, byte for byte, when nobody changed it.
    const CStringA& Rule() const noexcept { return m_rule; }

  protected:
    bool OnInitDialog() override;
    bool OnCommand(unsigned controlId) override;
    void OnOK() override;
    void OnDestroy() override;

  private:
    class Ticks final : public CTimer {
      public:
        explicit Ticks(RuleEditorDialog& dialog) : m_dialog(dialog) {}
        void Start() { CreateTimer(1, kPeriod); }

      private:
        void OnTimer(std::uint64_t) override { m_dialog.Refresh(); }
        RuleEditorDialog& m_dialog;
    };

    RuleField* Field();
    QTreeWidget* Names();
    void TakeText();
    void Refresh();
    void Show();
    void ShowVerdict();
    void ShowNames();
    void ShowNow();
    // The text of a line, scrolled to its beginning.
    void ShowBeginning(unsigned controlId, const CStringA& text);
    // What is wrong as people read it, the place as a character of the field (from 0; -1: none).
    struct Fault {
        CStringA text;  // empty: nothing
        int place = -1;
    };
    Fault FindFault() const;

    CStringA m_rule;
    QString m_shown;  // the rule as the field first shows it
    host::RuleEdit m_edit;
    int m_foreign = -1;  // the first character of the field that the code page does not have
    Ticks m_ticks{*this};
};

}  // namespace brindle::map
