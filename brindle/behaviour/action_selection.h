// SelectActions: opens the host's own dialog for choosing the actions of a behaviour list.
#pragma once

#include "brindle/behaviour/trigger.h"
#include "brindle/framework/export.h"

class CCommandBehaviourList;

// 1 when the registered IBrindleData answers 1, else 0; 0 when none is registered. What `selection` means is the
// host's matter. Thread: the user interface's.
BRINDLE_API int SelectActions(CCommandBehaviourList& list, int selection, CCommandTrigger::eHostType host);
