// CMeterValueChangeEvent. Tests: event_test.cpp.
#include "brindle/address/meter_value_change_event.h"

CMeterValueChangeEvent::CMeterValueChangeEvent(float value, const CAddressOv& address, bool masked, int state,
                                               const CStringA& stateDueToHeader,
                                               const CStringA& stateDueToCauseHeader,
                                               const CStringA& stateDueToString, const CStringA& userString,
                                               const CStringA& objStringK, const CStringA& objStringV)
    : CStateEvent(address, masked, state, stateDueToHeader, stateDueToCauseHeader, stateDueToString,
                  userString, objStringK, objStringV),
      m_value(value) {}

CMeterValueChangeEvent::~CMeterValueChangeEvent() = default;

CCommandEvent* CMeterValueChangeEvent::Replicate() {
    return ReplicateAs<CMeterValueChangeEvent>(m_value);
}
