// CMeterZoneChangeEvent: a meter's value moved into another zone. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CMeterZoneChangeEvent : public CStateEvent {
  public:
    // The base with the zone.
    CMeterZoneChangeEvent(int zone, const CAddressOv& address, bool masked, int state,
                          const CStringA& stateDueToHeader, const CStringA& stateDueToCauseHeader,
                          const CStringA& stateDueToString, const CStringA& userString,
                          const CStringA& objStringK, const CStringA& objStringV);
    CMeterZoneChangeEvent(const CMeterZoneChangeEvent&) = default;
    CMeterZoneChangeEvent& operator=(const CMeterZoneChangeEvent&) = default;

    CCommandEvent* Replicate() override;  // carries the zone over

    int GetZone() const noexcept { return m_zone; }

  protected:
    ~CMeterZoneChangeEvent() override;

  private:
    friend struct brindle::LayoutProbe;

    int m_zone;
};
