// RunData: what the library asks of the host in a run: the device table answers, and each started program's log line
// becomes a record.
#pragma once

#include <brindle/macro/brindle_data.h>

#include "host/run_state.h"

namespace brindle::host {

class RunData final : public IBrindleData {
  public:
    explicit RunData(RunState& state) : m_state(state) {}

    int GetAddressStatus(const FullAddress_t* address) override;
    CStringA GetHashFieldValue(const FullAddress_t* address, const char* fieldName) override;
    void WriteCommandLog(const char* line) override;
    int SelectActions(CCommandBehaviourList& list, int selection, brindle::eHostType host) override;

  private:
    RunState& m_state;
};

}  // namespace brindle::host
