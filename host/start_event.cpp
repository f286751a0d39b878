// The event that begins a run. Tests: schedule_test.cpp.
#include "host/start_event.h"

namespace brindle::host {

StartEvent::~StartEvent() = default;

CCommandEvent* StartEvent::Replicate() {
    return new StartEvent;
}

}  // namespace brindle::host
