#include "brindle/dialogs/themed_property_page.h"

constinit const CRuntimeClass CThemedPropertyPage::classCThemedPropertyPage = {
    "CThemedPropertyPage",
    sizeof(CThemedPropertyPage),
    0xFFFF,
    nullptr,
    &CPropertyPage::classCPropertyPage,
    nullptr};

CThemedPropertyPage::CThemedPropertyPage() = default;
CThemedPropertyPage::CThemedPropertyPage(unsigned int templateId, unsigned int captionId)
    : CPropertyPage(templateId, captionId) {}
CThemedPropertyPage::~CThemedPropertyPage() = default;

const CRuntimeClass* CThemedPropertyPage::GetRuntimeClass() const {
    return &classCThemedPropertyPage;
}
const CRuntimeClass* CThemedPropertyPage::GetThisClass() {
    return &classCThemedPropertyPage;
}

void CThemedPropertyPage::EnableText(unsigned int controlId, int enable) {
    m_texts.Enable(GetDlgItem(controlId), enable);
}

CWindowEnabler<CThemedPropertyPage>* CThemedPropertyPage::GetDlgTextEnabler(unsigned int controlId) {
    return m_texts.Enabler(this, controlId);
}

HBRUSH CThemedPropertyPage::OnCtlColor(CDC* context, CWnd* control, unsigned int kind) {
    const HBRUSH brush = CPropertyPage::OnCtlColor(context, control, kind);
    m_texts.Colour(context, control, kind);
    return brush;
}

void CThemedPropertyPage::OnDestroy() {
    m_texts.Forget();
    CPropertyPage::OnDestroy();
}
