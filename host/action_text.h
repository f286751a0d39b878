// FormatActionText, StartActionCommand: fill in the fields of an action's text from the event it runs for, with the
// library's own command-line formatting. docs/sites.md lists which field stands for what.
#pragma once

#include <brindle/framework/string_a.h>

class CCommandAction;
class CCommandEvent;

namespace brindle::host {

class HostContext;

// A run without a variable scope of its own (a schedule, a repeat) uses the scope of the object. The text
// comes back unchanged, and the context is told, when the local time it asks for cannot be expressed.
CStringA FormatActionText(HostContext& context, const CCommandAction& action, const CStringA& text,
                          const CCommandEvent* event);
// Runs the text as a macro command line with the same fields, in the context's folder. Fails like FormatActionText:
// nothing starts then. Returns the code of the last program, 0 when none was to be started.
int StartActionCommand(HostContext& context, const CCommandAction& action, const CStringA& text,
                       const CCommandEvent* event);

}  // namespace brindle::host
