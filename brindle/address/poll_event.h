// CPollEvent: a device is polled. One without an address asks for nothing in particular. Thread: as
// CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CPollEvent : public CStateEvent {
  public:
    CPollEvent() = default;
    using CStateEvent::CStateEvent;
    CPollEvent(const CPollEvent&) = default;
    CPollEvent& operator=(const CPollEvent&) = default;

    CCommandEvent* Replicate() override;

  protected:
    ~CPollEvent() override;
};
