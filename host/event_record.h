// DescribeEvent: an event as keys of a record, the same keys as in event lines.
#pragma once

#include "host/run_record.h"

class CStateEvent;

namespace brindle::host {

// Adds "event", "address" and whatever else the event carries; empty texts and false flags are left out.
void DescribeEvent(const CStateEvent& event, RunRecord& record);

}  // namespace brindle::host
