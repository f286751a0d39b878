// CCommandEvent: the reference-counted base of everything that can make a behaviour fire.
//
// An event is born with count 1, which belongs to its creator. Whoever keeps it calls AddRef and later
// Release; the last Release destroys it. Copying and assigning copy the count along with everything else:
// they are plain value copies, Replicate is the way to duplicate a live event. Thread: the one that runs the
// behaviour engine; the count is not atomic.
#pragma once

#include "brindle/framework/export.h"

namespace brindle {
struct LayoutProbe;  // the layout test's way in
}

class BRINDLE_API CCommandEvent {
  public:
    CCommandEvent() noexcept = default;
    explicit CCommandEvent(int type) noexcept : m_type(type) {}
    CCommandEvent(const CCommandEvent&) = default;
    CCommandEvent& operator=(const CCommandEvent&) = default;

    virtual int AddRef() const;  // the new count
    // The new count; 0 when this was the last reference and the event is gone.
    virtual int Release() const;
    // A new event of the same class with count 1 that the caller owns. It has its class's own type id: one
    // set by setType is not carried over. The base returns null: a bare event cannot be replicated.
    virtual CCommandEvent* Replicate();

    int type() const noexcept { return m_type; }
    void setType(int type) noexcept { m_type = type; }

  protected:
    virtual ~CCommandEvent();  // events end by Release only

  private:
    friend struct brindle::LayoutProbe;

    mutable int m_references = 1;
    int m_type = -1;
};
