// How the tool's subcommands are declared. Each lives in one file, command_NAME.cpp, with one function of
// commands.h:
//
//     struct AddressOptions { std::string text; std::optional<std::string> fallback; bool json = false; };
//
//     void DeclareAddress(Command& tool) {
//         auto options = std::make_shared<AddressOptions>();
//         Command& command = tool.Add("address", kGroupQuestions, "print the canonical text of an address");
//         command.Text("TEXT", options->text, "net:unit:port in hexadecimal");
//         command.Option("--default", "ADDRESS", options->fallback, "completes the open parts");
//         command.Flag("--json", options->json, "print a JSON object");
//         command.Example("brindle address 12:7:4", "0012:07:04");
//         command.Run([options] { return RunAddress(*options); });
//     }
//
// The manners are the same everywhere and are kept here, not in the commands:
//   - every argument reaches its command as bytes in the ANSI code page; a character without a byte there is
//     wrong usage;
//   - "--name value" and "--name=value" are the same; the argument behind an option is its value also when it
//     begins with "-"; an empty value is given, not absent;
//   - an argument that is no known option is text, also when it begins with "-"; behind "--" everything is;
//   - of a repeated single option the last wins; numbers are decimal and have 32 bits;
//   - --help works at every command.
// CLI11 holds the declared options, counts what is required and reads the values; arguments come to it in one
// plain form (cli_arguments.h), so that none of its guesses on numbers, lists or prefixes apply.
//
// Failures: a command returns its exit code, or throws Failure (cli_output.h).
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/brindle/cli_output.h"
#include "apps/brindle/cli_values.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace brindle::tool {

// Headings of the overview.
inline constexpr const char* kGroupStations = "Stations";
inline constexpr const char* kGroupQuestions = "Single questions";

enum class Presence { kRequired, kOptional };

class Command {
  public:
    struct Sample {
        std::string line;     // what to type
        std::string meaning;  // what it prints or does; may be empty
    };

    // A command over a CLI11 one, which must outlive it.
    Command(CLI::App& app, std::string help);
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command();

    // A subcommand; owned by this one. A command with subcommands takes no texts of its own.
    Command& Add(const std::string& name, const std::string& group, const std::string& help);

    // The values must live as long as the command: keep them in an object that the Run function holds.
    // One text.
    void Text(const std::string& name, std::string& value, const std::string& help);
    void Text(const std::string& name, std::optional<std::string>& value, const std::string& help);
    // All remaining texts.
    void Texts(const std::string& name, std::vector<std::string>& values, const std::string& help,
               Presence presence = Presence::kRequired);
    // An option with one value; absent: untouched.
    void Option(const std::string& name, const std::string& what, std::optional<std::string>& value,
                const std::string& help);
    void Option(const std::string& name, const std::string& what, std::optional<int>& value,
                const std::string& help);
    // An option that may be repeated.
    void Options(const std::string& name, const std::string& what, std::vector<std::string>& values,
                 const std::string& help);
    // An option that takes every following text up to the next option and may be repeated. When the command's
    // text is then missing, it is the last of them: "--file A B TEXT".
    void ListOption(const std::string& name, const std::string& what, std::vector<std::string>& values,
                    const std::string& help, Presence presence = Presence::kRequired);
    void Flag(const std::string& name, bool& value, const std::string& help);
    // More lines of help, below the options.
    void Note(const std::string& paragraph);
    void Example(const std::string& line, const std::string& meaning = {});
    // What the command does; returns the exit code.
    void Run(std::function<int()> function);

    // --- for the parser and the help ---
    enum class Kind { kUnknown, kFlag, kSingle, kRepeated, kList };
    // What an argument is that stands where an option may.
    Kind KindOf(std::string_view option) const;
    bool IsList(const CLI::Option& option) const;
    bool HasTexts() const noexcept { return m_hasTexts; }
    CLI::App& App() const noexcept { return m_app; }
    const std::string& Help() const noexcept { return m_help; }
    const std::vector<std::string>& Notes() const noexcept { return m_notes; }
    const std::vector<Sample>& Examples() const noexcept { return m_examples; }
    const std::vector<std::unique_ptr<Command>>& Subcommands() const noexcept { return m_subcommands; }
    const Command* Parent() const noexcept { return m_parent; }
    // "brindle variables resolve"
    std::string Path() const;
    int Execute() const { return m_run(); }
    bool CanExecute() const noexcept { return static_cast<bool>(m_run); }

  private:
    using ValueTaker = std::function<void(const std::string& value, const std::string& what)>;
    CLI::Option* AddOption(const std::string& name, const std::string& what, const std::string& help,
                           Kind kind, ValueTaker take);
    CLI::Option* AddText(const std::string& name, const std::string& help, ValueTaker take);

    CLI::App& m_app;
    std::string m_help;
    const Command* m_parent = nullptr;
    std::vector<std::unique_ptr<Command>> m_subcommands;
    std::vector<std::pair<std::string, Kind>> m_options;
    bool m_hasTexts = false;
    std::vector<std::string> m_notes;
    std::vector<Sample> m_examples;
    std::function<int()> m_run;
};

struct Program {
    const char* name;
    const char* help;
    void (*declare)(Command& tool);  // everything but --help and --version
};
// The whole program: parses the arguments, runs the command, reports failures. Returns the exit code.
int RunProgram(const Program& program, int argc, char** argv);

}  // namespace brindle::tool
