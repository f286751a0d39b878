// MapFile: the map of a running site.
#pragma once

#include <memory>

#include "host/map_document.h"
#include "host/reloaded_file.h"

namespace brindle::host {

class MapView;

class MapFile final : public ReloadedFile {
  public:
    // The view is borrowed.
    MapFile(std::string path, const HostFileMarks& known, MapView& view);
    void Read(Problems& problems) override;
    void TakeOver(RunState& state) override;

  private:
    MapView& m_view;
    MapDocument m_fresh;
};

}  // namespace brindle::host
