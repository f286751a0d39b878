// Exchanging the polls of a running site. Tests: settings_test.cpp, snmp_run_test.cpp.
#include "host/polls_file.h"

#include "host/host_files.h"
#include "host/station_polls.h"

namespace brindle::host {

PollsFile::PollsFile(std::string path, const HostFileMarks& known, StationPolls& polls)
    : ReloadedFile(std::move(path), known), m_polls(polls) {}

void PollsFile::Read(Problems& problems) {
    std::string bytes;
    const std::string why = ReadSiteFile(Path(), bytes);
    if (!why.empty()) return problems.push_back({Path(), 0, 0, why});
    m_fresh = ReadPollPlans(IniText(bytes, Path(), problems), Path(), problems);
}

void PollsFile::TakeOver(RunState& state) {
    const std::size_t changed = m_polls.Replace(m_fresh);
    if (changed == 0) return;
    RunRecord record = ReloadRecord(state, Path());
    record["polls"] = changed;
    state.sink.Write(record);
}

}  // namespace brindle::host
