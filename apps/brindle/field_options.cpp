// The options of fields. Tests: command_format_test.cpp, command_macro_test.cpp.
#include "apps/brindle/field_options.h"

#include "apps/brindle/cli.h"

namespace brindle::tool {
namespace {

void AddVariables(const std::vector<std::string>& variables, VariableManager& scope) {
    for (const std::string& text : variables) {
        const auto [name, value] = ToAssignment(text, "--set");
        if (name.empty())
            throw Failure(kWrongUsage, "--set", "\"" + text + "\" has no name before its \"=\"");
        scope.addVariable(Variable(name, value));
    }
}

}  // namespace

void FieldOptions::Declare(Command& command) {
    command.Option("--address", "A", address, "fills %a, %N, %U, %P and is where \"#\" fields look");
    command.Option("--path", "P", call.path, "fills %p, and precedes a line that begins with \".\"");
    command.Option("--caption", "C", call.caption, "fills %c");
    command.Option("--text", "T", call.text, "fills %t");
    command.Option("--help-text", "H", call.help, "fills %h, if --text is given too");
    command.Option("--status", "N", status, "fills %i and, as a colour name, %s; 0 when not given");
    command.Option("--r", "R", call.r, "fills %r");
    command.Option("--n", "N", n, "fills %n; -1 is the same as not given");
    command.Option("--q", "Q", q, "fills %q; -1 is the same as not given");
    command.Options("--set", "NAME=VALUE", variables, "a variable: fills {NAME} before all else");
    command.Options("--field", "[ADDRESS,]NAME=VALUE", fields, "answers the field #NAME# or #ADDRESS,NAME#");
    command.Options("--device-status", "ADDRESS=N", states, "the status of a device: fills %j and %v");
}

void FieldOptions::Explain(Command& command) {
    command.Note(
        "An option that is not given leaves its field as typed. --set, --field and --device-status may be "
        "repeated. Open parts of --address are 0; in --field and --device-status they stand for every "
        "number. Once one of these two is given, unknown fields become nothing and unknown states 0. A field "
        "without ADDRESS answers at every address; one with an ADDRESS goes before it there.");
}

FieldSurroundings::FieldSurroundings(FieldOptions& options) {
    FormatCall& call = options.call;
    if (options.address) call.address = ToFullAddress(*options.address, "--address");
    call.status = options.status.value_or(call.status);
    call.n = options.n.value_or(call.n);
    call.q = options.q.value_or(call.q);
    AddVariables(options.variables, m_scope);
    for (const std::string& field : options.fields) m_answers.AddField(field);
    for (const std::string& state : options.states) m_answers.AddState(state);
    if (!options.variables.empty()) m_usedScope = &m_scope;
    if (!m_answers.IsEmpty()) m_data = &m_answers;
    RegisterIBrindleData(m_data);
    m_hook.emplace(m_usedScope);
}

FieldSurroundings::~FieldSurroundings() {
    RegisterIBrindleData(nullptr);
}

}  // namespace brindle::tool
