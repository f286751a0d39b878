// The desktop service on Qt widgets: message boxes, and boxes to open and save files; the desktop's own file box where
// Qt knows it.
//
// Can: every operation, with a QApplication; without one it is the console's. Flags of file boxes that count: 0x2 asks
// before a file is replaced, 0x1000 takes only a file that exists. A path of more than 259 bytes in the code page, or
// with a character that has no byte there, is refused with a message, and the box stays. Tests: desktop_qt_test.cpp.
#include "brindle/platform/qt/desktop_qt.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMessageBox>

#include "brindle/platform/backend.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/file_filters.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

constexpr unsigned long kFlagOverwritePrompt = 0x2, kFlagFileMustExist = 0x1000;
constexpr std::size_t kLongestPath = 259;
constexpr qsizetype kMostCharacters = 4000, kMostLines = 25, kMostDetails = 1 << 18;

QWidget* OwnerOf(HWND handle) {
    QWidget* const widget = WidgetOf(handle);
    return widget ? widget->window() : nullptr;
}

// As much of a text as fits on a screen.
QString Beginning(const QString& text) {
    qsizetype end = std::min(text.size(), kMostCharacters), lines = 0;
    for (qsizetype i = 0; i < end; ++i)
        if (text[i] == '\n' && ++lines == kMostLines) end = i;
    return end < text.size() ? text.left(end) + QChar(0x2026) : text;
}

void ShowBox(QWidget* owner, QMessageBox::Icon icon, const QString& text) {
    const QPointer<QMessageBox> box =
        new QMessageBox(icon, QGuiApplication::applicationDisplayName(), {}, QMessageBox::Ok, owner);
    box->setTextFormat(Qt::PlainText);  // texts of devices are no mark-up
    const QString beginning = Beginning(text);
    box->setText(beginning);
    if (beginning.size() != text.size()) box->setDetailedText(text.left(kMostDetails));
    box->exec();
    delete box;
}

// The system's path of a host path; names in the code page stay what they are.
QString SystemPath(const std::string& hostPath) {
    return QFile::decodeName(CurrentFiles().SystemPath(hostPath, true).c_str());
}

void Prepare(QFileDialog& dialog, const FileBoxRequest& request) {
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    const bool mustExist = !request.save && (request.flags & kFlagFileMustExist) != 0;
    dialog.setFileMode(mustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (request.flags & kFlagOverwritePrompt) == 0);
    const QStringList filters = NameFilters(request.filter);
    if (!filters.isEmpty()) dialog.setNameFilters(filters);
    if (!request.title.empty()) dialog.setWindowTitle(QtText(request.title));
    if (const QString folder = SystemPath(request.initialDirectory); QFileInfo(folder).isDir())
        dialog.setDirectory(folder);
    if (request.file.empty()) return;
    const QFileInfo file(SystemPath(request.file));
    const bool named = request.file.find_first_of("/\\:") != std::string::npos;
    if (named && file.dir().exists()) dialog.setDirectory(file.absolutePath());
    dialog.selectFile(file.fileName());
}

// Why a chosen path cannot be handed over; empty: `bytes` is it.
QString Refusal(const QString& path, std::string& bytes) {
    if (!FromQtText(path, bytes))
        return "The file cannot be used: its name has a character that this system's code page lacks:\n" +
               path;
    if (bytes.size() > kLongestPath)
        return QString("The file cannot be used: its path has %1 characters, more than %2:\n%3")
            .arg(bytes.size())
            .arg(kLongestPath)
            .arg(path);
    return {};
}

QWidget* MainOf(QWidget* window) {
    while (window && window->parentWidget()) window = window->parentWidget()->window();
    return window;
}

class DesktopOnQt final : public Desktop {
  public:
    void ShowMessage(HWND owner, MessageIcon icon, std::string_view text) override;
    bool ChooseFile(const FileBoxRequest& request, std::string& file) override;
    unsigned long FileBoxError() override;
    HWND MainWindow() override;

  private:
    bool m_noDesktop = false;  // of the last file box
};

void DesktopOnQt::ShowMessage(HWND owner, MessageIcon icon, std::string_view text) {
    if (!WidgetsAvailable()) return BackendDesktop().ShowMessage(owner, icon, text);
    ShowBox(OwnerOf(owner), icon == MessageIcon::kError ? QMessageBox::Critical : QMessageBox::Warning,
            QtText(text));
}

bool DesktopOnQt::ChooseFile(const FileBoxRequest& request, std::string& file) {
    m_noDesktop = !WidgetsAvailable();
    if (m_noDesktop) return false;
    const QPointer<QFileDialog> dialog = new QFileDialog(OwnerOf(request.owner));
    Prepare(*dialog, request);
    bool chosen = false;
    while (!chosen && dialog && dialog->exec() == QDialog::Accepted && dialog) {
        std::string bytes;
        const QStringList files = dialog->selectedFiles();
        if (files.isEmpty()) continue;
        const QString refusal = Refusal(files.first(), bytes);
        chosen = refusal.isEmpty();
        if (chosen) {
            file = std::move(bytes);
        } else {
            ShowBox(dialog, QMessageBox::Warning, refusal);
        }
    }
    delete dialog;
    return chosen;
}

unsigned long DesktopOnQt::FileBoxError() {
    return m_noDesktop ? kFileBoxNoDesktop : 0;
}

// The window that the one in use belongs to; else a visible main window.
HWND DesktopOnQt::MainWindow() {
    if (!WidgetsAvailable()) return nullptr;
    if (QWidget* const active = QApplication::activeWindow()) return HandleOf(MainOf(active));
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window)) return HandleOf(window);
    return nullptr;
}

constinit DesktopOnQt g_desktopOnQt;

}  // namespace

Desktop& QtDesktop() noexcept {
    return g_desktopOnQt;
}

}  // namespace brindle
