// The run-command action. Tests: run_test.cpp.
#include "host/run_command_action.h"

#include "host/action_text.h"

namespace brindle::host {

void RunCommandAction::OwnAttributes(AttributeTable& table) {
    table.push_back(Required(FormattedAttribute("Command", m_command)));
}

void RunCommandAction::Perform(HostContext& context, const CCommandEvent* event) {
    context.RunCommand(*this, FormatActionText(context, *this, m_command, event));
    // From the line as it was written: what a program gets is decided after its macros, and a filter sees both.
    if (context.StartsPrograms()) StartActionCommand(context, *this, m_command, event);
}

}  // namespace brindle::host
