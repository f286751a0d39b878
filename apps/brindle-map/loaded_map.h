// LoadedMap: a site with its map and what it is played from, as its files have it. Nothing of it runs yet, and loading
// one disturbs no other that does.
#pragma once

#include <brindle/library/host_path_access.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/brindle/play_input.h"
#include "host/map_view.h"

namespace brindle::map {

// Tells a problem on the standard error.
void Tell(const host::Problem& problem);

class LoadedMap {
  public:
    // Throws tool::Failure with the first problem; the others were told before it.
    explicit LoadedMap(const std::string& folder);
    LoadedMap(const LoadedMap&) = delete;
    LoadedMap& operator=(const LoadedMap&) = delete;
    ~LoadedMap();

    // Where its events come from; the file of `events`, else its own recording, else none. `live` as EventInput's.
    // Throws tool::Failure when they cannot be read.
    void OpenEvents(const std::optional<std::string>& events, bool live);
    host::EventSource& Events() noexcept { return *m_source; }

    // The map as it is shown: to be made once the desktop's services are there, for pictures are loaded. From then on
    // this site answers "#" fields outside a run; again later, should another one have gone since.
    void MakeView();
    void AnswerFields();

    host::Site& Site() noexcept { return m_site; }
    host::MapView& View() noexcept { return *m_view; }
    const HostFileMarks& Marks() const noexcept { return m_marks; }
    std::string Title() const;

    std::function<void(const host::EventLine&)> press;

  private:
    host::Site m_site;
    HostFileMarks m_marks;
    host::MapDocument m_document;
    std::optional<tool::EventInput> m_input;
    std::unique_ptr<host::EventSource> m_none;
    host::EventSource* m_source = nullptr;
    std::optional<host::MapView> m_view;
};

}  // namespace brindle::map
