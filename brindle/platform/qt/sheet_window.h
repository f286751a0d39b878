// SheetWindow: property pages behind tabs, with OK, Cancel and Apply.
#pragma once

#include <QtCore/QSet>
#include <QtWidgets/QDialog>
#include <string_view>
#include <vector>

#include "brindle/platform/dialogs.h"

class QPushButton;
class QTabWidget;

namespace brindle {

class DialogWindow;

class SheetWindow final : public QDialog {
  public:
    SheetWindow(QWidget* owner, std::string_view caption, SheetEvents& events);
    ~SheetWindow() override;  // the pages are hidden windows of their own again

    void AddPage(DialogWindow& page, std::string_view caption);
    int Run(int firstPage);
    void SetModified(const DialogWindow& page, bool modified);

    void accept() override;
    void reject() override;

  private:
    void Turn(int page);
    bool Apply();

    SheetEvents& m_events;
    QTabWidget* m_tabs;
    QPushButton* m_apply;
    std::vector<DialogWindow*> m_pages;
    QSet<const DialogWindow*> m_modified;
    int m_front = 0;
    int m_result = 0;
};

}  // namespace brindle
