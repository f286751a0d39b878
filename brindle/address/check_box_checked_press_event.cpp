// CCheckBoxCheckedPressEvent. Tests: event_test.cpp.
#include "brindle/address/check_box_checked_press_event.h"

CCheckBoxCheckedPressEvent::~CCheckBoxCheckedPressEvent() = default;

CCommandEvent* CCheckBoxCheckedPressEvent::Replicate() {
    return ReplicateAs<CCheckBoxCheckedPressEvent>();
}
