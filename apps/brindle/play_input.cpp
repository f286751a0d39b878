// Tests: command_run_test.cpp.
#include "apps/brindle/play_input.h"

#include <iostream>

#include "apps/brindle/cli_output.h"
#include "host/host_files.h"
#include "host/register_types.h"

namespace brindle::tool {

void LoadOrFail(const std::string& folder, host::Site& site) {
    host::RegisterHostTypes();
    host::Problems problems;
    const bool loaded = host::LoadSite(folder, site, problems);
    for (const host::Problem& warning : site.warnings) Complain(warning.Place(), warning.text);
    if (loaded) return;
    for (std::size_t i = 1; i < problems.size(); ++i) Complain(problems[i].Place(), problems[i].text);
    throw Failure(kWrongUsage, problems.at(0).Place(), problems.at(0).text);
}

EventInput::EventInput(const std::optional<std::string>& events, const host::Site& site, bool live)
    : m_path(events.value_or(site.plan.recording)) {
    if (m_path == "-") {
        m_path = "standard input";
        if (live)
            m_source = std::make_unique<host::BackgroundReader>(std::cin, m_path);
        else
            m_source = std::make_unique<host::EventReader>(std::cin, m_path);
        return;
    }
    if (m_path.empty() && !site.polls.empty() && live) {
        m_source = std::make_unique<host::NoEvents>();
        return;
    }
    if (m_path.empty())
        throw Failure(kWrongUsage, site.plan.file, "names no \"Recording\", and no --events is given");
    if (host::IsFolder(m_path)) throw Failure(kWrongUsage, m_path, "is a folder");
    m_file.open(host::SystemFilePath(m_path), std::ios::binary);
    if (!m_file) throw Failure(kWrongUsage, m_path, "cannot be opened");
    m_source = std::make_unique<host::EventReader>(m_file, m_path);
}

}  // namespace brindle::tool
