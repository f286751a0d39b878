// Copying and editing. Tests: soak_main.cpp counts that every edit takes over.
#include "tests/soak/site_edits.h"

#include <brindle/library/host_path_access.h>
#include <brindle/xml/xml_writer.h>

#include <stdlib.h>

#include <fstream>
#include <stdexcept>

namespace brindle::soak {

namespace {

namespace fs = std::filesystem;

void Demand(bool done, const std::string& what) {
    if (!done) throw std::runtime_error(what);
}

// Puts `to` in the place of every `from`; false when there is none.
bool Replace(std::string& text, const std::string& from, const std::string& to) {
    bool found = false;
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
        found = true;
    }
    return found;
}

fs::path MakeFolder() {
    std::string name = (fs::temp_directory_path() / "brindle_soak_XXXXXX").string();
    Demand(::mkdtemp(name.data()) != nullptr, name + ": no folder can be made");
    return name;
}

void StartPrograms(const std::string& path) {
    std::string text;
    Demand(ReadHostFile(path, 1 << 20, text).ok(), path + ": cannot be read");
    Demand(Replace(text, "StartPrograms = FALSE", "StartPrograms = TRUE"),
           path + ": does not say StartPrograms");
    Demand(WriteHostFile(path, text).ok(), path + ": cannot be written");
}

}  // namespace

SiteEdits::SiteEdits(const fs::path& studio) : m_folder(MakeFolder()) {
    try {
        fs::copy(studio, m_folder, fs::copy_options::recursive);
        StartPrograms((m_folder / "site.ini").string());
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
        throw;
    }
}

SiteEdits::~SiteEdits() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void SiteEdits::Save(host::Site& site, SoakPace& pace) {
    const int wakes = pace.Wakes();
    switch (m_saved % 4) {
        case 0:
            SaveBehaviours(site, "alarms", "Period=\"3000\"", "Period=\"2000\"");
            break;
        case 1:
            SaveVariables(site);
            break;
        case 2:
            SaveBehaviours(site, "transmitter_a", "Text=\"Fan*\"", "Text=\"Fan 2*\"");
            break;
        default:
            SaveSkin(site);
    }
    ++m_saved;
    Demand(pace.AwaitWake(wakes), "edit " + std::to_string(m_saved) + " was not noticed");
}

// The list of the object as it runs, with one of the two words changed into the other.
void SiteEdits::SaveBehaviours(host::Site& site, const char* object, const char* one,
                               const char* other) const {
    const host::SiteObject* edited = site.Find(object);
    Demand(edited != nullptr, std::string("the studio has no object ") + object);
    XMLWriter writer;
    std::string text;
    Demand(writer.Initialize(), "no document can be made");
    edited->list.Save(writer);
    Demand(writer.SaveToString(text), std::string("the list cannot be saved: ") + object);
    Demand(Replace(text, one, other) || Replace(text, other, one),
           std::string("no ") + one + " in " + object);
    Demand(WriteHostFile(edited->plan.behaviours, text).ok(),
           edited->plan.behaviours + ": cannot be written");
}

void SiteEdits::SaveVariables(host::Site& site) const {
    VariableManager edited(site.scope);
    edited.addVariable(Variable("Engineer", CStringA("desk " + std::to_string(m_saved))));
    Demand(edited.save(site.plan.variables), site.plan.variables + ": cannot be written");
}

void SiteEdits::SaveSkin(host::Site& site) const {
    OVSkin edited(site.skin);
    edited.SetExactProp("pressed", "mark", "thickness", m_saved % 9);
    Demand(WriteHostFile(site.plan.skin, edited.GetXML().view()).ok(),
           site.plan.skin + ": cannot be written");
}

}  // namespace brindle::soak
