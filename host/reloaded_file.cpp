// What all kinds of reloaded files share. Tests: site_reload_test.cpp.
#include "host/reloaded_file.h"

#include "host/host_files.h"

namespace brindle::host {

void CheckedFile::TakeOver(RunState& state) {
    state.sink.Write(ReloadRecord(state, Path()));
}

RunRecord ReloadRecord(const RunState& state, const std::string& path) {
    RunRecord record = state.Begin("reload");
    record["file"] = TextToUtf8(path);
    return record;
}

}  // namespace brindle::host
