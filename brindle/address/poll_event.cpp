// CPollEvent. Tests: event_test.cpp.
#include "brindle/address/poll_event.h"

CPollEvent::~CPollEvent() = default;

CCommandEvent* CPollEvent::Replicate() {
    return ReplicateAs<CPollEvent>();
}
