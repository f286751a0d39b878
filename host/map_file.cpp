// Exchanging the map of a running site. Tests: map_file_test.cpp.
#include "host/map_file.h"

#include "host/map_view.h"

namespace brindle::host {

MapFile::MapFile(std::string path, const HostFileMarks& known, MapView& view)
    : ReloadedFile(std::move(path), known), m_view(view) {}

void MapFile::Read(Problems& problems) {
    ReadMapDocument(Path(), m_fresh, problems);
}

void MapFile::TakeOver(RunState& state) {
    m_view.Replace(m_fresh);
    RunRecord record = ReloadRecord(state, Path());
    record["elements"] = m_view.Document().elements.size();
    state.sink.Write(record);
}

}  // namespace brindle::host
