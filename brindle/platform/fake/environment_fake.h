// FakeEnvironment: variables and terminals as a test says.
#pragma once

#include <map>
#include <set>

#include "brindle/platform/environment.h"

namespace brindle {

class FakeEnvironment final : public Environment {
  public:
    bool Variable(std::string_view name, std::string& value) override;
    bool VariableNoCase(std::string_view name, std::string& value) override;
    bool IsTerminal(StandardStream stream) override { return m_terminals.contains(stream); }

    void Set(std::string_view name, std::string_view value) { m_variables[std::string(name)] = value; }
    void Unset(std::string_view name) { m_variables.erase(std::string(name)); }
    void SetTerminal(StandardStream stream) { m_terminals.insert(stream); }

  private:
    std::map<std::string, std::string> m_variables;
    std::set<StandardStream> m_terminals;
};

}  // namespace brindle
