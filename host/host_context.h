// HostContext: what the actions and triggers of this host may ask of the program that runs them. Like the
// library's own slots it is registered once for the process; without one, actions do nothing.
//
// Thread: the one that runs the behaviour engine.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/framework/string_a.h>

#include <cstdint>

class CCommandAction;
class CCommandTrigger;
class CStateEvent;
class VariableManager;

namespace brindle::host {

struct SnmpRequest;

// Where an action puts a variable.
enum class VariableTarget {
    kNearest,  // the innermost scope that has it, else the object's
    kObject,
    kSite,
};

class HostContext {
  public:
    // A command line, formatted exactly as a program start gets it.
    virtual void RunCommand(const CCommandAction& action, const CStringA& line) = 0;
    // Whether programs really start, and the folder they start in, which holds wherever the current directory is.
    virtual bool StartsPrograms() const = 0;
    virtual CStringA StartFolder() const = 0;
    virtual void WriteLog(const CCommandAction& action, const CStringA& text) = 0;
    virtual void SetVariable(const CCommandAction& action, VariableTarget target, const CStringA& name,
                             const CStringA& value) = 0;
    // Queues the event for every object; it is never delivered from within this call. Takes over one
    // reference.
    virtual void SendState(const CCommandAction& action, const CStateEvent* event) = 0;
    // Asks an SNMP agent; the answer comes back later to the run. Of a get that names a variable the value
    // goes there.
    virtual void AskSnmp(const CCommandAction& action, const SnmpRequest& request, VariableTarget target,
                         const CStringA& variable) = 0;
    // Something an action could not do.
    virtual void ReportFailure(const CCommandAction& action, const CStringA& why) = 0;
    // Something in a trigger's configuration that keeps it from working.
    virtual void ReportFault(const CCommandTrigger& trigger, const CStringA& why) = 0;

    // The object whose list runs at present; outside a run: no scope, an address with all parts open.
    virtual const VariableManager* ObjectScope() const = 0;
    virtual CAddressOv ObjectAddress() const = 0;
    // The caption of the device at the address, else of the object whose list runs.
    virtual CStringA Caption(const CAddressOv& address) const = 0;
    // A field of the device at the packed address. False, and `value` unchanged, when the device or the field
    // is not known.
    virtual bool DeviceField(std::uint32_t device, const CStringA& name, CStringA& value) const = 0;
    // The folder of the site.
    virtual CStringA Path() const = 0;

  protected:
    ~HostContext() = default;  // never destroyed through this interface
};

// Registers the context (not owned; null: none) and returns the one registered before.
HostContext* RegisterHostContext(HostContext* context) noexcept;
HostContext* CurrentHostContext() noexcept;

}  // namespace brindle::host
