#include "brindle/behaviour/action_selection.h"

#include "brindle/library/module_state.h"
#include "brindle/macro/brindle_data.h"

int SelectActions(CCommandBehaviourList& list, int selection, CCommandTrigger::eHostType host) {
    const brindle::ModuleStateGuard state;
    IBrindleData* const data = brindle::RegisteredBrindleData();
    return data && data->SelectActions(list, selection, host) == 1 ? 1 : 0;
}
