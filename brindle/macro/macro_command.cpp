// Macro command lines: macros, expansion, start. Tested in macro_command_test.cpp with the fake services, in
// macro_start_test.cpp with real programs.
#include "brindle/macro/macro_command.h"

#include <algorithm>
#include <memory>

#include "brindle/library/string_table.h"
#include "brindle/macro/macro_definition.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/macro/path_expansion.h"
#include "brindle/macro/shell_command.h"
#include "brindle/macro/substitute_call.h"
#include "brindle/platform/desktop.h"
#include "brindle/platform/files.h"

namespace brindle {
namespace {

void WarnOfUndefinedMacro(HWND owner, std::string_view name) {
    std::string text = LoadStringResource(kTextMacroNotDefined).str();
    text.replace(text.find("%s"), 2, name);
    CurrentDesktop().ShowMessage(owner, MessageIcon::kWarning, text);
}

// Replaces the command's macro by its definition.
void ResolveMacro(HWND owner, std::string& command) {
    const std::string token(MacroToken(command));
    if (token.empty()) return;
    const std::string name(MacroName(token));
    std::string definition;
    if (ReadMacro(name, definition)) return ReplaceEvery(command, token, definition);
    // Kept: the command runs all the same, with the macro in it.
    WarnOfUndefinedMacro(owner, name);
}

int RunCommand(HWND owner, const std::string& line, const FormatArguments& arguments) {
    const char* directory = arguments.path ? arguments.path : "";
    std::unique_ptr<KeptDirectory> before;
    if (*directory) {
        before = CurrentFiles().KeepDirectory();
        CurrentFiles().SetCurrentDirectory(directory);
    }
    const std::string command = SubstitutePath(line.c_str(), true, arguments);
    if (IMacroObserver* observer = g_macroSlots.observer) observer->OnCommand(command.c_str());
    return StartShellCommand(owner, command, directory, line);
}

}  // namespace
}  // namespace brindle

int ExecuteMacroCommandLine(HWND owner, const char* commandLine, const FullAddress_t* address,
                            const char* path, const char* caption, const char* text, const char* help,
                            int status, const char* r, int n, int q) {
    using namespace brindle;
    const FormatArguments arguments = {address, path, caption, text, help, status, r, n, q, nullptr};
    const std::string copy = commandLine ? commandLine : "";
    int code = 0;
    for (const std::string_view part : SplitList(copy, ';')) {
        std::string command(WithoutSpaces(part));
        if (command.empty()) continue;
        ResolveMacro(owner, command);
        if (!command.empty()) code = RunCommand(owner, std::string(WithoutSpaces(command)), arguments);
    }
    return code;
}

CStringA ExpandMacroFileName(HWND, const char* name, const FullAddress_t* address, const char* path,
                             const char* caption, const char* text, const char* help, int status,
                             const char* r) {
    using namespace brindle;
    std::string file(WithoutSpaces(name ? name : ""));
    if (file.size() >= 3 && file.front() == '<' && file.back() == '>') {
        const std::string macro = file.substr(1, file.size() - 2);
        file.clear();
        ReadMacro(macro, file);
    }
    if (file.empty()) return {};
    const FormatArguments arguments = {address, path, caption, text, help, status, r, -1, -1, nullptr};
    return SubstitutePath(std::string(WithoutSpaces(file)).c_str(), true, arguments);
}
