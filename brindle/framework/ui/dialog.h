// CDialog: a dialog whose window is made from one of the host's templates. The desktop service fills it with controls,
// each known by a number; a derived class reacts to them.
//
//   class RenameDialog : public CDialog {
//     public:
//       explicit RenameDialog(CWnd* parent) : CDialog(kRenameTemplate, parent) {}
//       CStringA name;
//     protected:
//       bool OnInitDialog() override { SetDlgItemTextA(kName, name); return true; }
//       void OnOK() override { name = GetDlgItemTextA(kName); CDialog::OnOK(); }
//   };
//
// Controls and their texts are there from OnInitDialog until the window is gone; before and after, a control that is
// asked for is none, and setting does nothing. The object must outlive its modal run. Thread: the user interface's.
#pragma once

#include <map>
#include <memory>

#include "brindle/framework/ui/wnd.h"

class CDC;

class BRINDLE_API CDialog : public CWnd {
  public:
    CDialog();  // without a template: no window can be made but by Create
    // `parent` (null: none) is not owned and must live as long as the window; so in Create.
    explicit CDialog(unsigned int templateId, CWnd* parent = nullptr);
    ~CDialog() override;  // destroys the window
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // Shows the dialog until EndDialog, and returns its result: 1 by OnOK, 2 by OnCancel. -1, nothing shown: there is
    // no such template, no desktop, or a window already.
    virtual int DoModal();
    // Makes the window without running it; it is hidden until ShowWindow. False, no window: as above.
    bool Create(unsigned int templateId, CWnd* parent = nullptr);
    bool DestroyWindow() override;
    void ShowWindow(bool show = true);
    // Ends the modal run. Does nothing without a window.
    void EndDialog(int result);

    // The control of that number, or null. It is the dialog's, and is good until the window is gone.
    CWnd* GetDlgItem(unsigned int controlId);
    // The text of a control; empty when there is none.
    CStringA GetDlgItemTextA(unsigned int controlId);
    void SetDlgItemTextA(unsigned int controlId, const CStringA& text);
    // Of a check box or a radio button: 0 or 1.
    int IsDlgButtonChecked(unsigned int controlId);
    void CheckDlgButton(unsigned int controlId, int check);

    static const CRuntimeClass classCDialog;

  protected:
    // All controls are there, and nothing is shown. The base returns true; what it means is for derived classes.
    virtual bool OnInitDialog();
    // A button was clicked, or the user changed a text or a choice; true: it was dealt with. The base calls OnOK for 1
    // and OnCancel for 2, which is also what closing the window gives.
    virtual bool OnCommand(unsigned int controlId);
    virtual void OnOK();      // ends the dialog with 1
    virtual void OnCancel();  // ends the dialog with 2
    // A control is about to be drawn, with the context's text colour. Returns the brush of its ground; the base changes
    // nothing and returns the desktop's. Kinds: 1 edit, 2 list, 3 button, 6 static.
    virtual HBRUSH OnCtlColor(CDC* context, CWnd* control, unsigned int kind);
    // The window and its controls are about to go, or went with their owner or the desktop. Derived classes call the
    // base's.
    virtual void OnDestroy();

    unsigned int TemplateId() const noexcept { return m_template; }

  private:
    class Events;
    friend class CPropertySheet;

    CWnd* ControlOf(HWND window);
    void LetGo();

    unsigned int m_template = 0;
    CWnd* m_parent = nullptr;
    std::unique_ptr<Events> m_events;                  // made with the window
    std::map<HWND, std::unique_ptr<CWnd>> m_controls;  // those that were asked for
};
