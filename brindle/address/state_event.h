// CStateEvent: an event about one device: its address, whether it is masked, its state number, and six
// strings that describe the change. The base of all concrete events. Thread: as CCommandEvent's.
#pragma once

#include "brindle/address/address_ov.h"
#include "brindle/address/event.h"
#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class BRINDLE_API CStateEvent : public CCommandEvent {
  public:
    // Keeps everything as given, but the address's parts cut to their range.
    CStateEvent(const CAddressOv& address, bool masked, int state, const CStringA& stateDueToHeader,
                const CStringA& stateDueToCauseHeader, const CStringA& stateDueToString,
                const CStringA& userString, const CStringA& objStringK, const CStringA& objStringV);
    CStateEvent(const CStateEvent&) = default;  // cuts the address's parts to their range
    CStateEvent& operator=(const CStateEvent&) = default;

    CCommandEvent* Replicate() override;

    const CAddressOv& GetAddress() const noexcept { return m_address; }
    bool IsMasked() const noexcept { return m_masked; }
    int GetState() const noexcept { return m_state; }
    CStringA GetStateDueToHeader() const { return m_stateDueToHeader; }
    CStringA GetStateDueToCauseHeader() const { return m_stateDueToCauseHeader; }
    CStringA GetStateDueToString() const { return m_stateDueToString; }
    CStringA GetUserString() const { return m_userString; }
    CStringA GetObjStringK() const { return m_objStringK; }
    CStringA GetObjStringV() const { return m_objStringV; }

  protected:
    CStateEvent() = default;  // address all deferred, not masked, state 0, strings empty
    ~CStateEvent() override;

    // A new Event made from this event's fields, never null, with one reference, the caller's; its own extra field goes
    // first. What Replicate is made of.
    template <class Event, class... Extra>
    Event* ReplicateAs(Extra... extra) const {
        return new Event(extra..., m_address, m_masked, m_state, m_stateDueToHeader, m_stateDueToCauseHeader,
                         m_stateDueToString, m_userString, m_objStringK, m_objStringV);
    }

  private:
    friend struct brindle::LayoutProbe;

    CAddressOv m_address;
    bool m_masked = false;
    int m_state = 0;
    CStringA m_stateDueToHeader;
    CStringA m_stateDueToCauseHeader;
    CStringA m_stateDueToString;
    CStringA m_userString;
    CStringA m_objStringK;
    CStringA m_objStringV;
};
