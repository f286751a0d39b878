// Texts of the library as Qt has them, and back.
#pragma once

#include <QtCore/QString>
#include <string>
#include <string_view>

namespace brindle {

// From bytes in the ANSI code page.
QString QtText(std::string_view bytes);
// False when a character has no byte there; "?" stands for it.
bool FromQtText(const QString& text, std::string& bytes);
std::string FromQtText(const QString& text);

// Whether there is an application object that widgets can be made with.
bool WidgetsAvailable();

}  // namespace brindle
