// The host's answers in a run. Tests: run_program_test.cpp.
#include "host/run_data.h"

#include "host/host_files.h"

namespace brindle::host {

int RunData::GetAddressStatus(const FullAddress_t* address) {
    return m_state.site.devices.GetAddressStatus(address);
}

CStringA RunData::GetHashFieldValue(const FullAddress_t* address, const char* fieldName) {
    return m_state.site.devices.GetHashFieldValue(address, fieldName);
}

void RunData::WriteCommandLog(const char* line) {
    RunRecord record = m_state.Begin("program");
    if (m_state.current) record["object"] = TextToUtf8(m_state.current->plan.name);
    record["by"] = m_state.by;
    record["trigger"] = m_state.trigger;
    record["line"] = TextToUtf8(line);
    m_state.sink.Write(record);
}

int RunData::SelectActions(CCommandBehaviourList& list, int selection, brindle::eHostType host) {
    return m_state.site.devices.SelectActions(list, selection, host);
}

}  // namespace brindle::host
