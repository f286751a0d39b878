// The parts of behaviour lists as plain vectors, in their order and without nulls. They stay the list's.
#pragma once

#include <brindle/behaviour/behaviour_list.h>

#include <string>
#include <vector>

namespace brindle::host {

std::vector<CCommandBehaviour*> BehavioursOf(const CCommandBehaviourList& list);
std::vector<CCommandTrigger*> TriggersOf(CCommandBehaviour& behaviour);
std::vector<CCommandAction*> ActionsOf(CCommandBehaviour& behaviour);
// What an item is saved as; empty when XML cannot hold it.
std::string SavedText(const CCommandTreeItem& item);
// Resets the triggers of a behaviour and ends what they started: left to the destruction of their triggers repeats
// would never run again, but hold their events for as long as the list lives.
void EndRepeats(CCommandBehaviour& behaviour, CCommandBehaviourList& list);

}  // namespace brindle::host
