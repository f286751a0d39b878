// The check of whole paths. Tests: site_test.cpp.
#include "host/site_check.h"

#include <brindle/variables/variable_manager.h>
#include <brindle/xml/xml_reader.h>

#include <algorithm>
#include <fstream>

#include "host/behaviour_check.h"
#include "host/device_table.h"
#include "host/event_reader.h"
#include "host/host_files.h"
#include "host/ini_text.h"
#include "host/map_check.h"
#include "host/site.h"
#include "host/skin_document.h"
#include "host/words.h"

namespace brindle::host {

namespace {

enum class PathKind { kSite, kBehaviours, kVariables, kSkin, kMap, kRecording, kOther };

// What an XML file is, by its root; a file that cannot be parsed counts as behaviours, which reports why.
PathKind KindOfXml(const std::string& path) {
    XMLReader reader;
    CStringA unused;
    if (!reader.Load(path.c_str(), unused) || reader.EnterSection("BehaviourList", true))
        return PathKind::kBehaviours;
    if (reader.EnterSection("Variables", true)) return PathKind::kVariables;
    if (reader.EnterSection("map", true)) return PathKind::kMap;
    return reader.EnterSection("skin", true) ? PathKind::kSkin : PathKind::kOther;
}

PathKind KindOf(const std::string& path) {
    if (IsFolder(path)) return PathKind::kSite;
    if (path.ends_with(".jsonl")) return PathKind::kRecording;
    return KindOfXml(path);
}

// The recording's lines; `plan` says which objects there are (null: not known).
void CheckRecording(const std::string& path, const SitePlan* plan, Problems& problems) {
    std::ifstream file(SystemFilePath(path), std::ios::binary);
    if (!file) {
        problems.push_back({path, 0, 0, "cannot be opened"});
        return;
    }
    EventReader reader(file, path);
    for (;;) {
        const EventItem item = reader.Next({}).value_or(EventItem());
        if (item.what == EventItem::kEnd) return;
        if (item.what == EventItem::kProblem) problems.push_back(item.problem);
        if (item.what != EventItem::kEvent || !plan || item.event.object.empty()) continue;
        const auto& objects = plan->objects;
        if (std::none_of(objects.begin(), objects.end(),
                         [&](const ObjectPlan& object) { return object.name == item.event.object; }))
            problems.push_back({path, item.line, 0, "the site has no object \"" + item.event.object + "\""});
    }
}

class SiteChecker {
  public:
    SiteChecker(const SitePlan& plan, CheckReport& report) : m_plan(plan), m_report(report) {}

    void Run() {
        CheckIniFiles();
        if (Count(m_plan.variables)) CheckVariables(m_plan.variables, m_scope, m_report.problems);
        // An action may set a variable that the texts of another object use.
        for (const ObjectPlan& object : m_plan.objects) AddVariablesSet(object.behaviours, m_scope);
        for (const ObjectPlan& object : m_plan.objects) CheckObject(object);
        if (Count(m_plan.skin)) CheckSkin(m_plan.skin, m_report.problems);
        if (Count(m_plan.map)) CheckMapOfSite();
        if (Count(m_plan.recording)) CheckRecording(m_plan.recording, &m_plan, m_report.problems);
    }

    // The same as far as one file's problems depend on it.
    void Run(const std::string& only) {
        CheckIniFiles();
        if (Count(m_plan.variables)) CheckVariables(m_plan.variables, m_scope, m_report.problems);
        const auto concerns = [&](const ObjectPlan& object) {
            return object.behaviours == only || object.variables == only;
        };
        const bool map = !only.empty() && m_plan.map == only;
        if (map || std::any_of(m_plan.objects.begin(), m_plan.objects.end(), concerns))
            for (const ObjectPlan& object : m_plan.objects) AddVariablesSet(object.behaviours, m_scope);
        for (const ObjectPlan& object : m_plan.objects)
            if (concerns(object)) CheckObject(object);
        if (m_plan.skin == only && Count(only)) CheckSkin(only, m_report.problems);
        if (map && Count(only)) CheckMapOfSite();
    }

  private:
    bool Count(const std::string& path) {
        if (path.empty()) return false;
        ++m_report.files;
        return true;
    }

    void CheckIniFiles() {
        std::string bytes;
        if (ReadIni(m_plan.devices, bytes)) {
            const IniText devices(bytes, m_plan.devices, m_report.problems);
            m_devices.Load(devices, m_plan.devices, m_report.problems);
            ReadPollPlans(devices, m_plan.devices, m_report.problems);
        }
        if (!ReadIni(m_plan.macros, bytes)) return;
        const IniText macros(bytes, m_plan.macros, m_report.problems);
        for (const IniSection& section : macros.Sections()) CheckMacros(section);
    }

    void CheckMacros(const IniSection& section) {
        if (SameWord(section.name, "Directories")) return CheckDirectories(section);
        const bool paths = SameWord(section.name, "SearchPath");
        if (!paths && !SameWord(section.name, "CommandActions")) {
            m_report.problems.push_back(
                {m_plan.macros, section.line, 1, "section [" + section.name + "] is unknown"});
            return;
        }
        for (const IniKey& key : section.keys) {
            const std::vector<std::string> problems = paths ? CheckSearchPath(key.name, m_commands)
                                                            : CheckCommand("<" + key.name + ">", m_commands);
            for (const std::string& problem : problems)
                m_report.problems.push_back({m_plan.macros, key.line, 1, "\"" + key.name + "\": " + problem});
        }
    }

    // Those that file boxes used last.
    void CheckDirectories(const IniSection& section) {
        for (const IniKey& key : section.keys) {
            const auto is = [&](const char* name) { return SameWord(key.name, name); };
            if (is("LastSchematicDir") || is("LastComponentDir") || is("LastGraphicsDir")) continue;
            m_report.problems.push_back(
                {m_plan.macros, key.line, 1, "key \"" + key.name + "\" of [Directories] is unknown"});
        }
    }

    bool ReadIni(const std::string& path, std::string& bytes) {
        if (!Count(path)) return false;
        const std::string why = ReadSiteFile(path, bytes);
        if (!why.empty()) m_report.problems.push_back({path, 0, 0, why});
        return why.empty();
    }

    void CheckObject(const ObjectPlan& object) {
        VariableManager scope;
        AddObjectVariables(object, scope);
        scope.setParent(&m_scope);
        if (Count(object.variables)) CheckVariables(object.variables, scope, m_report.problems);
        BehaviourSurroundings surroundings;
        surroundings.host = object.host;
        surroundings.address = object.address;
        surroundings.texts.scope = &scope;
        surroundings.texts.scopes = "object " + object.name + ", site";
        surroundings.texts.devices = &m_devices;
        surroundings.commands = &m_commands;
        surroundings.starts = m_plan.startPrograms;
        Count(object.behaviours);
        CheckBehaviours(object.behaviours, surroundings, m_report.problems);
    }

    void CheckMapOfSite() {
        MapSurroundings surroundings;
        surroundings.plan = &m_plan;
        surroundings.texts.scope = &m_scope;
        surroundings.texts.scopes = "site";
        surroundings.texts.devices = &m_devices;
        CheckMap(m_plan.map, surroundings, m_report.problems);
    }

    const SitePlan& m_plan;
    CheckReport& m_report;
    const CommandSurroundings m_commands{m_plan.folder, m_plan.macros, m_plan.startPrograms};
    DeviceTable m_devices;
    VariableManager m_scope;
};

void CheckSite(const std::string& folder, CheckReport& report) {
    SitePlan plan;
    Problems problems;
    ++report.files;
    if (!ReadSitePlan(folder, plan, problems)) {
        report.unopened.insert(report.unopened.end(), problems.begin(), problems.end());
        return;
    }
    MapDrives(plan);
    report.problems.insert(report.problems.end(), problems.begin(), problems.end());
    SiteChecker(plan, report).Run();
}

// The files given one by one: all their variables make one scope.
struct LooseFiles {
    VariableManager scope;
    std::string scopes;
};

void CheckFile(const std::string& path, PathKind kind, const LooseFiles& loose, CheckReport& report) {
    ++report.files;
    if (kind == PathKind::kRecording) return CheckRecording(path, nullptr, report.problems);
    if (kind == PathKind::kVariables) {
        VariableManager unused;
        return CheckVariables(path, unused, report.problems);
    }
    if (kind == PathKind::kSkin) return CheckSkin(path, report.problems);
    if (kind == PathKind::kMap) return CheckMap(path, {}, report.problems);
    if (kind == PathKind::kOther) {
        report.problems.push_back(
            {path, 1, 1, "is neither a behaviour list nor variables nor a skin nor a map"});
        return;
    }
    VariableManager own;
    AddVariablesSet(path, own);
    VariableManager outer(loose.scope);
    own.setParent(&outer);
    BehaviourSurroundings surroundings;
    surroundings.texts.scope = &own;
    surroundings.texts.scopes = loose.scopes;
    CheckBehaviours(path, surroundings, report.problems);
}

}  // namespace

void CheckFileOfSite(const SitePlan& plan, const std::string& path, Problems& problems) {
    CheckReport report;
    SiteChecker(plan, report).Run(path);
    for (Problem& problem : report.problems)
        if (problem.file == path) problems.push_back(std::move(problem));
}

CheckReport CheckPaths(const std::vector<std::string>& paths) {
    CheckReport report;
    std::vector<std::pair<std::string, PathKind>> readable;
    LooseFiles loose;
    // What a text may always refer to; a list alone does not say for which object.
    AddObjectVariables(ObjectPlan(), loose.scope);
    for (const std::string& path : paths) {
        std::string bytes;
        const bool folder = IsFolder(path);
        const std::string why = folder ? std::string() : ReadSiteFile(path, bytes);
        if (!why.empty()) {
            report.unopened.push_back({path, 0, 0, why});
            continue;
        }
        readable.emplace_back(path, KindOf(path));
        if (readable.back().second != PathKind::kVariables) continue;
        Problems reportedLater;
        CheckVariables(path, loose.scope, reportedLater);
        loose.scopes += (loose.scopes.empty() ? "" : ", ") + path;
    }
    for (const auto& [path, kind] : readable) {
        if (kind == PathKind::kSite)
            CheckSite(path, report);
        else
            CheckFile(path, kind, loose, report);
    }
    return report;
}

}  // namespace brindle::host
