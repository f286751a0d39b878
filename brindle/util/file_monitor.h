// FileMonitor: tells the host when a watched file was written. Files are watched by directory; one worker thread,
// started with the first file, serves all of them and waits without using the processor.
//
// What counts is modification alone: writing into the file and cutting it. Creating, deleting and touching it do
// not count, nor does what happens in subdirectories. A file that another one replaces by a rename, as many editors
// and this library's own saves do, counts only if the monitor was made so. Writes through a memory map raise no
// event, nor do writes of other machines to a network file system.
//
// All changes that the system tells of one directory at once make one completion. A completion less than 100 ms
// after the last one of its directory is passed over, so that an editor that writes in several steps causes one
// call; the first is never passed over, and neither is a replacement, which is one step. Changes of files nobody
// watches are completions, too. A host that must not miss a change therefore takes what is passed over as well, and
// reads the file a moment after the last call.
//
// Names compare without regard to case; paths are host paths.
#pragma once

#include <memory>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class BRINDLE_API FileMonitor {
  public:
    // Called on the monitor's thread, with the monitor's lock held: return soon, throw nothing, and do not wait
    // for another thread that calls this monitor. It may call the monitor itself, and destroy it.
    class BRINDLE_API Handler {
      public:
        // The file changed: its directory's path as it was given, and its name as the system spells it.
        virtual void OnFileChanged(const CStringA& path) = 0;
        // Changes of the file may have gone unnoticed: too many came at once, or its directory was deleted,
        // unmounted or replaced (it is watched again once it is there again, which calls this, too). `path` is the
        // one given to StartMonitoringFile. Does nothing unless overridden.
        virtual void OnChangesLost(const CStringA& path);
        // The file changed in a completion that was passed over. Does nothing unless overridden.
        virtual void OnChangePassedOver(const CStringA& path);

      protected:
        Handler() = default;
        ~Handler();  // never destroyed through this interface
    };

    // What else counts as a modification.
    enum class AlsoCounts { kNothing, kReplacement /* another file is renamed to the name */ };

    // Watches nothing yet and has no thread.
    explicit FileMonitor(AlsoCounts also = AlsoCounts::kNothing);
    FileMonitor(const FileMonitor&) = delete;
    FileMonitor& operator=(const FileMonitor&) = delete;
    // No handler is called any more when this returns; it waits for one that is running, unless it is called by
    // it: then the thread ends by itself.
    ~FileMonitor();

    // Calls the handler (borrowed until the file is stopped) when the file is modified. The file need not exist, its
    // directory must. Of several handlers for one file only the first is called. False, and nothing changed, when
    // the path has no directory or no name, the handler is null, or the directory cannot be watched. Takes the same
    // time however many files there are. Thread: any.
    bool StartMonitoringFile(const CStringA& path, Handler* handler);
    // Takes back the file's first handler; its directory is no longer watched when that was the last file in it.
    // When this returns the handler is not being called, except by the caller itself. False when the file is not
    // monitored. Thread: any.
    bool StopMonitoringFile(const CStringA& path);
    // Whether files of the directory are monitored; the separator at its end may be missing. Thread: any.
    bool IsMonitoringDirectory(const CStringA& directory) const;

  private:
    class DirMon;
    class Monitor;
    std::shared_ptr<Monitor> m_monitor;  // shared with the worker
};
