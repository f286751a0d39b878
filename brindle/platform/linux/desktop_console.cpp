// The desktop of a program without one: messages are lines on the standard error, "brindle: warning: TEXT".
//
// Cannot: ask the user anything; choosing a file fails. Tests: desktop_test.cpp.
#include <unistd.h>

#include <string>

#include "brindle/platform/backend.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

// On one line, and without characters that would command the terminal.
std::string OneLine(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        const bool isBreak = text[i] == '\n' || text[i] == '\r' || text[i] == '\t';
        const bool isControl = static_cast<unsigned char>(text[i]) < 0x20 || text[i] == 0x7F;
        line += isBreak ? ' ' : isControl ? '?' : text[i];
    }
    return line;
}

class ConsoleDesktop final : public Desktop {
  public:
    void ShowMessage(HWND, MessageIcon icon, std::string_view text) override {
        const char* kind = icon == MessageIcon::kWarning ? "warning" : "error";
        const std::string line = std::string("brindle: ") + kind + ": " + ToSystemText(OneLine(text)) + "\n";
        // In one piece, so that lines of several programs do not mix; there is nobody to tell that it failed.
        static_cast<void>(!::write(STDERR_FILENO, line.data(), line.size()));
    }
    bool ChooseFile(const FileBoxRequest&, std::string&) override { return false; }
    unsigned long FileBoxError() override { return kFileBoxNoDesktop; }
    HWND MainWindow() override { return nullptr; }
};

constinit ConsoleDesktop g_consoleDesktop;

}  // namespace

Desktop& BackendDesktop() noexcept {
    return g_consoleDesktop;
}

}  // namespace brindle
