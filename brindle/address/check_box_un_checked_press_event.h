// CCheckBoxUnCheckedPressEvent: a check box was pressed and is now unchecked. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CCheckBoxUnCheckedPressEvent : public CStateEvent {
  public:
    using CStateEvent::CStateEvent;
    CCheckBoxUnCheckedPressEvent(const CCheckBoxUnCheckedPressEvent&) = default;
    CCheckBoxUnCheckedPressEvent& operator=(const CCheckBoxUnCheckedPressEvent&) = default;

    CCommandEvent* Replicate() override;

  protected:
    ~CCheckBoxUnCheckedPressEvent() override;
};
