#include "brindle/dialogs/themed_ole_property_page.h"

constinit const CRuntimeClass CThemedOlePropertyPage::classCThemedOlePropertyPage = {
    "CThemedOlePropertyPage",
    sizeof(CThemedOlePropertyPage),
    0xFFFF,
    nullptr,
    &COlePropertyPage::classCOlePropertyPage,
    nullptr};

CThemedOlePropertyPage::CThemedOlePropertyPage(unsigned int templateId, unsigned int captionId)
    : COlePropertyPage(templateId, captionId) {}
CThemedOlePropertyPage::~CThemedOlePropertyPage() = default;

const CRuntimeClass* CThemedOlePropertyPage::GetRuntimeClass() const {
    return &classCThemedOlePropertyPage;
}
const CRuntimeClass* CThemedOlePropertyPage::GetThisClass() {
    return &classCThemedOlePropertyPage;
}

void CThemedOlePropertyPage::EnableText(unsigned int controlId, int enable) {
    m_texts.Enable(GetDlgItem(controlId), enable);
}

CWindowEnabler<CThemedOlePropertyPage>* CThemedOlePropertyPage::GetDlgTextEnabler(unsigned int controlId) {
    return m_texts.Enabler(this, controlId);
}

HBRUSH CThemedOlePropertyPage::OnCtlColor(CDC* context, CWnd* control, unsigned int kind) {
    const HBRUSH brush = COlePropertyPage::OnCtlColor(context, control, kind);
    m_texts.Colour(context, control, kind);
    return brush;
}

void CThemedOlePropertyPage::OnDestroy() {
    m_texts.Forget();
    COlePropertyPage::OnDestroy();
}
