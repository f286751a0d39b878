// Writes the help texts from what the commands declare. Tests: tool_test.cpp.
#include "apps/brindle/cli_help.h"

#include <algorithm>

#include <CLI/App.hpp>

#include "apps/brindle/cli.h"

namespace brindle::tool {
namespace {

constexpr std::size_t kWidth = 96;  // of running text

std::string Heading(const std::string& text) {
    return Paint(Stream::kOutput, Colour::kBold, text);
}

bool TakesMany(const CLI::Option& option) {
    return option.get_allow_extra_args() ||
           option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
}

std::string TextName(const CLI::Option& option) {
    const std::string name = option.get_name(true) + (TakesMany(option) ? "..." : "");
    return option.get_required() ? name : "[" + name + "]";
}

// "--file FILE", "--help, -h"
std::string OptionName(const CLI::Option& option) {
    std::string name = "--" + option.get_lnames().front();
    for (const std::string& shortName : option.get_snames()) name += ", -" + shortName;
    if (option.get_items_expected_max() > 0) name += " " + option.get_type_name();
    return name;
}

std::vector<const CLI::Option*> OptionsOf(const Command& command, bool texts) {
    const CLI::App& app = command.App();
    return app.get_options([texts](const CLI::Option* option) { return option->get_positional() == texts; });
}

std::string Usage(const Command& command) {
    std::string usage = command.Path();
    if (!command.Subcommands().empty()) return usage + " COMMAND ...";
    for (const CLI::Option* text : OptionsOf(command, true)) usage += " " + TextName(*text);
    for (const CLI::Option* option : OptionsOf(command, false))
        if (option->get_required())
            usage += " " + OptionName(*option) + (command.IsList(*option) ? "..." : "");
    return usage + " [OPTION]...";
}

void Wrap(const std::string& paragraph, const std::string& indent, std::vector<std::string>& lines) {
    std::string line = indent;
    std::size_t at = 0;
    while (at < paragraph.size()) {
        const std::size_t end = std::min(paragraph.find(' ', at), paragraph.size());
        const std::string word = paragraph.substr(at, end - at);
        if (line.size() > indent.size() && ShownWidth(line) + 1 + ShownWidth(word) > kWidth) {
            lines.push_back(line);
            line = indent;
        }
        if (line.size() > indent.size()) line += ' ';
        line += word;
        at = end + 1;
    }
    lines.push_back(line);
}

void Append(const Columns& columns, std::vector<std::string>& lines) {
    for (std::string& line : columns.Lines()) lines.push_back(std::move(line));
}

// "address TEXT", "variables resolve"
std::string SubcommandName(const Command& command) {
    std::string name = command.App().get_name();
    for (const CLI::Option* text : OptionsOf(command, true)) name += " " + TextName(*text);
    for (const auto& sub : command.Subcommands()) name += " " + sub->App().get_name();
    return name;
}

void AddSubcommands(const Command& command, std::vector<std::string>& lines) {
    std::vector<std::string> groups;
    for (const auto& sub : command.Subcommands()) {
        const std::string group = sub->App().get_group();
        if (std::find(groups.begin(), groups.end(), group) == groups.end()) groups.push_back(group);
    }
    // One table for all groups, so that the groups' columns stand below each other.
    Columns columns("  ");
    for (const std::string& group : groups)
        for (const auto& sub : command.Subcommands())
            if (sub->App().get_group() == group) columns.Add({SubcommandName(*sub), sub->Help()});
    std::vector<std::string> rows = columns.Lines();
    auto row = rows.begin();
    for (const std::string& group : groups) {
        lines.insert(lines.end(), {"", Heading(group)});
        for (const auto& sub : command.Subcommands())
            if (sub->App().get_group() == group) lines.push_back(std::move(*row++));
    }
}

void AddArguments(const Command& command, std::vector<std::string>& lines) {
    Columns columns("  ");
    const auto texts = OptionsOf(command, true);
    for (const CLI::Option* text : texts) columns.Add({text->get_name(true), text->get_description()});
    if (!texts.empty()) columns.Add({});
    auto options = OptionsOf(command, false);
    std::rotate(options.begin(), options.begin() + 1, options.end());  // --help, declared first, comes last
    for (const CLI::Option* option : options) columns.Add({OptionName(*option), option->get_description()});
    lines.insert(lines.end(), {"", Heading(texts.empty() ? "Options" : "Arguments and options")});
    Append(columns, lines);
}

void AddExamples(const Command& command, std::vector<std::string>& lines) {
    if (command.Examples().empty()) return;
    lines.insert(lines.end(), {"", Heading(command.Parent() ? "Examples" : "Try first")});
    for (const Command::Sample& sample : command.Examples()) {
        lines.push_back("  " + Paint(Stream::kOutput, Colour::kCyan, sample.line));
        if (!sample.meaning.empty()) lines.push_back("      " + sample.meaning);
    }
}

}  // namespace

std::vector<std::string> HelpLines(const Command& command) {
    std::vector<std::string> lines;
    lines.push_back(Paint(Stream::kOutput, Colour::kBold, command.Path()) + ": " + command.Help());
    lines.insert(lines.end(), {"", Heading("Usage"), "  " + Usage(command)});
    AddSubcommands(command, lines);
    AddArguments(command, lines);
    for (const std::string& note : command.Notes()) {
        lines.emplace_back();
        Wrap(note, "", lines);
    }
    AddExamples(command, lines);
    return lines;
}

}  // namespace brindle::tool
