// CStateChangedEvent. Tests: event_test.cpp.
#include "brindle/address/state_changed_event.h"

CStateChangedEvent::CStateChangedEvent() noexcept {
    setType(staticType());
}

CStateChangedEvent::CStateChangedEvent(const CAddressOv& address, bool masked, int state,
                                       const CStringA& stateDueToHeader,
                                       const CStringA& stateDueToCauseHeader,
                                       const CStringA& stateDueToString, const CStringA& userString,
                                       const CStringA& objStringK, const CStringA& objStringV)
    : CStateEvent(address, masked, state, stateDueToHeader, stateDueToCauseHeader, stateDueToString,
                  userString, objStringK, objStringV) {
    setType(staticType());
}

CStateChangedEvent::~CStateChangedEvent() = default;

CCommandEvent* CStateChangedEvent::Replicate() {
    return ReplicateAs<CStateChangedEvent>();
}
