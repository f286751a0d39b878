// The host's types in the engine's registries. Tests: triggers_test.cpp.
#include "host/register_types.h"

#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger_list.h>

#include "host/button_trigger.h"
#include "host/caption_trigger.h"
#include "host/check_box_trigger.h"
#include "host/get_snmp_action.h"
#include "host/mask_header_action.h"
#include "host/mask_unit_action.h"
#include "host/meter_value_trigger.h"
#include "host/meter_zone_trigger.h"
#include "host/poll_trigger.h"
#include "host/rule_trigger.h"
#include "host/run_command_action.h"
#include "host/schedule_trigger.h"
#include "host/send_state_action.h"
#include "host/set_snmp_action.h"
#include "host/set_variable_action.h"
#include "host/state_trigger.h"
#include "host/write_log_action.h"

namespace brindle::host {

namespace {

template <class Trigger>
void RegisterTrigger() {
    CCommandTriggerList::Register(Trigger::kTypeName,
                                  [](unsigned long) -> CCommandTrigger* { return new Trigger; });
}

template <class Action>
void RegisterAction() {
    CCommandActionList::Register(Action::kTypeName,
                                 [](unsigned long) -> CCommandAction* { return new Action; });
}

bool RegisterAll() {
    RegisterTrigger<StateTrigger>();
    RegisterTrigger<ButtonTrigger>();
    RegisterTrigger<CheckBoxTrigger>();
    RegisterTrigger<CaptionTrigger>();
    RegisterTrigger<MeterValueTrigger>();
    RegisterTrigger<MeterZoneTrigger>();
    RegisterTrigger<PollTrigger>();
    RegisterTrigger<RuleTrigger>();
    RegisterTrigger<ScheduleTrigger>();
    RegisterAction<RunCommandAction>();
    RegisterAction<WriteLogAction>();
    RegisterAction<SetVariableAction>();
    RegisterAction<SendStateAction>();
    RegisterAction<GetSnmpAction>();
    RegisterAction<SetSnmpAction>();
    RegisterAction<MaskUnitAction>();
    RegisterAction<MaskHeaderAction>();
    return true;
}

}  // namespace

void RegisterHostTypes() {
    [[maybe_unused]] static const bool registered = RegisterAll();
}

}  // namespace brindle::host
