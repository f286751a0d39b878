// Tests: open_site_test.cpp, map_tool_test.cpp.
#include "apps/brindle-map/loaded_map.h"

#include <brindle/macro/brindle_data.h>

#include <utility>

#include "apps/brindle/cli_output.h"

namespace brindle::map {
namespace {

using tool::Failure;
using tool::kWrongUsage;

// The end at once.
class NoRecording final : public host::EventSource {
  public:
    std::optional<host::EventItem> Next(std::chrono::milliseconds) override { return host::EventItem(); }
};

}  // namespace

void Tell(const host::Problem& problem) {
    tool::Complain(problem.Place(), problem.text);
}

LoadedMap::LoadedMap(const std::string& folder) {
    tool::LoadOrFail(folder, m_site);
    const std::string& path = m_site.plan.map;
    if (path.empty()) throw Failure(kWrongUsage, m_site.plan.file, "names no \"Map\"");
    m_marks = MarksOfHostFile(path);
    host::Problems problems;
    const bool read = host::ReadMapDocument(path, m_document, problems);
    for (std::size_t i = read ? 0 : 1; i < problems.size(); ++i) Tell(problems[i]);
    if (!read) throw Failure(kWrongUsage, problems.at(0).Place(), problems.at(0).text);
}

LoadedMap::~LoadedMap() {
    if (m_view) RegisterIBrindleData(nullptr);
}

// A map needs no events: it shows what the files say.
void LoadedMap::OpenEvents(const std::optional<std::string>& events, bool live) {
    if (events || !m_site.plan.recording.empty()) {
        m_source = &m_input.emplace(events, m_site, live).Source();
    } else {
        m_none = std::make_unique<NoRecording>();
        m_source = m_none.get();
    }
}

void LoadedMap::MakeView() {
    AnswerFields();
    m_view.emplace(m_site, std::move(m_document), [this](const host::EventLine& line) {
        if (press) press(line);
    });
}

void LoadedMap::AnswerFields() {
    RegisterIBrindleData(&m_site.devices);
}

std::string LoadedMap::Title() const {
    const CStringA& title = m_view->Document().title;
    return title.IsEmpty() ? m_site.plan.name : title.str();
}

}  // namespace brindle::map
