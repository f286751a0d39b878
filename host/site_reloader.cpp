// Noticing, checking and exchanging. Tests: site_reload_test.cpp.
#include "host/site_reloader.h"

#include <map>

#include "host/behaviours_file.h"
#include "host/site_check.h"
#include "host/skin_file.h"
#include "host/variables_file.h"

namespace brindle::host {

SiteReloader::SiteReloader(RunState& state) : m_state(state) {
    AddVariables();
    AddBehaviours();
    AddChecked(state.site.plan.macros);
    const std::string& skin = state.site.plan.skin;
    if (!skin.empty()) Add(std::make_unique<SkinFile>(skin, KnownMarks(skin)));
    Mark();  // a file may have changed since it was loaded
}

SiteReloader::~SiteReloader() = default;

void SiteReloader::Add(std::unique_ptr<ReloadedFile> file) {
    if (!m_monitor.StartMonitoringFile(file->Path(), this))
        m_state.sink.Warn({file->Path(), 0, 0, "is not watched: changes of it will not be noticed"});
    m_files.push_back(std::move(file));
}

void SiteReloader::AddBehaviours() {
    std::map<std::string, BehavioursFile*> byPath;  // objects may share one
    for (const auto& object : m_state.site.objects) {
        const std::string& path = object->plan.behaviours;
        BehavioursFile*& file = byPath[path];
        if (!file) {
            auto made = std::make_unique<BehavioursFile>(path, KnownMarks(path));
            file = made.get();
            Add(std::move(made));
        }
        file->AddObject(*object);
    }
}

void SiteReloader::AddVariables() {
    std::map<std::string, VariablesFile*> byPath;
    const auto add = [&](const std::string& path, VariableManager& scope, const ObjectPlan* object) {
        if (path.empty()) return;
        VariablesFile*& file = byPath[path];
        if (!file) {
            auto made = std::make_unique<VariablesFile>(path, KnownMarks(path));
            file = made.get();
            Add(std::move(made));
        }
        file->AddScope(scope, object);
    };
    add(m_state.site.plan.variables, m_state.site.scope, nullptr);
    for (const auto& object : m_state.site.objects) add(object->plan.variables, object->scope, &object->plan);
}

void SiteReloader::AddChecked(const std::string& path) {
    if (!path.empty()) Add(std::make_unique<CheckedFile>(path, MarksOfHostFile(path)));
}

HostFileMarks SiteReloader::KnownMarks(const std::string& path) const {
    const auto found = m_state.site.marks.find(path);
    return found == m_state.site.marks.end() ? HostFileMarks() : found->second;
}

void SiteReloader::Mark() {
    {
        const std::lock_guard lock(m_lock);
        m_changed = m_state.pace.Elapsed();
    }
    m_state.pace.Wake();
}

std::optional<std::uint64_t> SiteReloader::NextLook() const {
    const std::lock_guard lock(m_lock);
    if (!m_changed) return {};
    return *m_changed + kQuiet;
}

void SiteReloader::Look() {
    {
        const std::lock_guard lock(m_lock);
        m_changed.reset();
    }
    bool differed = false;
    for (const auto& file : m_files) {
        const HostFileMarks marks = MarksOfHostFile(file->Path());
        if (marks == file->Known()) continue;
        differed = true;
        Reload(*file, marks);
    }
    if (differed) Mark();  // what was still being written is looked at once more
}

void SiteReloader::Reload(ReloadedFile& file, const HostFileMarks& marks) {
    Problems problems;
    CheckFileOfSite(m_state.site.plan, file.Path(), problems);
    std::erase_if(problems, [](const Problem& problem) { return problem.warning; });
    if (problems.empty()) file.Read(problems);
    if (MarksOfHostFile(file.Path()) != marks) return;  // it changed meanwhile: the next look reads it
    file.SetKnown(marks);
    if (problems.empty())
        file.TakeOver(m_state);
    else
        Report(problems, file.WhenRefused());
}

// One line, however much is wrong.
void SiteReloader::Report(const Problems& problems, const char* consequence) const {
    Problem first = problems.front();
    if (problems.size() > 1) first.text += " (and " + std::to_string(problems.size() - 1) + " more)";
    first.text += std::string("; ") + consequence;
    m_state.sink.Warn(first);
}

}  // namespace brindle::host
