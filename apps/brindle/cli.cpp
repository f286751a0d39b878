// Declares commands over CLI11, parses the arguments and runs the command they name. Tests: tool_test.cpp.
#include "apps/brindle/cli.h"

#include <brindle/library/module.h>

#include <algorithm>
#include <new>

#include <CLI/CLI.hpp>

#include "apps/brindle/cli_arguments.h"
#include "apps/brindle/cli_finish.h"
#include "apps/brindle/cli_help.h"

namespace brindle::tool {
namespace {

// CLI11 hands over all values of an option, each with the guard of cli_arguments.h.
CLI::callback_t Taker(std::function<void(const std::string&, const std::string&)> take, std::string what) {
    return [take = std::move(take), what = std::move(what)](const CLI::results_t& values) {
        for (const std::string& value : values) take(ToBytes(value.substr(1), what), what);
        return true;
    };
}

}  // namespace

Command::Command(CLI::App& app, std::string help) : m_app(app), m_help(std::move(help)) {
    m_app.set_help_flag("--help,-h", "print this help");
    m_options = {{"--help", Kind::kFlag}, {"-h", Kind::kFlag}};
}

Command::~Command() = default;

Command& Command::Add(const std::string& name, const std::string& group, const std::string& help) {
    CLI::App& app = *m_app.add_subcommand(name, help);
    app.group(group);
    m_subcommands.push_back(std::make_unique<Command>(app, help));
    m_subcommands.back()->m_parent = this;
    return *m_subcommands.back();
}

CLI::Option* Command::AddText(const std::string& name, const std::string& help, ValueTaker take) {
    m_hasTexts = true;
    return m_app.add_option(name, Taker(std::move(take), name), help);
}

CLI::Option* Command::AddOption(const std::string& name, const std::string& what, const std::string& help,
                                Kind kind, ValueTaker take) {
    m_options.emplace_back(name, kind);
    const auto policy =
        kind == Kind::kSingle ? CLI::MultiOptionPolicy::TakeLast : CLI::MultiOptionPolicy::TakeAll;
    return m_app.add_option(name, Taker(std::move(take), name), help)
        ->type_name(what)
        ->multi_option_policy(policy);
}

void Command::Text(const std::string& name, std::string& value, const std::string& help) {
    AddText(name, help, [&value](const std::string& given, const std::string&) {
        value = given;
    })->required();
}

void Command::Text(const std::string& name, std::optional<std::string>& value, const std::string& help) {
    AddText(name, help, [&value](const std::string& given, const std::string&) { value = given; });
}

void Command::Texts(const std::string& name, std::vector<std::string>& values, const std::string& help,
                    Presence presence) {
    AddText(name, help, [&values](const std::string& given, const std::string&) { values.push_back(given); })
        ->required(presence == Presence::kRequired)
        ->allow_extra_args()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void Command::Option(const std::string& name, const std::string& what, std::optional<std::string>& value,
                     const std::string& help) {
    AddOption(name, what, help, Kind::kSingle,
              [&value](const std::string& given, const std::string&) { value = given; });
}

void Command::Option(const std::string& name, const std::string& what, std::optional<int>& value,
                     const std::string& help) {
    AddOption(name, what, help, Kind::kSingle, [&value](const std::string& given, const std::string& option) {
        value = ToNumber(given, option);
    });
}

void Command::Options(const std::string& name, const std::string& what, std::vector<std::string>& values,
                      const std::string& help) {
    AddOption(name, what, help, Kind::kRepeated,
              [&values](const std::string& given, const std::string&) { values.push_back(given); });
}

void Command::ListOption(const std::string& name, const std::string& what, std::vector<std::string>& values,
                         const std::string& help, Presence presence) {
    AddOption(name, what, help, Kind::kList, [&values](const std::string& given, const std::string&) {
        values.push_back(given);
    })->required(presence == Presence::kRequired);
}

void Command::Flag(const std::string& name, bool& value, const std::string& help) {
    m_options.emplace_back(name, Kind::kFlag);
    m_app.add_flag_callback(
        name, [&value] { value = true; }, help);
}

void Command::Note(const std::string& paragraph) {
    m_notes.push_back(paragraph);
}

void Command::Example(const std::string& line, const std::string& meaning) {
    m_examples.push_back({line, meaning});
}

void Command::Run(std::function<int()> function) {
    m_run = std::move(function);
}

std::string Command::Path() const {
    return m_parent ? m_parent->Path() + " " + m_app.get_name() : m_app.get_name();
}

Command::Kind Command::KindOf(std::string_view option) const {
    const auto found = std::find_if(m_options.begin(), m_options.end(),
                                    [option](const auto& known) { return known.first == option; });
    return found == m_options.end() ? Kind::kUnknown : found->second;
}

bool Command::IsList(const CLI::Option& option) const {
    return KindOf(option.get_name()) == Kind::kList;
}

namespace {

// The texts that are more than the command takes: the first of them, or one that looks like a mistyped option.
[[noreturn]] void ReportTooMany(const Command& command, const std::vector<std::string>& left) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.App().get_options())
        if (!option->get_positional()) names.push_back("--" + option->get_lnames().front());
    for (const std::string& guarded : left) {
        const std::string argument = ShownArgument(guarded.substr(1));
        if (!argument.starts_with("-")) continue;
        const std::string meant = NearestWord(argument, names);
        if (!meant.empty())
            throw Failure(kWrongUsage, argument, "one argument too many; did you mean " + meant + "?");
    }
    throw Failure(kWrongUsage, ShownArgument(left.front().substr(1)),
                  "one argument too many (" + command.Path() + " --help)");
}

// What CLI11 found missing or left over.
[[noreturn]] void ReportUsage(const Command& command, const CLI::ParseError& error) {
    const std::vector<std::string> left = command.App().remaining();
    if (!left.empty()) ReportTooMany(command, left);
    const std::string help = " (" + command.Path() + " --help)";
    for (const CLI::Option* option : command.App().get_options()) {
        if (!option->get_required() || option->count() > 0) continue;
        const std::string name = option->get_positional() ? option->get_name(true) : option->get_name();
        throw Failure(kWrongUsage, command.App().get_name(), name + " is missing" + help);
    }
    throw Failure(kWrongUsage, command.App().get_name(), error.what() + help);
}

int RunArguments(const Program& program, const Command& tool, CLI::App& app,
                 const std::vector<std::string>& arguments) {
    ParsedArguments parsed = ParseArguments(tool, arguments);
    if (parsed.wantsVersion) {
        Print(std::string(program.name) + " " + Module::Instance().VersionText());
        return kAnswered;
    }
    if (parsed.wantsHelp || !parsed.command->CanExecute()) {
        for (const std::string& line : HelpLines(*parsed.command)) Print(line);
        return kAnswered;
    }
    try {
        std::reverse(parsed.plain.begin(), parsed.plain.end());  // the order in which CLI11 takes a vector
        app.parse(std::move(parsed.plain));
    } catch (const CLI::ParseError& error) {
        ReportUsage(*parsed.command, error);
    }
    return parsed.command->Execute();
}

int RunGuarded(const Program& program, const std::vector<std::string>& arguments) {
    try {
        CLI::App app(program.help, program.name);
        Command tool(app, app.get_description());
        bool unused = false;  // asked for before CLI11 sees the arguments
        tool.Flag("--version", unused, "print the version");
        program.declare(tool);
        return RunArguments(program, tool, app, arguments);
    } catch (const Failure& failure) {
        Complain(failure.What(), failure.Why());
        return failure.Code();
    } catch (const std::bad_alloc&) {
        Complain("memory", "there is not enough of it");
    } catch (const std::exception& error) {
        Complain("internal error", error.what());
    }
    return kWrongUsage;
}

}  // namespace

int RunProgram(const Program& program, int argc, char** argv) {
    SetProgramName(program.name);
    const int code = RunGuarded(program, {argv + std::min(argc, 1), argv + argc});
    return FinishOutput() ? code : kWrongUsage;
}

}  // namespace brindle::tool
