// CStateEvent. Tests: event_test.cpp.
#include "brindle/address/state_event.h"

CStateEvent::CStateEvent(const CAddressOv& address, bool masked, int state, const CStringA& stateDueToHeader,
                         const CStringA& stateDueToCauseHeader, const CStringA& stateDueToString,
                         const CStringA& userString, const CStringA& objStringK, const CStringA& objStringV)
    : m_address(address),
      m_masked(masked),
      m_state(state),
      m_stateDueToHeader(stateDueToHeader),
      m_stateDueToCauseHeader(stateDueToCauseHeader),
      m_stateDueToString(stateDueToString),
      m_userString(userString),
      m_objStringK(objStringK),
      m_objStringV(objStringV) {}

CStateEvent::~CStateEvent() = default;

CCommandEvent* CStateEvent::Replicate() {
    return ReplicateAs<CStateEvent>();
}
