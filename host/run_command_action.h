// RunCommandAction: runs a macro command line: "<name>" macros, search paths and fields, then the programs start. The
// context decides whether they really do.
#pragma once

#include "host/host_action.h"

namespace brindle::host {

class RunCommandAction final : public HostAction<RunCommandAction> {
  public:
    static constexpr const char* kTypeName = "RunCommandAction";
    static constexpr const char* kTypeText = "Run Command";

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    CStringA m_command;
};

}  // namespace brindle::host
