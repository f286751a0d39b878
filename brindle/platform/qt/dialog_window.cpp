// A dialog's window. Tests: dialogs_qt_test.cpp.
#include "brindle/platform/qt/dialog_window.h"

#include <QtCore/QPointer>
#include <QtGui/QImage>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>

#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

constexpr char kIdProperty[] = "controlId";  // forms of hosts name it: do not change

int g_telling = 0;

class TellingScope {
  public:
    TellingScope() { ++g_telling; }
    ~TellingScope() { --g_telling; }
    TellingScope(const TellingScope&) = delete;
    TellingScope& operator=(const TellingScope&) = delete;
};

struct ControlKind {
    unsigned kind;
    QPalette::ColorRole text;
};

ControlKind KindOf(const QWidget* control) {
    if (qobject_cast<const QAbstractButton*>(control)) return {kKindButton, QPalette::ButtonText};
    if (qobject_cast<const QLabel*>(control) || qobject_cast<const QGroupBox*>(control))
        return {kKindStatic, QPalette::WindowText};
    if (qobject_cast<const QComboBox*>(control) || qobject_cast<const QAbstractItemView*>(control))
        return {kKindList, QPalette::Text};
    return {kKindEdit, QPalette::Text};
}

}  // namespace

unsigned ControlId(const QWidget& control) {
    return control.property(kIdProperty).toUInt();
}

void SetControlId(QWidget& control, unsigned controlId) {
    control.setProperty(kIdProperty, controlId);
}

DialogWindow::DialogWindow(QWidget* owner, DialogEvents& events) : QDialog(owner), m_events(events) {}

DialogWindow::~DialogWindow() {
    if (m_gone) return;
    LetGo();
    m_events.OnGone();
}

bool DialogWindow::IsTelling() noexcept {
    return g_telling > 0;
}

void DialogWindow::LetGo() {
    m_gone = true;
    for (QWidget* const child : findChildren<QWidget*>()) {
        auto* const window = dynamic_cast<DialogWindow*>(child);
        if (!window || window->m_gone) continue;
        window->LetGo();
        window->m_events.OnGone();
    }
}

void DialogWindow::TakeControls() {
    for (QDialogButtonBox* const box : findChildren<QDialogButtonBox*>()) {
        QPushButton* const ok = box->button(QDialogButtonBox::Ok);
        QPushButton* const cancel = box->button(QDialogButtonBox::Cancel);
        if (ok && ControlId(*ok) == 0) SetControlId(*ok, kControlOk);
        if (cancel && ControlId(*cancel) == 0) SetControlId(*cancel, kControlCancel);
    }
    for (QWidget* const control : findChildren<QWidget*>())
        if (const unsigned controlId = ControlId(*control)) Watch(control, controlId);
}

QWidget* DialogWindow::Control(unsigned controlId) const {
    if (controlId == 0) return nullptr;
    for (QWidget* const control : findChildren<QWidget*>())
        if (ControlId(*control) == controlId) return control;
    return nullptr;
}

// Signals that only the user's doings send, where there are such; else those of any change.
void DialogWindow::Watch(QWidget* control, unsigned controlId) {
    control->installEventFilter(this);
    const auto tell = [this, controlId] { Tell(controlId); };
    if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
        connect(button, &QAbstractButton::clicked, this, tell);
    } else if (auto* const line = qobject_cast<QLineEdit*>(control)) {
        connect(line, &QLineEdit::textEdited, this, tell);
    } else if (auto* const text = qobject_cast<QPlainTextEdit*>(control)) {
        connect(text, &QPlainTextEdit::textChanged, this, tell);
    } else if (auto* const choice = qobject_cast<QComboBox*>(control)) {
        connect(choice, &QComboBox::activated, this, tell);
        if (choice->isEditable()) connect(choice->lineEdit(), &QLineEdit::textEdited, this, tell);
    } else if (auto* const list = qobject_cast<QListWidget*>(control)) {
        connect(list, &QListWidget::itemSelectionChanged, this, tell);
    } else if (auto* const number = qobject_cast<QSpinBox*>(control)) {
        connect(number, &QSpinBox::valueChanged, this, tell);
    } else if (auto* const group = qobject_cast<QGroupBox*>(control)) {
        connect(group, &QGroupBox::clicked, this, tell);
    }
}

void DialogWindow::Tell(unsigned controlId) {
    if (m_gone) return;
    const TellingScope telling;
    m_events.OnCommand(controlId);
}

int DialogWindow::Run() {
    if (!m_ended) {
        m_running = true;
        const QPointer<DialogWindow> self(this);
        exec();
        if (!self || m_gone) return static_cast<int>(kControlCancel);
        m_running = false;
        if (!m_ended) return static_cast<int>(kControlCancel);  // the application ends
    }
    m_ended = false;
    return m_result;
}

void DialogWindow::End(int result) {
    if (m_ended) return;
    m_ended = true;
    m_result = result;
    if (m_running) done(result);
}

void DialogWindow::accept() {
    Tell(kControlOk);
}

// Escape, and the frame's close button.
void DialogWindow::reject() {
    Tell(kControlCancel);
}

// The keys that end a dialog are the sheet's business where this is a page.
void DialogWindow::keyPressEvent(QKeyEvent* event) {
    if (isWindow()) {
        QDialog::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

bool DialogWindow::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Paint && !m_gone) ColourText(static_cast<QWidget*>(object));
    return QDialog::eventFilter(object, event);
}

// Through the control's palette, so that every style draws it. A changed palette has the control drawn once more, with
// the same answer.
void DialogWindow::ColourText(QWidget* control) {
    const ControlKind kind = KindOf(control);
    const auto known = m_usual.constFind(control);
    const QPalette usual = known == m_usual.constEnd() ? control->palette() : *known;
    const unsigned long usualColour = ReferenceOf(usual.color(QPalette::Active, kind.text));
    QImage nowhere(1, 1, QImage::Format_RGB32);
    QPainter painter(&nowhere);
    PainterContext context(painter);
    context.DC().SetTextColor(usualColour);
    {
        const TellingScope telling;
        m_events.OnControlColour(context.DC(), HandleOf(control), kind.kind);
    }
    const unsigned long colour = context.DC().GetTextColor();
    if (colour == ReferenceOf(control->palette().color(QPalette::Active, kind.text))) return;
    if (colour == usualColour) {
        m_usual.remove(control);
        control->setPalette(usual);
        return;
    }
    QPalette palette = usual;
    palette.setColor(QPalette::Active, kind.text, ColourOf(static_cast<std::uint32_t>(colour)));
    palette.setColor(QPalette::Inactive, kind.text, ColourOf(static_cast<std::uint32_t>(colour)));
    if (known == m_usual.constEnd()) m_usual.insert(control, usual);
    control->setPalette(palette);
}

}  // namespace brindle
