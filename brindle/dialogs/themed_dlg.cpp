#include "brindle/dialogs/themed_dlg.h"

constinit const CRuntimeClass CThemedDlg::classCThemedDlg = {"CThemedDlg", sizeof(CThemedDlg),     0xFFFF,
                                                             nullptr,      &CDialog::classCDialog, nullptr};

CThemedDlg::CThemedDlg(unsigned int templateId, CWnd* parent) : CDialog(templateId, parent) {}
CThemedDlg::~CThemedDlg() = default;

const CRuntimeClass* CThemedDlg::GetRuntimeClass() const {
    return &classCThemedDlg;
}
const CRuntimeClass* CThemedDlg::GetThisClass() {
    return &classCThemedDlg;
}

void CThemedDlg::EnableText(unsigned int controlId, int enable) {
    m_texts.Enable(GetDlgItem(controlId), enable);
}

CWindowEnabler<CThemedDlg>* CThemedDlg::GetDlgTextEnabler(unsigned int controlId) {
    return m_texts.Enabler(this, controlId);
}

HBRUSH CThemedDlg::OnCtlColor(CDC* context, CWnd* control, unsigned int kind) {
    const HBRUSH brush = CDialog::OnCtlColor(context, control, kind);
    m_texts.Colour(context, control, kind);
    return brush;
}

void CThemedDlg::OnDestroy() {
    m_texts.Forget();
    CDialog::OnDestroy();
}
