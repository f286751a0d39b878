// FakeFiles: a file tree in memory, under the same path rules as the real one, with switches for faults.
#pragma once

#include <map>
#include <string>

#include "brindle/platform/files.h"
#include "brindle/platform/host_path.h"

namespace brindle {

class FakeFiles final : public Files, private FolderView {
  public:
    enum class Kind { kFile, kFolder, kPipe };

    // Holds the root folder, which is the current one.
    FakeFiles();

    bool Exists(std::string_view hostPath) override;
    Result ReadWhole(std::string_view hostPath, std::uint64_t limit, std::string& bytes) override;
    Result WriteWhole(std::string_view hostPath, std::string_view bytes) override;
    Result Append(std::string_view hostPath, std::string_view bytes, std::uint64_t emptyBeyond) override;
    Result Update(std::string_view hostPath, std::uint64_t limit, const Edit& edit) override;
    bool Stamp(std::string_view hostPath, FileStamp& stamp) override;
    bool IsFolder(std::string_view hostPath) override;
    std::string CurrentDirectory() override;
    Result SetCurrentDirectory(std::string_view hostPath) override;
    std::unique_ptr<KeptDirectory> KeepDirectory() override;
    std::string SystemPath(std::string_view hostPath, bool forCreation) override;
    bool MapDrive(char letter, std::string_view systemFolder) override;

    // Adds something at an absolute system path, and the folders above it. `bytes` belongs to files only.
    void Add(const std::string& systemPath, Kind kind, std::string bytes = {});
    void Remove(const std::string& systemPath);
    // Every write fails, as on a full disk, once `bytes` more bytes were written. Negative: no limit.
    void SetDiskSpace(std::int64_t bytes) noexcept { m_space = bytes; }
    // Every read of a file fails.
    void FailReads(bool fail) noexcept { m_failReads = fail; }

  private:
    struct Node {
        Kind kind = Kind::kFolder;
        std::string bytes;
        std::uint64_t version = 0;  // of the bytes; no two alike
    };

    bool HasEntry(const std::string& systemPath) override;
    void ForEachName(const std::string& folder,
                     const std::function<void(std::string_view)>& callback) override;
    std::string CurrentFolder() override { return m_current; }
    std::string Absolute(const std::string& systemPath) const;
    const Node* Find(const std::string& systemPath) const;
    Result Put(std::string_view hostPath, const std::string& systemPath, std::string bytes,
               std::size_t written);
    // The file as reading finds it, else as it would be made.
    std::string ExistingOrNew(std::string_view hostPath);

    HostPaths m_paths;
    std::map<std::string, Node> m_nodes;  // by absolute path, without a slash at the end
    std::string m_current = "/";
    std::int64_t m_space = -1;
    bool m_failReads = false;
};

}  // namespace brindle
