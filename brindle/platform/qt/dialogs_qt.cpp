// The dialogs service on Qt widgets. Handles are the widgets' addresses, checked before every use.
//
// Can: any template of the host. Cannot: make a window without a QApplication; then there is none. A window that is
// destroyed while one of its own controls tells something goes when the event loop comes round, but is no window at
// once. Tests: dialogs_qt_test.cpp, shutdown_qt_test.cpp.
#include "brindle/platform/qt/dialogs_qt.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QSpinBox>
#include <algorithm>
#include <utility>

#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/dialog_window.h"
#include "brindle/platform/qt/sheet_window.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

struct Registered {
    QHash<unsigned, FillDialog> templates;
    QHash<unsigned, std::string> captions;
};

// Made on first use, never destroyed.
Registered& Registry() {
    static Registered& registry = *new Registered;
    return registry;
}

// A dialog's window that is still one.
DialogWindow* WindowOf(HWND handle) {
    return dynamic_cast<DialogWindow*>(WidgetOf(handle));
}

QString TextOf(const QWidget* widget) {
    if (widget->isWindow() || dynamic_cast<const DialogWindow*>(widget)) return widget->windowTitle();
    if (const auto* const label = qobject_cast<const QLabel*>(widget)) return label->text();
    if (const auto* const line = qobject_cast<const QLineEdit*>(widget)) return line->text();
    if (const auto* const text = qobject_cast<const QPlainTextEdit*>(widget)) return text->toPlainText();
    if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
    if (const auto* const choice = qobject_cast<const QComboBox*>(widget)) return choice->currentText();
    if (const auto* const group = qobject_cast<const QGroupBox*>(widget)) return group->title();
    if (const auto* const number = qobject_cast<const QSpinBox*>(widget)) return number->text();
    return {};
}

void SetTextOf(QWidget* widget, const QString& text) {
    const QSignalBlocker quiet(widget);  // what the program sets is no doing of the user
    if (widget->isWindow() || dynamic_cast<DialogWindow*>(widget)) {
        widget->setWindowTitle(text);
    } else if (auto* const label = qobject_cast<QLabel*>(widget)) {
        label->setTextFormat(Qt::PlainText);  // texts of devices are no mark-up
        label->setText(text);
    } else if (auto* const line = qobject_cast<QLineEdit*>(widget)) {
        line->setText(text);
    } else if (auto* const plain = qobject_cast<QPlainTextEdit*>(widget)) {
        plain->setPlainText(text);
    } else if (auto* const button = qobject_cast<QAbstractButton*>(widget)) {
        button->setText(text);
    } else if (auto* const choice = qobject_cast<QComboBox*>(widget)) {
        choice->setCurrentText(text);
    } else if (auto* const group = qobject_cast<QGroupBox*>(widget)) {
        group->setTitle(text);
    } else if (auto* const number = qobject_cast<QSpinBox*>(widget)) {
        number->setValue(text.toInt());
    }
}

// No window outlives the application object; those that would are told that they are gone. Each may take others along.
void DestroyWindows() {
    const auto next = [] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* each) {
            return dynamic_cast<const DialogWindow*>(each) != nullptr;
        });
        return found == windows.end() ? nullptr : *found;
    };
    while (QWidget* const window = next()) delete window;
}

// Qt forgets it with each application object.
void DestroyWindowsWithTheApplication() {
    qRemovePostRoutine(&DestroyWindows);
    qAddPostRoutine(&DestroyWindows);
}

std::uint32_t Reference(QPalette::ColorRole role) {
    return ReferenceOf(QApplication::palette().color(QPalette::Active, role));
}

class DialogsOnQt final : public Dialogs {
  public:
    HWND Create(unsigned templateId, HWND owner, DialogEvents& events) override;
    void Destroy(HWND window) override;
    int RunModal(HWND window) override;
    void EndModal(HWND window, int result) override;
    void Show(HWND window, bool shown) override;
    int RunSheet(HWND owner, std::string_view caption, const std::vector<SheetPage>& pages, std::size_t first,
                 SheetEvents& events) override;
    void SetPageModified(HWND page, bool modified) override;
    HWND Control(HWND window, unsigned control) override;
    void Invalidate(HWND control, bool erase) override;
    std::string Text(HWND window) override;
    void SetText(HWND window, std::string_view text) override;
    bool IsEnabled(HWND window) override;
    void SetEnabled(HWND window, bool enabled) override;
    bool IsChecked(HWND control) override;
    void SetChecked(HWND control, bool checked) override;
    std::string Caption(unsigned captionId) override { return Registry().captions.value(captionId); }
    std::uint32_t SystemColour(int index) override;
    // The style paints the grounds; there is nothing a host could choose from.
    HBRUSH ControlBrush(unsigned) override { return nullptr; }
};

HWND DialogsOnQt::Create(unsigned templateId, HWND owner, DialogEvents& events) {
    const FillDialog fill = Registry().templates.value(templateId);
    if (!WidgetsAvailable() || !fill) return nullptr;
    DestroyWindowsWithTheApplication();
    QWidget* const parent = WidgetOf(owner);
    auto* const window = new DialogWindow(parent ? parent->window() : nullptr, events);
    fill(*window);
    window->TakeControls();
    return HandleOf(window);
}

void DialogsOnQt::Destroy(HWND handle) {
    DialogWindow* const window = WindowOf(handle);
    if (!window) return;
    window->LetGo();
    window->hide();  // ends its run
    if (DialogWindow::IsTelling()) {
        window->deleteLater();
    } else {
        delete window;
    }
}

int DialogsOnQt::RunModal(HWND handle) {
    DialogWindow* const window = WindowOf(handle);
    return window && !window->IsRunning() ? window->Run() : kDialogFailed;
}

void DialogsOnQt::EndModal(HWND handle, int result) {
    if (DialogWindow* const window = WindowOf(handle)) window->End(result);
}

void DialogsOnQt::Show(HWND handle, bool shown) {
    if (QWidget* const widget = WidgetOf(handle)) widget->setVisible(shown);
}

int DialogsOnQt::RunSheet(HWND owner, std::string_view caption, const std::vector<SheetPage>& pages,
                          std::size_t first, SheetEvents& events) {
    for (const SheetPage& page : pages)
        if (!WindowOf(page.window)) return kDialogFailed;
    if (pages.empty()) return kDialogFailed;
    QWidget* const parent = WidgetOf(owner);
    // Goes with its owner, should that go meanwhile.
    const QPointer<SheetWindow> sheet = new SheetWindow(parent ? parent->window() : nullptr, caption, events);
    for (const SheetPage& page : pages) sheet->AddPage(*WindowOf(page.window), page.caption);
    const int result = sheet->Run(static_cast<int>(std::min(first, pages.size() - 1)));
    delete sheet;
    return result;
}

void DialogsOnQt::SetPageModified(HWND handle, bool modified) {
    const DialogWindow* const page = WindowOf(handle);
    auto* const sheet = page ? dynamic_cast<SheetWindow*>(page->window()) : nullptr;
    if (sheet) sheet->SetModified(*page, modified);
}

HWND DialogsOnQt::Control(HWND handle, unsigned control) {
    const DialogWindow* const window = WindowOf(handle);
    return window ? HandleOf(window->Control(control)) : nullptr;
}

void DialogsOnQt::Invalidate(HWND handle, bool) {
    if (QWidget* const widget = WidgetOf(handle)) widget->update();
}

std::string DialogsOnQt::Text(HWND handle) {
    const QWidget* const widget = WidgetOf(handle);
    return widget ? FromQtText(TextOf(widget)) : std::string();
}

void DialogsOnQt::SetText(HWND handle, std::string_view text) {
    if (QWidget* const widget = WidgetOf(handle)) SetTextOf(widget, QtText(text));
}

bool DialogsOnQt::IsEnabled(HWND handle) {
    const QWidget* const widget = WidgetOf(handle);
    return widget && widget->isEnabled();
}

void DialogsOnQt::SetEnabled(HWND handle, bool enabled) {
    if (QWidget* const widget = WidgetOf(handle)) widget->setEnabled(enabled);
}

bool DialogsOnQt::IsChecked(HWND handle) {
    QWidget* const widget = WidgetOf(handle);
    if (const auto* const button = qobject_cast<QAbstractButton*>(widget)) return button->isChecked();
    const auto* const group = qobject_cast<QGroupBox*>(widget);
    return group && group->isCheckable() && group->isChecked();
}

void DialogsOnQt::SetChecked(HWND handle, bool checked) {
    QWidget* const widget = WidgetOf(handle);
    if (auto* const button = qobject_cast<QAbstractButton*>(widget)) button->setChecked(checked);
    if (auto* const group = qobject_cast<QGroupBox*>(widget)) group->setChecked(checked);
}

std::uint32_t DialogsOnQt::SystemColour(int index) {
    if (!WidgetsAvailable()) return UsualSystemColour(index);
    switch (index) {
        case kColourWindowText:
            return Reference(QPalette::WindowText);
        case kColourButtonFace:
            return Reference(QPalette::Button);
        case kColourButtonShadow:
            return Reference(QPalette::Dark);
        case kColourButtonHighlight:
            return Reference(QPalette::Light);
        case kColourDarkShadow:
            return Reference(QPalette::Shadow);
        default:
            return 0;
    }
}

constinit DialogsOnQt g_dialogsOnQt;

}  // namespace

void RegisterDialogTemplate(unsigned templateId, FillDialog fill) {
    Registry().templates.insert(templateId, std::move(fill));
}

void RegisterDialogCaption(unsigned captionId, std::string text) {
    Registry().captions.insert(captionId, std::move(text));
}

HWND HandleOf(QWidget* widget) noexcept {
    return reinterpret_cast<HWND>(widget);
}

QWidget* WidgetOf(HWND handle) {
    if (!handle || !WidgetsAvailable()) return nullptr;
    auto* const wanted = reinterpret_cast<QWidget*>(handle);
    if (!QApplication::allWidgets().contains(wanted)) return nullptr;
    for (const QWidget* each = wanted; each; each = each->parentWidget()) {
        const auto* const window = dynamic_cast<const DialogWindow*>(each);
        if (window && window->IsGone()) return nullptr;
    }
    return wanted;
}

Dialogs& QtDialogs() noexcept {
    return g_dialogsOnQt;
}

}  // namespace brindle
