// brindle macro: command macros, run or expanded. Tests: command_macro_test.cpp.
#include <brindle/library/host_text.h>
#include <brindle/macro/macro_command.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/macro_options.h"
#include "apps/brindle/watched_programs.h"

namespace brindle::tool {
namespace {

using Json = nlohmann::ordered_json;

struct MacroRunOptions {
    std::string line;
    MacroOptions macros;
    bool dryRun = false;
    bool wait = false;
    bool json = false;
};

struct MacroExpandOptions {
    std::string name;
    MacroOptions macros;
};

int RunLine(const std::string& line, const FieldOptions& fields) {
    const FormatCall& call = fields.call;
    try {
        return ExecuteMacroCommandLine(nullptr, line.c_str(), fields.Address(),
                                       FieldOptions::Pointer(call.path), FieldOptions::Pointer(call.caption),
                                       FieldOptions::Pointer(call.text), FieldOptions::Pointer(call.help),
                                       call.status, FieldOptions::Pointer(call.r), call.n, call.q);
    } catch (const std::invalid_argument&) {
        throw Failure(kFailed, "macro run", "the present time has no local time");
    }
}

// The last outcome of the last command: how its start, or the opening behind it, went.
Json ToJson(const std::string& command, const WatchedPrograms::Outcome& outcome, bool dryRun) {
    Json json;
    json["command"] = TextToSystem(command);
    if (!outcome.opened) {
        json["program"] = TextToSystem(outcome.plan.program);
        Json arguments = Json::array();
        for (const std::string& argument : outcome.plan.arguments)
            arguments.push_back(TextToSystem(argument));
        json["arguments"] = std::move(arguments);
    } else {
        json["opened"] = true;
    }
    if (outcome.hidden) json["hidden"] = true;
    if (dryRun)
        json["dryRun"] = true;
    else
        json["code"] = outcome.code;
    return json;
}

int RunMacro(MacroRunOptions& options) {
    options.macros.Apply();
    const FieldSurroundings surroundings(options.macros.fields);
    MacroTrace trace(options.macros.trace);
    constexpr int kHighestFailure = 32;
    WatchedPrograms programs(options.dryRun, [&](const WatchedPrograms::Outcome& outcome) {
        const std::string command = trace.Commands().empty() ? std::string() : trace.Commands().back();
        const bool goesOn = !outcome.opened && outcome.code <= kHighestFailure;  // it will be opened next
        if (options.json && !goesOn)
            PrintUtf8(ToJson(command, outcome, options.dryRun)
                          .dump(-1, ' ', false, Json::error_handler_t::replace));
        else if (options.dryRun && !options.json)
            Print(command);
        FlushOutput();  // before the next program writes
    });
    const int code = RunLine(options.line, options.macros.fields);
    if (options.wait) programs.WaitForAll();
    return code > kHighestFailure ? kAnswered : kFailed;
}

int RunExpand(MacroExpandOptions& options) {
    options.macros.Apply();
    FieldOptions& fields = options.macros.fields;
    const FieldSurroundings surroundings(fields);
    const FormatCall& call = fields.call;
    const MacroTrace trace(options.macros.trace);
    CStringA file;
    try {
        file = ExpandMacroFileName(nullptr, options.name.c_str(), fields.Address(),
                                   FieldOptions::Pointer(call.path), FieldOptions::Pointer(call.caption),
                                   FieldOptions::Pointer(call.text), FieldOptions::Pointer(call.help),
                                   call.status, FieldOptions::Pointer(call.r));
    } catch (const std::invalid_argument&) {
        throw Failure(kFailed, "macro expand", "the present time has no local time");
    }
    if (file.IsEmpty()) throw Failure(kFailed, "macro expand", "\"" + options.name + "\" stands for nothing");
    Print(file.view());
    return kAnswered;
}

void DeclareMacroRun(Command& macro) {
    auto options = std::make_shared<MacroRunOptions>();
    Command& run = macro.Add("run", "Commands", "run the commands of a line");
    run.Text("LINE", options->line, "commands, separated by \";\"");
    options->macros.Declare(run);
    run.Flag("--dry-run", options->dryRun, "print each expanded command and start nothing");
    run.Flag("--wait", options->wait, "wait until the started programs have ended");
    run.Flag("--json", options->json, "print a JSON object for each command");
    options->macros.fields.Declare(run);
    FieldOptions::Explain(run);
    run.Note(
        "Commands run in the folder of --path, without a shell. Programs have this command's streams, or "
        "none when "
        "\"%H\" stands in their command, and are not waited for. What is no program is opened with the "
        "desktop's "
        "opener. Exit 0 when the last command was started, else 1; with --dry-run 1 when there was none.");
    run.Example("brindle macro run '<Editor> $LIB$/a.txt \"%c\"' --ini macros.ini --caption 'Camera 1'",
                "starts the program that Editor stands for");
    run.Example("brindle macro run '<Bell>;<Editor>' --ini macros.ini --dry-run", "shows both commands");
    run.Run([options] { return RunMacro(*options); });
}

void DeclareMacroExpand(Command& macro) {
    auto options = std::make_shared<MacroExpandOptions>();
    Command& expand = macro.Add("expand", "Commands", "the file a macro or path stands for");
    expand.Text("NAME", options->name, "<NAME> of a macro, or a path");
    options->macros.Declare(expand);
    options->macros.fields.Declare(expand);
    FieldOptions::Explain(expand);
    expand.Note(
        "Prints the first candidate that exists, else all of them. Exit 1 when NAME is a macro that is not "
        "defined.");
    expand.Example("brindle macro expand '<Editor>' --ini macros.ini", "notepad.exe");
    expand.Run([options] { return RunExpand(*options); });
}

}  // namespace

void DeclareMacro(Command& tool) {
    Command& macro = tool.Add("macro", kGroupQuestions, "run or expand macro command lines");
    DeclareMacroRun(macro);
    DeclareMacroExpand(macro);
}

}  // namespace brindle::tool
