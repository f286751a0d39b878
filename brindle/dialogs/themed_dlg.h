// CThemedDlg: a dialog that can grey the text of single static controls without disabling them.
//
//   m_rate.EnableWindow(polls);
//   GetDlgTextEnabler(kRateLabel)->EnableWindow(polls);
//
// Flags hold from OnInitDialog until the window is gone. Thread: the user interface's.
#pragma once

#include "brindle/dialogs/themed_texts.h"
#include "brindle/framework/ui/dialog.h"

class BRINDLE_API CThemedDlg : public CDialog {
  public:
    // As CDialog's.
    CThemedDlg(unsigned int templateId, CWnd* parent);
    ~CThemedDlg() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // 0: the text of the static control is drawn half-way between the system's button face and window text from now
    // on; anything else: normally again. The control itself stays enabled. Does nothing when there is no such control.
    void EnableText(unsigned int controlId, int enable);
    // What does the same for that control, now or later. One for each number, whether or not there is such a control;
    // it is the object's, and lives as long. Never null.
    CWindowEnabler<CThemedDlg>* GetDlgTextEnabler(unsigned int controlId);

    static const CRuntimeClass classCThemedDlg;

  protected:
    HBRUSH OnCtlColor(CDC* context, CWnd* control, unsigned int kind) override;
    void OnDestroy() override;

  private:
    brindle::ThemedTexts<CThemedDlg> m_texts;
};
