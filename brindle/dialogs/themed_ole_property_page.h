// CThemedOlePropertyPage: the property page of an embedded object that can grey the text of single static controls
// without disabling them.
//
//   m_rate.EnableWindow(polls);
//   GetDlgTextEnabler(kRateLabel)->EnableWindow(polls);
//
// Flags hold from OnInitDialog until the window is gone. Thread: the user interface's.
#pragma once

#include "brindle/dialogs/themed_texts.h"
#include "brindle/framework/ui/ole_property_page.h"

class BRINDLE_API CThemedOlePropertyPage : public COlePropertyPage {
  public:
    // As COlePropertyPage's.
    CThemedOlePropertyPage(unsigned int templateId, unsigned int captionId);
    ~CThemedOlePropertyPage() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // 0: the text of the static control is drawn half-way between the system's button face and window text from now
    // on; anything else: normally again. The control itself stays enabled. Does nothing when there is no such control.
    void EnableText(unsigned int controlId, int enable);
    // What does the same for that control, now or later. One for each number, whether or not there is such a control;
    // it is the object's, and lives as long. Never null.
    CWindowEnabler<CThemedOlePropertyPage>* GetDlgTextEnabler(unsigned int controlId);

    static const CRuntimeClass classCThemedOlePropertyPage;

  protected:
    HBRUSH OnCtlColor(CDC* context, CWnd* control, unsigned int kind) override;
    void OnDestroy() override;

  private:
    brindle::ThemedTexts<CThemedOlePropertyPage> m_texts;
};
