// DialogOwner: the window in front as the owner of a dialog, which then stays before it and shuts its input off.
#pragma once

#include <brindle/framework/ui/wnd.h>
#include <brindle/platform/qt/dialog_templates.h>

#include <QtWidgets/QApplication>

namespace brindle::map {

class DialogOwner {
  public:
    DialogOwner() {
        QWidget* const modal = QApplication::activeModalWidget();
        m_window.Attach(HandleOf(modal ? modal : QApplication::activeWindow()));
    }
    // Null: no window is in front. Valid as long as this object.
    CWnd* Window() noexcept { return m_window.GetSafeHwnd() ? &m_window : nullptr; }

  private:
    CWnd m_window;
};

}  // namespace brindle::map
