// CMeterValueChangeEvent: a meter shows another value. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/state_event.h"

class BRINDLE_API CMeterValueChangeEvent : public CStateEvent {
  public:
    // The base with the value.
    CMeterValueChangeEvent(float value, const CAddressOv& address, bool masked, int state,
                           const CStringA& stateDueToHeader, const CStringA& stateDueToCauseHeader,
                           const CStringA& stateDueToString, const CStringA& userString,
                           const CStringA& objStringK, const CStringA& objStringV);
    CMeterValueChangeEvent(const CMeterValueChangeEvent&) = default;
    CMeterValueChangeEvent& operator=(const CMeterValueChangeEvent&) = default;

    CCommandEvent* Replicate() override;  // carries the value over

    float GetValue() const noexcept { return m_value; }

  protected:
    ~CMeterValueChangeEvent() override;

  private:
    friend struct brindle::LayoutProbe;

    float m_value;
};
