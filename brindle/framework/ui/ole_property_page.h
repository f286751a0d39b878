// COlePropertyPage: the property page of an embedded object. It remembers by itself whether anything is to be applied,
// and stands in a property sheet as any other page. Thread: the user interface's.
#pragma once

#include "brindle/framework/ui/property_page.h"

class BRINDLE_API COlePropertyPage : public CPropertyPage {
  public:
    // The numbers of its dialog and of its title, as in CPropertyPage.
    explicit COlePropertyPage(unsigned int templateId, unsigned int captionId);
    ~COlePropertyPage() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    bool IsModified() const noexcept { return m_modified; }
    // Keeps the flag and passes it on to the sheet.
    void SetModifiedFlag(bool modified = true);

    static const CRuntimeClass classCOlePropertyPage;

  protected:
    bool OnApply() override;  // as the base; then nothing is modified

  private:
    bool m_modified = false;
};
