// CStateChangedEvent: a device reports a state. The only event class with a type id of its own. Thread: as
// CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CStateChangedEvent : public CStateEvent {
  public:
    // As the base, of a type of its own.
    CStateChangedEvent(const CAddressOv& address, bool masked, int state, const CStringA& stateDueToHeader,
                       const CStringA& stateDueToCauseHeader, const CStringA& stateDueToString,
                       const CStringA& userString, const CStringA& objStringK, const CStringA& objStringV);
    CStateChangedEvent(const CStateChangedEvent&) = default;
    CStateChangedEvent& operator=(const CStateChangedEvent&) = default;

    CCommandEvent* Replicate() override;

    static int staticType() noexcept { return 1; }

  protected:
    CStateChangedEvent() noexcept;
    ~CStateChangedEvent() override;
};
