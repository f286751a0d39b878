// ActionRun: one run of an action with its variable scope: in the action itself and in command-line
// formatting. Leaving, also by an exception, gives the action back what an enclosing run of it had, or null.
// Internal; thread: the engine's. Tests: action_list_test.cpp.
#pragma once

#include "brindle/behaviour/action.h"
#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"

namespace brindle {

class ActionRun {
  public:
    ActionRun(CCommandAction& action, const VariableManager* variables) noexcept
        : m_scope(variables), m_action(action), m_variables(variables), m_outer(t_innermost) {
        t_innermost = this;
        action.setVariableManager(variables);
    }
    ActionRun(const ActionRun&) = delete;
    ActionRun& operator=(const ActionRun&) = delete;
    ~ActionRun() {
        t_innermost = m_outer;
        const ActionRun* enclosing = m_outer;
        while (enclosing && &enclosing->m_action != &m_action) enclosing = enclosing->m_outer;
        m_action.setVariableManager(enclosing ? enclosing->m_variables : nullptr);
    }

  private:
    static inline constinit thread_local ActionRun* t_innermost = nullptr;

    VariableHookScope m_scope;
    CCommandAction& m_action;
    const VariableManager* m_variables;
    ActionRun* m_outer;
};

}  // namespace brindle
