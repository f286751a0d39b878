// CCheckBoxUnCheckedPressEvent. Tests: event_test.cpp.
#include "brindle/address/check_box_un_checked_press_event.h"

CCheckBoxUnCheckedPressEvent::~CCheckBoxUnCheckedPressEvent() = default;

CCommandEvent* CCheckBoxUnCheckedPressEvent::Replicate() {
    return ReplicateAs<CCheckBoxUnCheckedPressEvent>();
}
