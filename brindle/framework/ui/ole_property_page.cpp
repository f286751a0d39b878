// Property pages of embedded objects. Tests: property_sheet_test.cpp.
#include "brindle/framework/ui/ole_property_page.h"

constinit const CRuntimeClass COlePropertyPage::classCOlePropertyPage = {"COlePropertyPage",
                                                                         sizeof(COlePropertyPage),
                                                                         0xFFFF,
                                                                         nullptr,
                                                                         &CPropertyPage::classCPropertyPage,
                                                                         nullptr};

COlePropertyPage::COlePropertyPage(unsigned int templateId, unsigned int captionId)
    : CPropertyPage(templateId, captionId) {}
COlePropertyPage::~COlePropertyPage() = default;

const CRuntimeClass* COlePropertyPage::GetRuntimeClass() const {
    return &classCOlePropertyPage;
}
const CRuntimeClass* COlePropertyPage::GetThisClass() {
    return &classCOlePropertyPage;
}

void COlePropertyPage::SetModifiedFlag(bool modified) {
    m_modified = modified;
    SetModified(modified);
}

bool COlePropertyPage::OnApply() {
    if (!CPropertyPage::OnApply()) return false;
    SetModifiedFlag(false);
    return true;
}
