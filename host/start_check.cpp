// Checks of command lines. The library itself expands them, under services that only look on. Tests:
// start_check_test.cpp.
#include "host/start_check.h"

#include <brindle/behaviour/action_files.h>
#include <brindle/library/host_path_access.h>
#include <brindle/macro/brindle_data.h>
#include <brindle/macro/macro_command.h>
#include <brindle/macro/macro_observer.h>
#include <brindle/macro/start_filter.h>
#include <brindle/macro/substitute_path.h>
#include <brindle/platform/desktop.h>
#include <brindle/platform/programs.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "host/host_files.h"

namespace brindle::host {

namespace {

// Collects what the expansion of a line tells, and keeps it from starting, showing or logging anything: also while
// a site runs, whose slots are put back in the end.
class Onlooker final : public IMacroObserver, public Programs, public Desktop {
  public:
    explicit Onlooker(const CommandSurroundings& surroundings)
        : m_surroundings(surroundings),
          m_programs(CurrentPrograms()),
          m_observer(RegisterMacroObserver(this)),
          m_filter(RegisterStartFilter(nullptr)),
          m_data(RegisteredBrindleData()),
          m_installedPrograms(SetPrograms(this)),
          m_installedDesktop(SetDesktop(this)),
          m_searchPaths(GetSearchPathIniFile()),
          m_actions(GetCommandActionsIniFile()) {
        RegisterIBrindleData(nullptr);
        const std::string macros = AbsoluteHostPath(surroundings.macros);
        SetSearchPathIniFile(macros.c_str());
        SetCommandActionsIniFile(macros.c_str());
    }
    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;
    ~Onlooker() {
        RegisterMacroObserver(m_observer);
        RegisterStartFilter(m_filter);
        RegisterIBrindleData(m_data);
        SetPrograms(m_installedPrograms);
        SetDesktop(m_installedDesktop);
        SetSearchPathIniFile(m_searchPaths);
        SetCommandActionsIniFile(m_actions);
    }
    std::vector<std::string> TakeProblems() { return std::move(m_problems); }

    void OnMacro(const char* name, const char* definition) override {
        if (!definition) Add("the macro <" + std::string(name) + "> is not defined");
        m_macroMissing = !definition;
    }
    void OnSearchPath(const char* name, const char* directories) override {
        if (!directories) Add("the search path $" + std::string(name) + "$ is not defined");
    }
    void OnEndless(const char*) override { Add("its search paths refer to each other without end"); }

    ProgramPlan Plan(std::string_view commandLine) override { return m_programs.Plan(commandLine); }
    int Start(const ProgramPlan& plan, bool) override {
        m_plan = plan;
        return plan.code;
    }
    // The current directory is that of the command here.
    int Open(std::string_view document, std::string_view, bool) override {
        const bool macroMissing = std::exchange(m_macroMissing, false);
        if (!m_surroundings.lookForPrograms || macroMissing || IsOpenable(document)) return kProgramStarted;
        if (m_plan.program.find_first_of("%{#?") != std::string::npos) return kProgramStarted;
        const bool denied = m_plan.code == kProgramAccessDenied;
        Add("the program \"" + m_plan.program + (denied ? "\" may not be run" : "\" does not exist"));
        return kProgramStarted;
    }
    void Reap() override {}
    void WaitForAll() override {}

    void ShowMessage(HWND, MessageIcon, std::string_view) override {}
    bool ChooseFile(const FileBoxRequest&, std::string&) override { return false; }
    unsigned long FileBoxError() override { return kFileBoxNoDesktop; }
    HWND MainWindow() override { return nullptr; }

  private:
    void Add(std::string problem) {
        if (std::find(m_problems.begin(), m_problems.end(), problem) == m_problems.end())
            m_problems.push_back(std::move(problem));
    }
    static bool IsOpenable(std::string_view document) {
        if (document.find("://") != document.npos || document.starts_with("mailto:")) return true;
        std::error_code ignored;
        return !document.empty() && std::filesystem::exists(SystemFilePath(document), ignored);
    }

    const CommandSurroundings& m_surroundings;
    Programs& m_programs;
    IMacroObserver* m_observer;
    IStartFilter* m_filter;
    IBrindleData* m_data;
    Programs* m_installedPrograms;
    Desktop* m_installedDesktop;
    CStringA m_searchPaths;
    CStringA m_actions;
    ProgramPlan m_plan;
    bool m_macroMissing = false;
    std::vector<std::string> m_problems;
};

// The length of the field of somebody else's text at the front; 0: none.
std::size_t ForeignField(std::string_view text) {
    constexpr std::string_view kLetters = "cthr";
    if (text.starts_with('%')) return text.size() > 1 && kLetters.find(text[1]) != kLetters.npos ? 2 : 0;
    const char close = text.starts_with('{') ? '}' : text.starts_with('#') ? '#' : '\0';
    const std::size_t end = close ? text.find(close, 1) : text.npos;
    return end == text.npos ? 0 : end + 1;
}

}  // namespace

std::vector<std::string> CheckCommand(const std::string& line, const CommandSurroundings& surroundings) {
    Onlooker onlooker(surroundings);
    ExecuteMacroCommandLine(nullptr, line.c_str(), nullptr, AbsoluteHostPath(surroundings.folder).c_str(),
                            nullptr, nullptr, nullptr, 0, nullptr, -1, -1);
    return onlooker.TakeProblems();
}

std::vector<std::string> CheckSearchPath(const std::string& name, const CommandSurroundings& surroundings) {
    Onlooker onlooker(surroundings);
    std::array<char, 16> unused{};
    GetSubstitutePathEx(("$" + name + "$").c_str(), unused.data(), static_cast<int>(unused.size()), 0,
                        nullptr, nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, false, -1, -1);
    return onlooker.TakeProblems();
}

std::vector<std::string> ForeignFields(const std::string& line) {
    std::vector<std::string> fields;
    for (std::size_t at = 0; at < line.size();) {
        const std::string_view rest = std::string_view(line).substr(at);
        if (rest.starts_with("%%")) {
            at += 2;
            continue;
        }
        const std::size_t length = ForeignField(rest);
        const std::string field(rest.substr(0, length));
        if (length > 0 && std::find(fields.begin(), fields.end(), field) == fields.end())
            fields.push_back(field);
        at += std::max<std::size_t>(length, 1);
    }
    return fields;
}

}  // namespace brindle::host
