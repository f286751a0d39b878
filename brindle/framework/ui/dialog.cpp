// Dialogs over the desktop's windows. Tests: dialog_test.cpp.
#include "brindle/framework/ui/dialog.h"

#include "brindle/platform/dialogs.h"

// Passes what happens in the window on to the dialog.
class CDialog::Events final : public brindle::DialogEvents {
  public:
    explicit Events(CDialog& dialog) : m_dialog(dialog) {}
    void OnCommand(unsigned control) override { m_dialog.OnCommand(control); }
    void OnControlColour(CDC& context, HWND control, unsigned kind) override {
        m_dialog.OnCtlColor(&context, m_dialog.ControlOf(control), kind);
    }
    void OnGone() override { m_dialog.LetGo(); }

  private:
    CDialog& m_dialog;
};

constinit const CRuntimeClass CDialog::classCDialog = {"CDialog", sizeof(CDialog),  0xFFFF,
                                                       nullptr,   &CWnd::classCWnd, nullptr};

CDialog::CDialog() = default;
CDialog::CDialog(unsigned int templateId, CWnd* parent) : m_template(templateId), m_parent(parent) {}

CDialog::~CDialog() {
    CDialog::DestroyWindow();
}

const CRuntimeClass* CDialog::GetRuntimeClass() const {
    return &classCDialog;
}
const CRuntimeClass* CDialog::GetThisClass() {
    return &classCDialog;
}

int CDialog::DoModal() {
    if (!Create(m_template, m_parent)) return brindle::kDialogFailed;
    const int result = brindle::CurrentDialogs().RunModal(GetSafeHwnd());
    DestroyWindow();
    return result;
}

bool CDialog::Create(unsigned int templateId, CWnd* parent) {
    if (GetSafeHwnd()) return false;
    m_events = std::make_unique<Events>(*this);
    const HWND owner = parent ? parent->GetSafeHwnd() : nullptr;
    if (!Attach(brindle::CurrentDialogs().Create(templateId, owner, *m_events))) return false;
    m_template = templateId;
    m_parent = parent;
    OnInitDialog();
    return GetSafeHwnd() != nullptr;
}

bool CDialog::DestroyWindow() {
    const HWND window = GetSafeHwnd();
    if (!window) return false;
    LetGo();
    brindle::CurrentDialogs().Destroy(window);
    return true;
}

void CDialog::LetGo() {
    OnDestroy();
    m_controls.clear();
    Detach();
}

void CDialog::ShowWindow(bool show) {
    brindle::CurrentDialogs().Show(GetSafeHwnd(), show);
}

void CDialog::EndDialog(int result) {
    brindle::CurrentDialogs().EndModal(GetSafeHwnd(), result);
}

CWnd* CDialog::GetDlgItem(unsigned int controlId) {
    return ControlOf(brindle::CurrentDialogs().Control(GetSafeHwnd(), controlId));
}

CWnd* CDialog::ControlOf(HWND window) {
    if (!window) return nullptr;
    std::unique_ptr<CWnd>& control = m_controls[window];
    if (!control) {
        control = std::make_unique<CWnd>();
        control->Attach(window);
    }
    return control.get();
}

CStringA CDialog::GetDlgItemTextA(unsigned int controlId) {
    CWnd* const control = GetDlgItem(controlId);
    return control ? control->GetWindowTextA() : CStringA();
}

void CDialog::SetDlgItemTextA(unsigned int controlId, const CStringA& text) {
    if (CWnd* const control = GetDlgItem(controlId)) control->SetWindowTextA(text);
}

int CDialog::IsDlgButtonChecked(unsigned int controlId) {
    auto& dialogs = brindle::CurrentDialogs();
    return dialogs.IsChecked(dialogs.Control(GetSafeHwnd(), controlId)) ? 1 : 0;
}

void CDialog::CheckDlgButton(unsigned int controlId, int check) {
    auto& dialogs = brindle::CurrentDialogs();
    dialogs.SetChecked(dialogs.Control(GetSafeHwnd(), controlId), check != 0);
}

bool CDialog::OnInitDialog() {
    return true;
}

bool CDialog::OnCommand(unsigned int controlId) {
    if (controlId != brindle::kControlOk && controlId != brindle::kControlCancel) return false;
    controlId == brindle::kControlOk ? OnOK() : OnCancel();
    return true;
}

void CDialog::OnOK() {
    EndDialog(static_cast<int>(brindle::kControlOk));
}
void CDialog::OnCancel() {
    EndDialog(static_cast<int>(brindle::kControlCancel));
}

HBRUSH CDialog::OnCtlColor(CDC*, CWnd*, unsigned int kind) {
    return brindle::CurrentDialogs().ControlBrush(kind);
}

void CDialog::OnDestroy() {}
