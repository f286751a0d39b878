// What a run is played from: a site that was loaded, and where its events come from.
#pragma once

#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "host/event_reader.h"
#include "host/site.h"

namespace brindle::tool {

// Loads the site of the folder; tells its warnings. Throws Failure with its first problem, the others told before it.
void LoadOrFail(const std::string& folder, host::Site& site);

class EventInput {
  public:
    // The file of `events`, "-" for the standard input; without it the site's own recording. `live`: the run goes on
    // while no line comes, and needs no events when it polls. Throws Failure when there is nothing to play.
    EventInput(const std::optional<std::string>& events, const host::Site& site, bool live);
    host::EventSource& Source() { return *m_source; }

  private:
    std::string m_path;
    std::ifstream m_file;
    std::unique_ptr<host::EventSource> m_source;
};

}  // namespace brindle::tool
