// CWindowEnabler: greys one text of a dialog or page, in the words code uses for a whole control. A small value; it
// neither owns the dialog nor outlives its use. Thread: the user interface's.
#pragma once

template <class T>
class CWindowEnabler {
  public:
    CWindowEnabler(T* dialog, unsigned int controlId) noexcept : m_dialog(dialog), m_controlId(controlId) {}

    // As the dialog's EnableText of that control.
    void EnableWindow(int enable) { m_dialog->EnableText(m_controlId, enable); }

  private:
    T* m_dialog;
    unsigned int m_controlId;
};
