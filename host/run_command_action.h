// RunCommandAction: runs a command line. For now the finished line is handed to the context, which logs it;
// starting the program comes with the macro commands.
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
