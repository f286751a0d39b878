// FolderListings: the names in folders, remembered for as long as a folder does not change. A folder that changed
// within the last seconds, whose time stamps would not show one more change, is read each time; so are large ones, and
// those of file systems not known to stamp a folder at every change in it (network and special ones). A change is seen
// at the next call. Remembers 16 folders of at most 256 kB of names.
//
// Cannot: notice that the process itself has given up the right to read a folder. Thread: any.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "brindle/platform/files.h"
#include "brindle/platform/linux/file_stamp_linux.h"

namespace brindle {

class FolderListings {
  public:
    static constexpr std::size_t kMostFolders = 16;
    static constexpr std::size_t kMostBytes = 256 * 1024;

    // `now` is for tests.
    using Now = std::int64_t (*)() noexcept;
    explicit FolderListings(Now now = StampSeconds) : m_now(now) {}

    // Calls back with the name of each entry ("." and ".." among them); with none when the folder cannot be read. The
    // callback may do anything. True: the names were remembered, the folder was not read.
    bool ForEachName(const std::string& systemFolder, const std::function<void(std::string_view)>& callback);

    // Whether the folder's file system is one of those whose folders are remembered.
    static bool Trusts(const std::string& systemFolder);

  private:
    using Names = std::shared_ptr<const std::string>;  // each ended by a zero byte
    struct Remembered {
        FileStamp stamp;  // not settled: nothing is remembered here
        Names names;
    };
    Names Find(const FileStamp& now);  // null: not remembered
    void Remember(const FileStamp& stamp, Names names);

    const Now m_now;
    std::mutex m_mutex;
    std::array<Remembered, kMostFolders> m_remembered;  // guarded by m_mutex; the one used last comes first
};

}  // namespace brindle
