// One program start. Tested in macro_command_test.cpp.
#include "brindle/macro/shell_command.h"

#include <memory>

#include "brindle/framework/number_text.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/macro_command.h"
#include "brindle/macro/macro_definition.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/macro/path_expansion.h"
#include "brindle/macro/start_filter.h"
#include "brindle/platform/desktop.h"
#include "brindle/platform/files.h"
#include "brindle/platform/programs.h"

namespace brindle {
namespace {

constexpr std::string_view kHide = "%H";
constexpr int kHighestFailure = 32;

const char* NameOf(int code) {
    if (code > kHighestFailure) return "OK";
    switch (code) {
        case kProgramNoMemory:
            return "Out of Memory";
        case kProgramNotFound:
            return "File Not Found";
        case kProgramFolderNotFound:
            return "Path Not Found";
        case kProgramBadFormat:
            return "Bad Format";
        default:
            return "Unknown Error";
    }
}

bool IsAllowed(const ProgramPlan& plan, const std::string& command, const std::string& line,
               CStringA& reason) {
    IStartFilter* const filter = g_macroSlots.startFilter;
    if (!filter) return true;
    return filter->Allow({plan.program.c_str(), plan.arguments, command.c_str(), line.c_str()}, reason);
}

int StartOrOpen(HWND owner, const ProgramPlan& plan, const std::string& command, const char* directory,
                bool hidden) {
    Programs& programs = CurrentPrograms();
    int code = programs.Start(plan, hidden);
    if (code <= kHighestFailure) code = programs.Open(command, directory, hidden);
    if (code <= kHighestFailure)
        CurrentDesktop().ShowMessage(
            owner, MessageIcon::kError,
            "Failed to execute command line '" + command + "'. Returned code " + PrintInt(code) + ".");
    return code;
}

}  // namespace

int StartShellCommand(HWND owner, std::string command, const char* directory, const std::string& line) {
    const char* const folder = directory ? directory : "";
    const std::unique_ptr<KeptDirectory> before = CurrentFiles().KeepDirectory();
    CurrentFiles().SetCurrentDirectory(folder);  // an unusable one is ignored

    const bool hidden = command.find(kHide) != std::string::npos;
    ReplaceEvery(command, kHide, "");
    command = WithoutSpaces(command);
    const ProgramPlan plan = CurrentPrograms().Plan(command);
    CStringA result;
    int code = kProgramAccessDenied;
    if (IsAllowed(plan, command, line, result)) {
        code = StartOrOpen(owner, plan, command, folder, hidden);
        result = NameOf(code);
    }
    if (IBrindleData* data = RegisteredBrindleData())
        data->WriteCommandLog((command + "," + folder + "," + result.str()).c_str());
    return code;
}

}  // namespace brindle

int ExecuteShellCommand(HWND owner, const char* command, const char* directory) {
    const std::string line = command ? command : "";
    return brindle::StartShellCommand(owner, line, directory, line);
}
