// The common part of "brindle macro" and "brindle path". Tests: command_macro_test.cpp, command_path_test.cpp.
#include "apps/brindle/macro_options.h"

#include <brindle/behaviour/action_files.h>
#include <brindle/library/host_path_access.h>
#include <brindle/library/host_text.h>
#include <brindle/macro/substitute_path.h>

#include "apps/brindle/cli.h"

namespace brindle::tool {

void MacroOptions::Declare(Command& command) {
    command.Option("--ini", "FILE", ini, "the INI file with [SearchPath] and [CommandActions]; required");
    command.Options("--drive", "LETTER=FOLDER", drives, "maps a drive letter to a folder");
    command.Flag("--trace", trace, "show every look-up, pass and candidate on the standard error");
}

void MacroOptions::Apply() const {
    if (!ini) throw Failure(kWrongUsage, "--ini", "is required");
    for (const std::string& text : drives) {
        const auto [letter, folder] = ToAssignment(text, "--drive");
        if (letter.size() != 1 || !MapDriveLetter(letter[0], SystemPathOf(AbsoluteHostPath(folder))))
            throw Failure(kWrongUsage, "--drive", "\"" + letter + "\" is not the letter of a drive");
    }
    constexpr std::uint64_t kLargest = 16U << 20;
    std::string bytes;
    if (const Result result = ReadHostFile(*ini, kLargest, bytes); !result.ok())
        throw Failure(kWrongUsage, "--ini", result.text);
    // Commands run in the folder of --path: a relative name must not follow them there.
    const std::string file = AbsoluteHostPath(*ini);
    SetSearchPathIniFile(file.c_str());
    SetCommandActionsIniFile(file.c_str());
}

MacroTrace::MacroTrace(bool show) : m_show(show), m_before(RegisterMacroObserver(this)) {}

MacroTrace::~MacroTrace() {
    RegisterMacroObserver(m_before);
}

void MacroTrace::Show(const std::string& stage, const std::string& text, const std::string& note) const {
    if (!m_show) return;
    constexpr std::size_t kWidth = 9;
    PrintError("brindle: " + Paint(Stream::kError, Colour::kCyan, Padded(stage, kWidth)) + ": " + text +
               (note.empty() ? "" : Paint(Stream::kError, Colour::kDim, "  (" + note + ")")));
}

void MacroTrace::OnMacro(const char* name, const char* definition) {
    Show("macro",
         "<" + std::string(name) + "> " + (definition ? "= " + std::string(definition) : "is not defined"));
}

void MacroTrace::OnSearchPath(const char* name, const char* directories) {
    Show("look up",
         "$" + std::string(name) + "$ " + (directories ? "= " + std::string(directories) : "is not defined"));
}

void MacroTrace::OnPass(int pass, const char* text) {
    Show("pass " + std::to_string(pass), text);
}

void MacroTrace::OnEndless(const char*) {
    Complain("search paths", "the definitions do not come to an end; the text is left as it then stands");
}

void MacroTrace::OnCandidate(const char* candidate, bool exists) {
    Show("candidate", candidate, exists ? "exists: wins" : "does not exist");
}

void MacroTrace::OnCommand(const char* command) {
    m_commands.emplace_back(command);
    Show("command", command);
}

}  // namespace brindle::tool
