// CButtonPressEvent. Tests: event_test.cpp.
#include "brindle/address/button_press_event.h"

CButtonPressEvent::~CButtonPressEvent() = default;

CCommandEvent* CButtonPressEvent::Replicate() {
    CButtonPressEvent* const replica = ReplicateAs<CButtonPressEvent>();
    replica->setToggleState(m_toggleState);
    return replica;
}
