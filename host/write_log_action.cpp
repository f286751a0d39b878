// The write-log action. Tests: run_test.cpp.
#include "host/write_log_action.h"

#include "host/action_text.h"

namespace brindle::host {

void WriteLogAction::OwnAttributes(AttributeTable& table) {
    table.push_back(Required(FormattedAttribute("Text", m_text)));
}

void WriteLogAction::Perform(HostContext& context, const CCommandEvent* event) {
    context.WriteLog(*this, FormatActionText(context, *this, m_text, event));
}

}  // namespace brindle::host
