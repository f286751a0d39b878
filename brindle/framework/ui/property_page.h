// CPropertyPage: a dialog that is one page of a property sheet. Thread: the user interface's.
#pragma once

#include "brindle/framework/ui/dialog.h"

class BRINDLE_API CPropertyPage : public CDialog {
  public:
    CPropertyPage();
    // `captionId`: the number under which the host registered the tab's text; 0: the template's.
    explicit CPropertyPage(unsigned int templateId, unsigned int captionId = 0);
    ~CPropertyPage() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // Whether there is something to apply; the sheet offers Apply accordingly.
    void SetModified(bool modified = true);
    // The text of the page's tab; empty: the template's.
    CStringA Caption() const;

    static const CRuntimeClass classCPropertyPage;

  protected:
    // The page comes to the front. The base returns true; what it means is for derived classes.
    virtual bool OnSetActive();
    // The page is left or applied; false, after telling the user why: it stays.
    virtual bool OnKillActive();
    // OK or Apply: take the settings over; false: the sheet stays open. The base calls OnOK and answers true.
    virtual bool OnApply();
    // A page ends no dialog: the base's do nothing.
    void OnOK() override;
    void OnCancel() override;

  private:
    friend class CPropertySheet;
    unsigned int m_caption = 0;
};
