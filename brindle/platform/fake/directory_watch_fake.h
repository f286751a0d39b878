// FakeDirectoryWatches: directories in memory whose changes a test tells. Every change is one completion of its own
// unless several are told at once. Thread: any.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "brindle/platform/directory_watch.h"

namespace brindle {

class FakeDirectoryWatches final : public DirectoryWatches {
  public:
    FakeDirectoryWatches();
    ~FakeDirectoryWatches();
    std::unique_ptr<DirectoryWatch> Open(Result& result) override;

    // A directory comes; those that were watched under its path before are told so.
    void AddDirectory(const std::string& path);
    // A directory goes.
    void RemoveDirectory(const std::string& path);
    // Files of a directory change: one completion for every watch of it.
    void Change(const std::string& path, const std::vector<DirectoryChange>& changes);
    void Modify(const std::string& path, const std::string& name);
    // Changes of any directory may be missing.
    void Overflow();
    void FailOpening(bool fail);
    // Returns when every watch has been asked to wait again after its last completion; a closed one counts until it
    // is destroyed.
    void WaitUntilTaken();

  private:
    class Watch;
    struct World;
    std::shared_ptr<World> m_world;  // watches may outlive this object
};

}  // namespace brindle
