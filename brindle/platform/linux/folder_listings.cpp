// Names of folders, by the folders' stamps. Tests: folder_listings_test.cpp.
#include "brindle/platform/linux/folder_listings.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brindle {
namespace {

// Whether every change in a folder shows in its stamp. Others may do so, too, but nobody promises it.
bool StampsEveryChange(const struct statfs& system) noexcept {
    constexpr std::uint32_t kXfs = 0x58465342;
    static constexpr std::uint32_t kKnown[] = {EXT4_SUPER_MAGIC, kXfs, BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
                                               OVERLAYFS_SUPER_MAGIC};
    return std::count(std::begin(kKnown), std::end(kKnown), static_cast<std::uint32_t>(system.f_type)) > 0;
}

void ForEachOf(std::string_view names, const std::function<void(std::string_view)>& callback) {
    while (!names.empty()) {
        const std::size_t end = names.find('\0');
        callback(names.substr(0, end));
        names.remove_prefix(end + 1);
    }
}

}  // namespace

bool FolderListings::Trusts(const std::string& systemFolder) {
    struct statfs system {};
    return statfs(systemFolder.c_str(), &system) == 0 && StampsEveryChange(system);
}

bool FolderListings::ForEachName(const std::string& systemFolder,
                                 const std::function<void(std::string_view)>& callback) {
    struct stat status {};
    if (stat(systemFolder.c_str(), &status) != 0) return false;
    if (const Names names = Find(StampOf(status, m_now()))) {
        ForEachOf(*names, callback);
        return true;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(systemFolder.c_str()), &closedir);
    // The stamp of what was opened, and from before it is read: a change meanwhile makes another one.
    if (!open || fstat(dirfd(open.get()), &status) != 0) return false;
    const FileStamp stamp = StampOf(status, m_now());
    struct statfs system {};
    bool keep = stamp.settled && fstatfs(dirfd(open.get()), &system) == 0 && StampsEveryChange(system);
    std::string names;
    errno = 0;
    while (const dirent* entry = readdir(open.get())) {
        const std::string_view name = entry->d_name;
        callback(name);
        keep = keep && names.size() + name.size() < kMostBytes;
        if (keep) names.append(name).push_back('\0');
        errno = 0;
    }
    if (keep && errno == 0) Remember(stamp, std::make_shared<const std::string>(std::move(names)));
    return false;
}

FolderListings::Names FolderListings::Find(const FileStamp& now) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_remembered.begin(), m_remembered.end(),
                                    [&](const Remembered& each) { return each.stamp.SameContent(now); });
    if (found == m_remembered.end()) return nullptr;
    std::rotate(m_remembered.begin(), found, found + 1);
    return m_remembered.front().names;
}

void FolderListings::Remember(const FileStamp& stamp, Names names) {
    const auto sameFolder = [&](const Remembered& each) {
        return std::equal(each.stamp.marks.begin(), each.stamp.marks.begin() + 2, stamp.marks.begin());
    };
    const std::lock_guard lock(m_mutex);
    // In place of what was known of this folder, else of the one that was not used for longest.
    auto place = std::find_if(m_remembered.begin(), m_remembered.end(), sameFolder);
    if (place == m_remembered.end()) --place;
    *place = {stamp, std::move(names)};
    std::rotate(m_remembered.begin(), place, place + 1);
}

}  // namespace brindle
