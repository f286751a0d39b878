// CCheckBoxCheckedPressEvent: a check box was pressed and is now checked. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CCheckBoxCheckedPressEvent : public CStateEvent {
  public:
    using CStateEvent::CStateEvent;
    CCheckBoxCheckedPressEvent(const CCheckBoxCheckedPressEvent&) = default;
    CCheckBoxCheckedPressEvent& operator=(const CCheckBoxCheckedPressEvent&) = default;

    CCommandEvent* Replicate() override;

  protected:
    ~CCheckBoxCheckedPressEvent() override;
};
