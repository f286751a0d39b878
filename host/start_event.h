// StartEvent: the run begins. Every behaviour list gets one before anything else; it arms the time based
// triggers. It concerns no device.
#pragma once

#include <brindle/address/event.h>

namespace brindle::host {

class StartEvent final : public CCommandEvent {
  public:
    CCommandEvent* Replicate() override;

  protected:
    ~StartEvent() override;
};

}  // namespace brindle::host
