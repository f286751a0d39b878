// DirectoryWatch: tells which files of which directories were modified. A private service.
//
// A watch serves any number of directories; one thread at a time waits on it. What one read of the system brings of one
// directory makes one completion. Only the directory's own files count, never its subdirectories nor what lies in
// them, and of a file only its modification: creating, renaming, deleting and touching it do not. Paths are host
// paths, names are bytes in the ANSI code page.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/framework/result.h"

namespace brindle {

struct DirectoryChange {
    enum class What {
        kModified,  // written or cut
        kReplaced,  // the name now stands for another file: one was renamed to it
    };
    What what = What::kModified;
    std::string name;  // as the system spells it; "?" for what has no byte in the code page
};

struct DirectoryCompletion {
    // Why changes may have been missed.
    enum class Lost {
        kNothing,
        kOverflow,   // too many came at once
        kDirectory,  // the directory was deleted, unmounted or replaced, or is there again
    };
    std::uint64_t directory = 0;  // the number given to Add
    Lost lost = Lost::kNothing;
    // Each name once, in order of its first change; kReplaced if any change of it was. Empty when something was lost.
    std::vector<DirectoryChange> changes;
};

class DirectoryWatch {
  public:
    enum class Wants { kModified, kModifiedAndReplaced };

    virtual ~DirectoryWatch() = default;
    // Watches an existing directory under a number of the caller's, which must not be in use. Two numbers may
    // stand for one directory. A directory that goes away later stays watched: its completion says so, and another
    // one when a directory of that path is there again. Thread: any.
    virtual Result Add(std::uint64_t directory, std::string_view hostPath, Wants wants) = 0;
    // Does nothing for a number that is not in use. A completion that is being waited for may still come. Thread:
    // any.
    virtual void Remove(std::uint64_t directory) = 0;
    // Waits without using processor time until there is a completion; false once the watch is closed. The storage
    // of `completion` is used again.
    virtual bool Wait(DirectoryCompletion& completion) = 0;
    // Ends the wait, and every later one at once. Thread: any.
    virtual void Close() noexcept = 0;
};

class DirectoryWatches {
  public:
    // A new watch, or null and why not.
    virtual std::unique_ptr<DirectoryWatch> Open(Result& result) = 0;

  protected:
    ~DirectoryWatches() = default;  // never destroyed through this interface
};

// What the linked backend provides.
DirectoryWatches& BackendDirectoryWatches() noexcept;

DirectoryWatches& CurrentDirectoryWatches() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
DirectoryWatches* SetDirectoryWatches(DirectoryWatches* service) noexcept;

}  // namespace brindle
