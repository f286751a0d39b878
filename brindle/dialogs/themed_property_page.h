// CThemedPropertyPage: a property page that can grey the text of single static controls without disabling them.
//
//   m_rate.EnableWindow(polls);
//   GetDlgTextEnabler(kRateLabel)->EnableWindow(polls);
//
// Flags hold from OnInitDialog until the window is gone. Thread: the user interface's.
#pragma once

#include "brindle/dialogs/themed_texts.h"
#include "brindle/framework/ui/property_page.h"

class BRINDLE_API CThemedPropertyPage : public CPropertyPage {
  public:
    CThemedPropertyPage();
    // As CPropertyPage's.
    CThemedPropertyPage(unsigned int templateId, unsigned int captionId);
    ~CThemedPropertyPage() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // 0: the text of the static control is drawn half-way between the system's button face and window text from now
    // on; anything else: normally again. The control itself stays enabled. Does nothing when there is no such control.
    void EnableText(unsigned int controlId, int enable);
    // What does the same for that control, now or later. One for each number, whether or not there is such a control;
    // it is the object's, and lives as long. Never null.
    CWindowEnabler<CThemedPropertyPage>* GetDlgTextEnabler(unsigned int controlId);

    static const CRuntimeClass classCThemedPropertyPage;

  protected:
    HBRUSH OnCtlColor(CDC* context, CWnd* control, unsigned int kind) override;
    void OnDestroy() override;

  private:
    brindle::ThemedTexts<CThemedPropertyPage> m_texts;
};
