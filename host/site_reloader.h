// SiteReloader: lets the files of a running site take over when they are edited: behaviours, variables, the skin, and
// those that only need a check because they are read at use (macros). site.ini and devices.ini are read at the start
// only.
//
// A quarter of a second after the last change every file whose marks differ is checked and read into fresh objects,
// and read again later if it changed meanwhile. A file takes over only if the check finds nothing but
// warnings; otherwise its first problem is reported and what was read before stays.
//
// Thread: the run's; the monitor's own thread only notes the time and wakes the run.
#pragma once

#include <brindle/util/file_monitor.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/reloaded_file.h"

namespace brindle::host {

class SiteReloader final : private FileMonitor::Handler {
  public:
    static constexpr std::uint64_t kQuiet = 250;  // milliseconds after the last change

    // Watches the files of the run's site, which was just loaded. The state must outlive the reloader.
    explicit SiteReloader(RunState& state);
    SiteReloader(const SiteReloader&) = delete;
    SiteReloader& operator=(const SiteReloader&) = delete;
    ~SiteReloader();

    // Watches one more file.
    void Add(std::unique_ptr<ReloadedFile> file);
    // When to look, in milliseconds of the run; nothing: no file changed.
    std::optional<std::uint64_t> NextLook() const;
    // Looks at every file. Not within a call of the engine.
    void Look();

  private:
    void OnFileChanged(const CStringA&) override { Mark(); }
    void OnChangesLost(const CStringA&) override { Mark(); }
    void OnChangePassedOver(const CStringA&) override { Mark(); }
    void Mark();
    void AddBehaviours();
    void AddVariables();
    void AddChecked(const std::string& path);
    HostFileMarks KnownMarks(const std::string& path) const;
    void Reload(ReloadedFile& file, const HostFileMarks& marks);
    void Report(const Problems& problems, const char* consequence) const;

    RunState& m_state;
    std::vector<std::unique_ptr<ReloadedFile>> m_files;
    mutable std::mutex m_lock;
    std::optional<std::uint64_t> m_changed;  // when, in milliseconds of the run; guarded by m_lock
    FileMonitor m_monitor{FileMonitor::AlsoCounts::kReplacement};  // ends before what its thread uses
};

}  // namespace brindle::host
