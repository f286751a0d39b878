// WriteLogAction: writes one line into the host's log.
#pragma once

#include "host/host_action.h"

namespace brindle::host {

class WriteLogAction final : public HostAction<WriteLogAction> {
  public:
    static constexpr const char* kTypeName = "WriteLogAction";
    static constexpr const char* kTypeText = "Write Log";

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    CStringA m_text;
};

}  // namespace brindle::host
