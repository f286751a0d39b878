// The index of live repeats by trigger and by action: what makes the repeats of a destroyed object inert at
// once, at a cost that does not grow with the number of pending entries. One for the process, with a lock of
// its own that is taken last. Internal; any thread. Tests: repeat_index_test.cpp.
#pragma once

#include <vector>

#include "brindle/behaviour/repeat_node.h"

namespace brindle {

void EnterRepeat(RepeatNode& node);
// Takes the node out; nothing when it is inert already.
void LeaveRepeat(RepeatNode& node);

// Makes every repeat of the object inert.
void ForgetRepeats(const CCommandTrigger* trigger) noexcept;
void ForgetRepeats(const CCommandAction* action) noexcept;

// The live repeats of the trigger in that queue, in the order they were added.
std::vector<RepeatNode*> RepeatsOf(const CCommandTrigger* trigger, const RepeatQueue* queue);

}  // namespace brindle
