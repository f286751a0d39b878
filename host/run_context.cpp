// The actions of a run. Tests: run_test.cpp.
#include "host/run_context.h"

#include <brindle/address/state_event.h>
#include <brindle/behaviour/action.h>
#include <brindle/library/host_path_access.h>

#include "host/address_pattern.h"
#include "host/event_record.h"
#include "host/host_files.h"

namespace brindle::host {

RunRecord RunContext::Begin(const char* kind, const CCommandAction& action) const {
    RunRecord record = m_state.Begin(kind);
    if (m_state.current) record["object"] = TextToUtf8(m_state.current->plan.name);
    record["by"] = m_state.by;
    record["trigger"] = m_state.trigger;
    record["action"] = ItemLabel(&action);
    return record;
}

void RunContext::Write(RunRecord record) const {
    if (m_state.dryRun) record["dryRun"] = true;
    m_state.sink.Write(record);
}

void RunContext::RunCommand(const CCommandAction& action, const CStringA& line) {
    RunRecord record = Begin("command", action);
    record["line"] = TextToUtf8(line.view());
    Write(std::move(record));
}

bool RunContext::StartsPrograms() const {
    return !m_state.dryRun && m_state.site.plan.startPrograms;
}

CStringA RunContext::StartFolder() const {
    return AbsoluteHostPath(m_state.site.plan.folder);
}

void RunContext::WriteLog(const CCommandAction& action, const CStringA& text) {
    RunRecord record = Begin("log", action);
    record["text"] = TextToUtf8(text.view());
    Write(std::move(record));
}

VariableManager* RunContext::ScopeFor(SiteObject* object, VariableTarget target, const CStringA& name,
                                      const char*& word) const {
    CStringA unused;
    Site& site = m_state.site;
    const bool inSite = site.scope.getValue(name, unused);
    const bool inObject = object && object->scope.getValue(name, unused);
    const bool nearestIsSite = target == VariableTarget::kNearest && inSite && !inObject;
    if (!object || target == VariableTarget::kSite || nearestIsSite) {
        word = "site";
        return &site.scope;
    }
    word = "object";
    return &object->scope;
}

void RunContext::SetVariable(const CCommandAction& action, VariableTarget target, const CStringA& name,
                             const CStringA& value) {
    const char* word = "";
    VariableManager* scope = ScopeFor(m_state.current, target, name, word);
    RunRecord record = Begin("variable", action);
    record["scope"] = word;
    record["name"] = TextToUtf8(name.view());
    record["value"] = TextToUtf8(value.view());
    Write(std::move(record));
    if (!m_state.dryRun) scope->addVariable(Variable(name, value));
}

void RunContext::SendState(const CCommandAction& action, const CStateEvent* event) {
    RunRecord record = Begin("send", action);
    DescribeEvent(*event, record);
    Write(std::move(record));
    if (m_state.dryRun)
        event->Release();
    else
        m_state.queue.push_back(event);
}

void RunContext::AskSnmp(const CCommandAction& action, const SnmpRequest& request, VariableTarget target,
                         const CStringA& variable) {
    RunRecord record = Begin("snmp", action);
    record["what"] = request.what == SnmpRequest::kSet ? "set" : "get";
    record["agent"] = TextToUtf8(request.variable.agent.view());
    record["oid"] = TextToUtf8(request.variable.oid.view());
    if (request.what == SnmpRequest::kSet) {
        record["type"] = request.variable.type;
        record["value"] = TextToUtf8(request.variable.value.view());
    }
    if (!m_state.snmp || m_state.dryRun) {
        record["sent"] = false;
        return Write(std::move(record));
    }
    ++m_state.asked;
    m_state.snmp->Send(request, [this, record, target, variable](const SnmpAnswer& answer) {
        --m_state.asked;
        TakeSnmpAnswer(record, answer, target, variable);
    });
}

void RunContext::TakeSnmpAnswer(RunRecord record, const SnmpAnswer& answer, VariableTarget target,
                                const CStringA& variable) {
    record["t"] = m_state.pace.Elapsed();
    if (!answer.why.empty()) {
        record["kind"] = "failure";
        record["why"] = TextToUtf8(answer.why);
        return m_state.sink.Write(record);
    }
    const bool get = record["what"] == "get";
    if (get) {
        record["oid"] = TextToUtf8(answer.variable.oid.view());
        record["type"] = answer.variable.type;
        record["value"] = TextToUtf8(answer.variable.value.view());
    }
    if (get && !variable.IsEmpty()) {
        const char* word = "";
        // By its name: the object itself may be gone.
        SiteObject* object = record.contains("object")
                                 ? m_state.site.Find(TextFromUtf8(record["object"].get<std::string>()))
                                 : nullptr;
        ScopeFor(object, target, variable, word)->addVariable(Variable(variable, answer.variable.value));
        record["scope"] = word;
        record["name"] = TextToUtf8(variable.view());
    }
    m_state.sink.Write(record);
}

void RunContext::ReportFailure(const CCommandAction& action, const CStringA& why) {
    RunRecord record = Begin("failure", action);
    record["why"] = TextToUtf8(why.view());
    Write(std::move(record));
}

void RunContext::ReportFault(const CCommandTrigger& trigger, const CStringA& why) {
    Problem problem;
    std::string place;
    if (const SiteObject* object = m_state.current) {
        problem.file = object->plan.behaviours;
        place = "object " + object->plan.name + ", ";
    }
    problem.text = place + "trigger " + TextFromUtf8(ItemLabel(&trigger)) + ": " + why.str();
    m_state.sink.Warn(problem);
}

const VariableManager* RunContext::ObjectScope() const {
    return m_state.current ? &m_state.current->scope : nullptr;
}

CAddressOv RunContext::ObjectAddress() const {
    return m_state.current ? m_state.current->plan.address : CAddressOv();
}

CStringA RunContext::Caption(const CAddressOv& address) const {
    std::string caption;
    if (!address.IsDeferred()) caption = m_state.site.devices.Caption(address.GetDWord());
    if (caption.empty() && m_state.current) caption = m_state.current->plan.caption;
    return caption;
}

bool RunContext::DeviceField(std::uint32_t device, const CStringA& name, CStringA& value) const {
    std::string text;
    if (!m_state.site.devices.Field(device, name.view(), text)) return false;
    value = text;
    return true;
}

CStringA RunContext::Path() const {
    return m_state.site.plan.folder;
}

}  // namespace brindle::host
