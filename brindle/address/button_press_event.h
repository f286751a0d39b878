// CButtonPressEvent: a button was pressed; for a toggle button, with the state it now has. Thread: as
// CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CButtonPressEvent : public CStateEvent {
  public:
    using CStateEvent::CStateEvent;
    CButtonPressEvent(const CButtonPressEvent&) = default;
    CButtonPressEvent& operator=(const CButtonPressEvent&) = default;

    CCommandEvent* Replicate() override;  // carries the toggle state over

    bool toggleState() const noexcept { return m_toggleState; }
    void setToggleState(bool state) noexcept { m_toggleState = state; }

  protected:
    ~CButtonPressEvent() override;

  private:
    friend struct brindle::LayoutProbe;

    bool m_toggleState = false;
};
