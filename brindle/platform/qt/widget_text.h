// Texts and colours of the library as Qt has them, and back.
#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <cstdint>
#include <string>
#include <string_view>

namespace brindle {

// From bytes in the ANSI code page.
QString QtText(std::string_view bytes);
// False when a character has no byte there; "?" stands for it.
bool FromQtText(const QString& text, std::string& bytes);
std::string FromQtText(const QString& text);

// Colours as 0x00BBGGRR.
QColor ColourOf(std::uint32_t reference);
std::uint32_t ReferenceOf(const QColor& colour);

// Whether there is an application object that widgets can be made with.
bool WidgetsAvailable();

}  // namespace brindle
