// SiteEdits: a copy of the studio in a temporary folder, and the edits that are saved into it while it runs: each
// changes what the running station holds, saves it over the station's own file, and waits until the file monitor
// has noticed.
#pragma once

#include <filesystem>
#include <string>

#include "host/site.h"
#include "tests/soak/soak_pace.h"

namespace brindle::soak {

class SiteEdits {
  public:
    // Copies the site; its programs start in the copy. Throws std::runtime_error when that cannot be done.
    explicit SiteEdits(const std::filesystem::path& studio);
    SiteEdits(const SiteEdits&) = delete;
    SiteEdits& operator=(const SiteEdits&) = delete;
    ~SiteEdits();

    std::string Folder() const { return m_folder.string(); }
    // Saves the next edit in turn: rules, variables, behaviours, skin. Throws std::runtime_error when it cannot be
    // saved or nobody notices. Not within a call of the engine.
    void Save(host::Site& site, SoakPace& pace);
    int Saved() const { return m_saved; }

  private:
    void SaveBehaviours(host::Site& site, const char* object, const char* one, const char* other) const;
    void SaveVariables(host::Site& site) const;
    void SaveSkin(host::Site& site) const;

    std::filesystem::path m_folder;
    int m_saved = 0;
};

}  // namespace brindle::soak
