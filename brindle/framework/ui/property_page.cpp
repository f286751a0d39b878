// Pages of a property sheet. Tests: property_sheet_test.cpp.
#include "brindle/framework/ui/property_page.h"

#include "brindle/platform/dialogs.h"

constinit const CRuntimeClass CPropertyPage::classCPropertyPage = {
    "CPropertyPage", sizeof(CPropertyPage), 0xFFFF, nullptr, &CDialog::classCDialog, nullptr};

CPropertyPage::CPropertyPage() = default;
CPropertyPage::CPropertyPage(unsigned int templateId, unsigned int captionId)
    : CDialog(templateId), m_caption(captionId) {}
CPropertyPage::~CPropertyPage() = default;

const CRuntimeClass* CPropertyPage::GetRuntimeClass() const {
    return &classCPropertyPage;
}
const CRuntimeClass* CPropertyPage::GetThisClass() {
    return &classCPropertyPage;
}

void CPropertyPage::SetModified(bool modified) {
    brindle::CurrentDialogs().SetPageModified(GetSafeHwnd(), modified);
}

CStringA CPropertyPage::Caption() const {
    return brindle::CurrentDialogs().Caption(m_caption);
}

bool CPropertyPage::OnSetActive() {
    return true;
}
bool CPropertyPage::OnKillActive() {
    return true;
}

bool CPropertyPage::OnApply() {
    OnOK();
    return true;
}

void CPropertyPage::OnOK() {}
void CPropertyPage::OnCancel() {}
