// CMeterZoneChangeEvent. Tests: event_test.cpp.
#include "brindle/address/meter_zone_change_event.h"

CMeterZoneChangeEvent::CMeterZoneChangeEvent(int zone, const CAddressOv& address, bool masked, int state,
                                             const CStringA& stateDueToHeader,
                                             const CStringA& stateDueToCauseHeader,
                                             const CStringA& stateDueToString, const CStringA& userString,
                                             const CStringA& objStringK, const CStringA& objStringV)
    : CStateEvent(address, masked, state, stateDueToHeader, stateDueToCauseHeader, stateDueToString,
                  userString, objStringK, objStringV),
      m_zone(zone) {}

CMeterZoneChangeEvent::~CMeterZoneChangeEvent() = default;

CCommandEvent* CMeterZoneChangeEvent::Replicate() {
    return ReplicateAs<CMeterZoneChangeEvent>(m_zone);
}
