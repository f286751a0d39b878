// site.ini: one section [Site], and one [Object NAME] for each object. Tests: site_test.cpp.
#include "host/site_plan.h"

#include <brindle/library/host_path_access.h>

#include <string_view>
#include <unordered_set>

#include "host/host_files.h"
#include "host/ini_text.h"
#include "host/virtual_clock.h"
#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::string_view kObject = "Object ";

struct HostName {
    const char* name;
    eHostType host;
};
constexpr HostName kHostNames[] = {
    {"MapObject", eHostMapObject}, {"Button", eHostButton}, {"Meter", eHostMeter}, {"System", eHostSystem}};

// Reads the keys of site.ini into a plan.
class PlanReader {
  public:
    PlanReader(SitePlan& plan, Problems& problems) : m_plan(plan), m_problems(problems) {}

    void Read(const IniText& ini) {
        bool found = false;
        for (const IniSection& section : ini.Sections()) {
            if (SameWord(section.name, "Site")) {
                found = true;
                ReadSite(section);
            } else if (SameWord(section.name, "Drives")) {
                ReadDrives(section);
            } else if (SameWord(section.name.substr(0, kObject.size()), kObject)) {
                ReadObject(section);
            } else {
                Report(section.line, "section [" + section.name + "] is unknown");
            }
        }
        if (!found) Report(0, "section [Site] is missing");
        if (m_plan.objects.empty()) Report(0, "the site has no section [Object NAME]");
    }

  private:
    void Report(std::uint32_t line, std::string text) {
        m_problems.push_back({m_plan.file, line, line ? 1U : 0U, std::move(text)});
    }
    std::string Path(const IniKey& key) const {
        return key.value.empty() ? std::string() : InFolder(m_plan.folder, key.value);
    }

    void ReadSite(const IniSection& section) {
        struct PathKey {
            const char* name;
            std::string SitePlan::*path;
        };
        constexpr PathKey kPaths[] = {{"Variables", &SitePlan::variables},
                                      {"Devices", &SitePlan::devices},
                                      {"Macros", &SitePlan::macros},
                                      {"Skin", &SitePlan::skin},
                                      {"Map", &SitePlan::map},
                                      {"Recording", &SitePlan::recording}};
        for (const IniKey& key : section.keys) {
            const auto* path = std::begin(kPaths);
            while (path != std::end(kPaths) && !SameWord(key.name, path->name)) ++path;
            if (path != std::end(kPaths)) {
                m_plan.*path->path = Path(key);
            } else if (SameWord(key.name, "Name")) {
                m_plan.name = key.value;
            } else if (SameWord(key.name, "StartPrograms")) {
                ReadFlag(key, m_plan.startPrograms);
            } else if (SameWord(key.name, "CheckArguments")) {
                ReadFlag(key, m_plan.checkArguments);
            } else if (!SameWord(key.name, "Start")) {
                Report(key.line, "key \"" + key.name + "\" of [Site] is unknown");
            } else if (!ParseMoment(key.value, m_plan.start)) {
                Report(key.line, "\"" + key.value + "\" is not a moment such as 2024-01-01 08:00:00");
            }
        }
    }

    void ReadFlag(const IniKey& key, bool& flag) {
        const bool on = SameWord(key.value, "TRUE") || SameWord(key.value, "ON") || key.value == "1";
        const bool off = SameWord(key.value, "FALSE") || SameWord(key.value, "OFF") || key.value == "0";
        if (on || off)
            flag = on;
        else
            Report(key.line, "\"" + key.value + "\" is not TRUE or FALSE");
    }

    void ReadDrives(const IniSection& section) {
        for (const IniKey& key : section.keys) {
            const char letter = key.name.size() == 1 ? static_cast<char>(key.name[0] | 0x20) : '\0';
            if (letter < 'a' || letter > 'z')
                Report(key.line, "\"" + key.name + "\" is not the letter of a drive");
            else
                m_plan.drives.push_back({letter, Path(key)});
        }
    }

    void ReadObject(const IniSection& section) {
        ObjectPlan object;
        object.name = std::string(Trimmed(std::string_view(section.name).substr(kObject.size())));
        object.line = section.line;
        object.caption = object.name;
        object.behaviours = InFolder(m_plan.folder, "behaviours/" + object.name + ".xml");
        if (!m_names.insert(object.name).second) {
            Report(section.line, "object \"" + object.name + "\" comes twice");
            return;
        }
        for (const IniKey& key : section.keys) ReadObjectKey(key, object);
        m_plan.objects.push_back(std::move(object));
    }

    void ReadObjectKey(const IniKey& key, ObjectPlan& object) {
        if (SameWord(key.name, "Caption")) {
            object.caption = key.value;
        } else if (SameWord(key.name, "Behaviours")) {
            object.behaviours = Path(key);
        } else if (SameWord(key.name, "Variables")) {
            object.variables = Path(key);
        } else if (SameWord(key.name, "Address")) {
            if (!object.address.SetAddress(key.value.c_str()))
                Report(key.line, "\"" + key.value + "\" is not an address such as 0001:02:03");
        } else if (SameWord(key.name, "Host")) {
            if (!FindHost(key.value, object.host))
                Report(key.line, "\"" + key.value + "\" is not MapObject, Button, Meter or System");
        } else {
            Report(key.line, "key \"" + key.name + "\" of an object is unknown");
        }
    }

    static bool FindHost(std::string_view word, eHostType& host) {
        for (const HostName& name : kHostNames) {
            if (!SameWord(word, name.name)) continue;
            host = name.host;
            return true;
        }
        return false;
    }

    SitePlan& m_plan;
    Problems& m_problems;
    std::unordered_set<std::string> m_names;
};

}  // namespace

bool ReadSitePlan(const std::string& folder, SitePlan& plan, Problems& problems) {
    plan = SitePlan();
    plan.folder = folder;
    plan.file = InFolder(folder, "site.ini");
    plan.start = VirtualClock::kDefaultStart;
    std::string bytes;
    const std::string why = ReadSiteFile(plan.file, bytes);
    if (!why.empty()) {
        problems.push_back({plan.file, 0, 0, why});
        return false;
    }
    PlanReader(plan, problems).Read(IniText(bytes, plan.file, problems));
    return true;
}

void MapDrives(const SitePlan& plan) {
    for (const SitePlan::Drive& drive : plan.drives)
        MapDriveLetter(drive.letter, SystemFilePath(AbsoluteHostPath(drive.folder)));
}

}  // namespace brindle::host
