// CCaptionChangedEvent: an object's caption was changed. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CCaptionChangedEvent : public CStateEvent {
  public:
    using CStateEvent::CStateEvent;
    CCaptionChangedEvent(const CCaptionChangedEvent&) = default;
    CCaptionChangedEvent& operator=(const CCaptionChangedEvent&) = default;

    CCommandEvent* Replicate() override;

  protected:
    ~CCaptionChangedEvent() override;
};
