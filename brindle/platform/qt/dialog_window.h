// DialogWindow: a dialog's or a page's window, filled by a template. It tells its receiver what the user does with its
// controls, and has the receiver colour their texts before they are drawn.
#pragma once

#include <QtCore/QHash>
#include <QtGui/QPalette>
#include <QtWidgets/QDialog>

#include "brindle/platform/dialogs.h"

namespace brindle {

class DialogWindow final : public QDialog {
  public:
    DialogWindow(QWidget* owner, DialogEvents& events);
    ~DialogWindow() override;  // tells OnGone unless LetGo was called

    // To be called when the template has filled the window.
    void TakeControls();
    QWidget* Control(unsigned controlId) const;

    // kControlCancel when the window went meanwhile.
    int Run();
    void End(int result);
    bool IsRunning() const noexcept { return m_running; }

    // From now on this is no window any more, nor are those it owns; theirs are told.
    void LetGo();
    bool IsGone() const noexcept { return m_gone; }
    // Whether one of the receivers is being called.
    static bool IsTelling() noexcept;

    void accept() override;
    void reject() override;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Watch(QWidget* control, unsigned controlId);
    void Tell(unsigned controlId);
    void ColourText(QWidget* control);

    DialogEvents& m_events;
    QHash<const QWidget*, QPalette> m_usual;  // of controls whose text has another colour
    int m_result = 0;
    bool m_running = false;
    bool m_ended = false;
    bool m_gone = false;
};

// The number of a control, or 0.
unsigned ControlId(const QWidget& control);

}  // namespace brindle
