// Texts and colours of the library as Qt has them. Tests: dialogs_qt_test.cpp and desktop_qt_test.cpp.
#include "brindle/platform/qt/widget_text.h"

#include <QtWidgets/QApplication>

#include "brindle/platform/code_page.h"

namespace brindle {

QString QtText(std::string_view bytes) {
    const std::string utf8 = ToUtf8(bytes);
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

bool FromQtText(const QString& text, std::string& bytes) {
    const QByteArray utf8 = text.toUtf8();
    bytes.clear();
    return CurrentCodePage().AppendBytes({utf8.data(), static_cast<std::size_t>(utf8.size())}, bytes);
}

std::string FromQtText(const QString& text) {
    std::string bytes;
    FromQtText(text, bytes);
    return bytes;
}

QColor ColourOf(std::uint32_t reference) {
    return QColor::fromRgb(static_cast<int>(reference & 0xFF), static_cast<int>(reference >> 8 & 0xFF),
                           static_cast<int>(reference >> 16 & 0xFF));
}

std::uint32_t ReferenceOf(const QColor& colour) {
    return static_cast<std::uint32_t>(colour.red() | colour.green() << 8 | colour.blue() << 16);
}

bool WidgetsAvailable() {
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

}  // namespace brindle
