#include "brindle/platform/fake/files_fake.h"

#include <algorithm>
#include <atomic>

#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

Result Fail(ErrorCode code, std::string_view hostPath, const char* why) {
    return Result::Error(code, std::string(hostPath) + ": " + why);
}

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

// No two contents in the process have the same one, whatever object they belong to.
std::uint64_t NextVersion() {
    static constinit std::atomic<std::uint64_t> last{0};
    return ++last;
}

}  // namespace

FakeFiles::FakeFiles() {
    m_nodes["/"];
}

// The one spelling a path is kept under: absolute, without ".", "..", doubled slashes or one at the end.
std::string FakeFiles::Absolute(const std::string& systemPath) const {
    const std::string whole = systemPath.starts_with('/') ? systemPath : m_current + "/" + systemPath;
    std::string path;
    for (std::size_t begin = 0; begin < whole.size();) {
        const std::size_t end = std::min(whole.find('/', begin), whole.size());
        const std::string component = whole.substr(begin, end - begin);
        begin = end + 1;
        if (component == "..") {
            path.resize(path.empty() ? 0 : path.rfind('/'));
        } else if (!component.empty() && component != ".") {
            path += "/" + component;
        }
    }
    return path.empty() ? "/" : path;
}

const FakeFiles::Node* FakeFiles::Find(const std::string& systemPath) const {
    if (systemPath.empty()) return nullptr;
    const auto found = m_nodes.find(Absolute(systemPath));
    return found == m_nodes.end() ? nullptr : &found->second;
}

bool FakeFiles::HasEntry(const std::string& systemPath) {
    return Find(systemPath) != nullptr;
}

void FakeFiles::ForEachName(const std::string& folder,
                            const std::function<void(std::string_view)>& callback) {
    const std::string parent = Absolute(folder);
    for (const auto& [path, node] : m_nodes)
        if (path != "/" && FolderOf(path) == parent)
            callback(std::string_view(path).substr(path.rfind('/') + 1));
}

bool FakeFiles::Exists(std::string_view hostPath) {
    return Find(SystemPath(hostPath, false)) != nullptr;
}

Result FakeFiles::ReadWhole(std::string_view hostPath, std::uint64_t limit, std::string& bytes) {
    const std::string path = SystemPath(hostPath, false);
    if (path.empty()) return Fail(ErrorCode::kInvalidArgument, hostPath, "no path");
    const Node* node = Find(path);
    if (!node) return Fail(ErrorCode::kNotFound, hostPath, "no such file or folder");
    if (node->kind != Kind::kFile) return Fail(ErrorCode::kAccess, hostPath, "not a regular file");
    if (m_failReads) return Fail(ErrorCode::kFailed, hostPath, "input/output error");
    if (node->bytes.size() > limit) return Fail(ErrorCode::kLimit, hostPath, "file too large");
    bytes = node->bytes;
    return {};
}

Result FakeFiles::Put(std::string_view hostPath, const std::string& systemPath, std::string bytes,
                      std::size_t written) {
    if (systemPath.empty()) return Fail(ErrorCode::kInvalidArgument, hostPath, "no path");
    const std::string absolute = Absolute(systemPath);
    const Node* old = Find(absolute);
    if (old && old->kind != Kind::kFile) return Fail(ErrorCode::kAccess, hostPath, "not a regular file");
    const Node* folder = Find(FolderOf(absolute));
    if (!folder || folder->kind != Kind::kFolder)
        return Fail(ErrorCode::kNotFound, hostPath, "no such file or folder");
    if (m_space >= 0 && written > static_cast<std::uint64_t>(m_space))
        return Fail(ErrorCode::kFailed, hostPath, "disk full");
    if (m_space >= 0) m_space -= static_cast<std::int64_t>(written);
    m_nodes[absolute] = {Kind::kFile, std::move(bytes), NextVersion()};
    return {};
}

Result FakeFiles::WriteWhole(std::string_view hostPath, std::string_view bytes) {
    return Put(hostPath, SystemPath(hostPath, true), std::string(bytes), bytes.size());
}

std::string FakeFiles::ExistingOrNew(std::string_view hostPath) {
    const std::string found = SystemPath(hostPath, false);
    return Find(found) ? found : SystemPath(hostPath, true);
}

Result FakeFiles::Append(std::string_view hostPath, std::string_view bytes, std::uint64_t emptyBeyond) {
    const std::string path = ExistingOrNew(hostPath);
    const Node* old = Find(path);
    std::string all = old && old->bytes.size() <= emptyBeyond ? old->bytes : std::string();
    all += bytes;
    return Put(hostPath, path, std::move(all), bytes.size());
}

Result FakeFiles::Update(std::string_view hostPath, std::uint64_t limit, const Edit& edit) {
    const std::string path = ExistingOrNew(hostPath);
    std::string bytes;
    const bool exists = Find(path) != nullptr;
    if (exists)
        if (Result failed = ReadWhole(hostPath, limit, bytes); !failed.ok()) return failed;
    if (!edit(bytes, exists)) return {};
    const std::size_t size = bytes.size();
    return Put(hostPath, path, std::move(bytes), size);
}

bool FakeFiles::Stamp(std::string_view hostPath, FileStamp& stamp) {
    const Node* node = Find(SystemPath(hostPath, false));
    if (!node || node->kind != Kind::kFile) return false;
    stamp = {{node->version}, true};
    return true;
}

bool FakeFiles::IsFolder(std::string_view hostPath) {
    const Node* node = Find(SystemPath(hostPath, false));
    return node && node->kind == Kind::kFolder;
}

std::string FakeFiles::CurrentDirectory() {
    std::string hostPath;
    FromSystemText(m_current, hostPath);
    return hostPath;
}

Result FakeFiles::SetCurrentDirectory(std::string_view hostPath) {
    const std::string path = SystemPath(hostPath, false);
    if (path.empty()) return Fail(ErrorCode::kInvalidArgument, hostPath, "no path");
    const Node* node = Find(path);
    if (!node || node->kind != Kind::kFolder)
        return Fail(ErrorCode::kNotFound, hostPath, "no such file or folder");
    m_current = Absolute(path);
    return {};
}

std::unique_ptr<KeptDirectory> FakeFiles::KeepDirectory() {
    class Kept final : public KeptDirectory {
      public:
        explicit Kept(std::string& current) : m_current(current), m_before(current) {}
        ~Kept() override { m_current = m_before; }

      private:
        std::string& m_current;
        std::string m_before;
    };
    return std::make_unique<Kept>(m_current);
}

std::string FakeFiles::SystemPath(std::string_view hostPath, bool forCreation) {
    return m_paths.Resolve(*this, hostPath, forCreation);
}

bool FakeFiles::MapDrive(char letter, std::string_view systemFolder) {
    return m_paths.MapDrive(letter, systemFolder);
}

void FakeFiles::Add(const std::string& systemPath, Kind kind, std::string bytes) {
    const std::string path = Absolute(systemPath);
    for (std::string above = FolderOf(path); above != "/"; above = FolderOf(above)) m_nodes[above];
    m_nodes[path] = {kind, std::move(bytes), NextVersion()};
}

void FakeFiles::Remove(const std::string& systemPath) {
    const std::string path = Absolute(systemPath);
    std::erase_if(m_nodes, [&](const auto& entry) {
        return entry.first == path || entry.first.starts_with(path + "/");
    });
}

}  // namespace brindle
