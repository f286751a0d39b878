// A sheet of property pages. Tests: dialogs_qt_test.cpp.
#include "brindle/platform/qt/sheet_window.h"

#include <QtCore/QPointer>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>

#include "brindle/platform/qt/dialog_window.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {

SheetWindow::SheetWindow(QWidget* owner, std::string_view caption, SheetEvents& events)
    : QDialog(owner), m_events(events), m_tabs(new QTabWidget), m_result(static_cast<int>(kControlCancel)) {
    setWindowTitle(QtText(caption));
    auto* const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply);
    m_apply = buttons->button(QDialogButtonBox::Apply);
    m_apply->setEnabled(false);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_tabs);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    connect(m_apply, &QPushButton::clicked, this, [this] { Apply(); });
}

SheetWindow::~SheetWindow() {
    m_tabs->disconnect(this);  // taking pages out is no turning
    for (DialogWindow* const page : m_pages) page->setParent(nullptr, Qt::Dialog);
}

void SheetWindow::AddPage(DialogWindow& page, std::string_view caption) {
    const QString text = caption.empty() ? page.windowTitle() : QtText(caption);
    m_tabs->addTab(&page, text);
    m_pages.push_back(&page);
}

int SheetWindow::Run(int firstPage) {
    m_front = std::clamp(firstPage, 0, m_tabs->count() - 1);
    m_tabs->setCurrentIndex(m_front);
    connect(m_tabs, &QTabWidget::currentChanged, this, [this](int page) { Turn(page); });
    m_events.OnEnter(static_cast<std::size_t>(m_front));
    const QPointer<SheetWindow> self(this);
    exec();
    return self ? m_result : static_cast<int>(kControlCancel);
}

void SheetWindow::Turn(int page) {
    if (m_events.OnLeave(static_cast<std::size_t>(m_front))) {
        m_front = page;
        m_events.OnEnter(static_cast<std::size_t>(page));
    } else {
        const QSignalBlocker quiet(m_tabs);
        m_tabs->setCurrentIndex(m_front);
    }
}

bool SheetWindow::Apply() {
    if (!m_events.OnLeave(static_cast<std::size_t>(m_front)) || !m_events.OnApply()) return false;
    m_modified.clear();
    m_apply->setEnabled(false);
    return true;
}

void SheetWindow::SetModified(const DialogWindow& page, bool modified) {
    if (modified) {
        m_modified.insert(&page);
    } else {
        m_modified.remove(&page);
    }
    m_apply->setEnabled(!m_modified.isEmpty());
}

void SheetWindow::accept() {
    if (!Apply()) return;
    m_result = static_cast<int>(kControlOk);
    done(m_result);
}

void SheetWindow::reject() {
    m_events.OnCancelled();
    m_result = static_cast<int>(kControlCancel);
    done(m_result);
}

}  // namespace brindle
