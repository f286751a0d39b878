// The fields of action texts. Tests: run_test.cpp.
#include "host/action_text.h"

#include <brindle/address/events.h>
#include <brindle/behaviour/action.h>
#include <brindle/macro/command_line.h>
#include <brindle/macro/macro_command.h>
#include <brindle/variables/hook/variable_manager_format_command_line_hook.h>

#include <optional>
#include <stdexcept>

#include "host/address_pattern.h"
#include "host/host_context.h"
#include "host/words.h"

namespace brindle::host {

namespace {

// The arguments of one formatting, as an event gives them.
struct FieldValues {
    std::optional<FullAddress_t> address;
    CStringA path;
    CStringA caption;
    std::optional<CStringA> text;
    CStringA help;
    std::optional<CStringA> r;
    int status = 0;
    int n = -1;
};

void AddEventValues(const CStateEvent& event, FieldValues& values) {
    values.text = event.GetStateDueToString();
    values.help = event.GetUserString();
    values.r = event.GetStateDueToHeader();
    values.status = event.GetState();
    if (const auto* meter = dynamic_cast<const CMeterValueChangeEvent*>(&event))
        values.r = CStringA(RealText(meter->GetValue()));
    if (const auto* zone = dynamic_cast<const CMeterZoneChangeEvent*>(&event)) values.n = zone->GetZone();
    if (const auto* button = dynamic_cast<const CButtonPressEvent*>(&event)) values.n = button->toggleState();
}

FieldValues ValuesFor(const HostContext& context, const CCommandEvent* event) {
    FieldValues values;
    const auto* state = dynamic_cast<const CStateEvent*>(event);
    CAddressOv address = state ? state->GetAddress() : CAddressOv();
    if (AddressText(address).empty()) address = context.ObjectAddress();
    if (!AddressText(address).empty()) {
        values.address.emplace();
        address.GetFullAddressStruct(*values.address);
    }
    values.path = context.Path();
    values.caption = context.Caption(address);
    if (state) AddEventValues(*state, values);
    return values;
}

const char* OrNull(const std::optional<CStringA>& text) {
    return text ? text->GetString() : nullptr;
}

}  // namespace

CStringA FormatActionText(HostContext& context, const CCommandAction& action, const CStringA& text,
                          const CCommandEvent* event) {
    const FieldValues values = ValuesFor(context, event);
    std::optional<VariableHookScope> scope;
    if (!action.variableManager()) scope.emplace(context.ObjectScope());
    CStringA line = text;
    try {
        FormatCommandLineEx(line, values.address ? &*values.address : nullptr, values.path, values.caption,
                            OrNull(values.text), values.help, values.status, OrNull(values.r), values.n, -1);
    } catch (const std::invalid_argument&) {
        context.ReportFailure(action, "the local time cannot be expressed");
    }
    return line;
}

int StartActionCommand(HostContext& context, const CCommandAction& action, const CStringA& text,
                       const CCommandEvent* event) {
    const FieldValues values = ValuesFor(context, event);
    std::optional<VariableHookScope> scope;
    if (!action.variableManager()) scope.emplace(context.ObjectScope());
    try {
        return ExecuteMacroCommandLine(nullptr, text, values.address ? &*values.address : nullptr,
                                       context.StartFolder(), values.caption, OrNull(values.text),
                                       values.help, values.status, OrNull(values.r), values.n, -1);
    } catch (const std::invalid_argument&) {
        context.ReportFailure(action, "the local time cannot be expressed");
        return 0;
    }
}

}  // namespace brindle::host
