// What the commands on macros and search paths have in common: the INI file, drive letters, the fields, the trace.
#pragma once

#include <brindle/macro/macro_observer.h>

#include <string>
#include <vector>

#include "apps/brindle/field_options.h"

namespace brindle::tool {

struct MacroOptions {
    std::optional<std::string> ini;
    std::vector<std::string> drives;
    FieldOptions fields;
    bool trace = false;

    // --ini, --drive, --trace; the fields are declared by the commands that have them.
    void Declare(Command& command);
    // Sets the file for both sections and maps the drives; throws Failure when the file cannot be read.
    void Apply() const;
};

// Prints every look-up, pass and candidate on the standard error while it lives; tells whether definitions end.
class MacroTrace final : public IMacroObserver {
  public:
    explicit MacroTrace(bool show);
    MacroTrace(const MacroTrace&) = delete;
    MacroTrace& operator=(const MacroTrace&) = delete;
    ~MacroTrace();

    void OnMacro(const char* name, const char* definition) override;
    void OnSearchPath(const char* name, const char* directories) override;
    void OnPass(int pass, const char* text) override;
    void OnEndless(const char* text) override;
    void OnCandidate(const char* candidate, bool exists) override;
    void OnCommand(const char* command) override;

    // The commands that became ready, expanded.
    const std::vector<std::string>& Commands() const noexcept { return m_commands; }

  private:
    void Show(const std::string& stage, const std::string& text, const std::string& note = {}) const;

    bool m_show;
    std::vector<std::string> m_commands;
    IMacroObserver* m_before;
};

}  // namespace brindle::tool
