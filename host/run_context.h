// RunContext: what actions do in a run. Commands and log lines become records, variables go to the site's
// scopes, states are queued. In a dry run the records say what would have happened and nothing does.
#pragma once

#include "host/host_context.h"
#include "host/run_state.h"
#include "host/snmp_requests.h"

namespace brindle::host {

class RunContext final : public HostContext {
  public:
    explicit RunContext(RunState& state) : m_state(state) {}

    void RunCommand(const CCommandAction& action, const CStringA& line) override;
    bool StartsPrograms() const override;
    CStringA StartFolder() const override;
    void WriteLog(const CCommandAction& action, const CStringA& text) override;
    void SetVariable(const CCommandAction& action, VariableTarget target, const CStringA& name,
                     const CStringA& value) override;
    void SendState(const CCommandAction& action, const CStateEvent* event) override;
    void AskSnmp(const CCommandAction& action, const SnmpRequest& request, VariableTarget target,
                 const CStringA& variable) override;
    void ReportFailure(const CCommandAction& action, const CStringA& why) override;
    void ReportFault(const CCommandTrigger& trigger, const CStringA& why) override;
    const VariableManager* ObjectScope() const override;
    CAddressOv ObjectAddress() const override;
    CStringA Caption(const CAddressOv& address) const override;
    bool DeviceField(std::uint32_t device, const CStringA& name, CStringA& value) const override;
    CStringA Path() const override;

  private:
    RunRecord Begin(const char* kind, const CCommandAction& action) const;
    // The scope a variable goes to for an object (null: none), and its word in records.
    VariableManager* ScopeFor(SiteObject* object, VariableTarget target, const CStringA& name,
                              const char*& word) const;
    // The answer to a request of an action; `record` is what is known of it.
    void TakeSnmpAnswer(RunRecord record, const SnmpAnswer& answer, VariableTarget target,
                        const CStringA& variable);
    void Write(RunRecord record) const;

    RunState& m_state;
};

}  // namespace brindle::host
