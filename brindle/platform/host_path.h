// HostPaths: how a host path becomes a system path. The rules stand in files.h; this is all of them, over a
// view of the folders, so that the real service and the fake one follow the same rules. Tested in
// host_path_test.cpp and in the files contract suite.
#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace brindle {

// What path resolution needs to see. Paths are system paths; a relative one starts at the current folder.
class FolderView {
  public:
    virtual bool HasEntry(const std::string& systemPath) = 0;
    // Calls back with the name of each entry; "." and ".." may be among them. Nothing for what is no folder.
    virtual void ForEachName(const std::string& folder,
                             const std::function<void(std::string_view)>& callback) = 0;
    // Absolute; empty when it is gone.
    virtual std::string CurrentFolder() = 0;

  protected:
    ~FolderView() = default;
};

class HostPaths {
  public:
    // False for what is not a letter. An empty folder maps the letter to the root again. Any thread.
    bool MapDrive(char letter, std::string_view systemFolder);

    // The system path a host path stands for; of a path that does not exist, its best spelling.
    // `forCreation`: the last component is taken as spelled when nothing is named exactly so. Empty for an
    // empty path and for one with a zero byte. Any thread.
    std::string Resolve(FolderView& view, std::string_view hostPath, bool forCreation) const {
        return Find(view, hostPath, forCreation).path;
    }

    struct Found {
        std::string path;     // as Resolve gives it
        bool exists = false;  // there is such an entry
    };
    Found Find(FolderView& view, std::string_view hostPath, bool forCreation) const;

  private:
    // Where a path starts, and what follows below that place.
    struct Start {
        std::string root;       // "/", "/mnt/c/" or "" (the current folder)
        bool confined = false;  // ".." stops at the root
        std::vector<std::string> components;
    };
    Start Split(FolderView& view, std::string_view path) const;
    static Found Walk(FolderView& view, const Start& start, bool forCreation);
    void StartBelowDriveOfCurrentFolder(FolderView& view, Start& start) const;
    std::string DriveFolder(char letter) const;

    mutable std::mutex m_mutex;
    std::array<std::string, 26> m_drives;  // guarded by m_mutex; empty: the root
};

}  // namespace brindle
