// Brings the command line into its plain form. Tests: tool_test.cpp.
#include "apps/brindle/cli_arguments.h"

#include <algorithm>
#include <numeric>

#include <CLI/App.hpp>

namespace brindle::tool {
namespace {

using Kind = Command::Kind;

class Parser {
  public:
    Parser(const Command& tool, const std::vector<std::string>& arguments) : m_arguments(arguments) {
        m_parsed.command = &tool;
    }

    ParsedArguments Parse() {
        while (!m_parsed.wantsHelp && !m_parsed.wantsVersion && m_at < m_arguments.size()) TakeOne();
        GiveTextBack();
        for (const std::string& text : m_texts) AddGuarded(text);
        return std::move(m_parsed);
    }

  private:
    void TakeOne() {
        const std::string& argument = m_arguments[m_at++];
        if (!m_onlyTexts && argument == "--") {
            m_onlyTexts = true;
            m_list.clear();
        } else if (!m_onlyTexts && TakeOption(argument)) {
            return;
        } else if (!m_parsed.command->Subcommands().empty()) {
            Enter(argument);
        } else if (!m_list.empty()) {
            m_parsed.plain.push_back(m_list);
            AddGuarded(argument);
            ++m_listLength;
        } else {
            m_texts.push_back(argument);
        }
    }

    bool TakeOption(const std::string& argument) {
        const std::size_t equals = argument.starts_with("--") ? argument.find('=') : std::string::npos;
        const std::string name = argument.substr(0, equals);
        const Kind kind = m_parsed.command->KindOf(name);
        if (kind == Kind::kUnknown) return false;
        const bool hasValue = equals != std::string::npos;
        m_list.clear();
        if (kind == Kind::kFlag) {
            if (hasValue) throw Failure(kWrongUsage, name, "takes no value");
            TakeFlag(name);
            return true;
        }
        if (!hasValue && m_at == m_arguments.size()) throw Failure(kWrongUsage, name, "its value is missing");
        m_parsed.plain.push_back(name);
        AddGuarded(hasValue ? argument.substr(equals + 1) : m_arguments[m_at++]);
        if (kind == Kind::kList) {
            m_list = name;
            m_listLength = 1;
        }
        return true;
    }

    void TakeFlag(const std::string& name) {
        if (name == "--help" || name == "-h") {
            m_parsed.wantsHelp = true;
        } else if (name == "--version") {
            m_parsed.wantsVersion = true;
        } else if (std::find(m_flags.begin(), m_flags.end(), name) == m_flags.end()) {
            m_flags.push_back(name);
            m_parsed.plain.push_back(name);
        }
    }

    void Enter(const std::string& name) {
        std::vector<std::string> names;
        for (const auto& command : m_parsed.command->Subcommands()) {
            if (command->App().get_name() == name) {
                m_parsed.command = command.get();
                m_parsed.plain.push_back(name);
                return;
            }
            names.push_back(command->App().get_name());
        }
        const std::string meant = NearestWord(name, names);
        throw Failure(kWrongUsage, ShownArgument(name),
                      "no such command; " + (meant.empty() ? "" : "did you mean \"" + meant + "\"? ") + "\"" +
                          m_parsed.command->Path() + " --help\" lists them");
    }

    // "--file A B TEXT": the last argument behind a list option is the text nothing else has given.
    void GiveTextBack() {
        if (m_list.empty() || m_listLength < 2 || !m_texts.empty() || !m_parsed.command->HasTexts()) return;
        m_texts.push_back(m_parsed.plain.back().substr(1));
        m_parsed.plain.resize(m_parsed.plain.size() - 2);
    }

    void AddGuarded(const std::string& value) { m_parsed.plain.push_back(kGuard + value); }

    const std::vector<std::string>& m_arguments;
    std::size_t m_at = 0;
    ParsedArguments m_parsed;
    std::vector<std::string> m_texts;
    std::vector<std::string> m_flags;
    std::string m_list;  // the list option that takes the texts at present, or empty
    int m_listLength = 0;
    bool m_onlyTexts = false;
};

// The number of single-character changes that lead from one word to the other.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[b.size()];
}

}  // namespace

ParsedArguments ParseArguments(const Command& tool, const std::vector<std::string>& arguments) {
    return Parser(tool, arguments).Parse();
}

std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates) {
    constexpr std::size_t kLongestWord = 40;  // the rest is no mistyped word
    if (word.size() > kLongestWord) return {};
    std::string nearest;
    std::size_t best = word.size() / 3 + 2;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = Distance(word, candidate);
        if (distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

}  // namespace brindle::tool
