// Turns host paths into system paths: separators, drives, ".." and letter case. Entry point:
// HostPaths::Find. Tests: files_test.cpp.
#include "brindle/platform/host_path.h"

#include <algorithm>

#include "brindle/framework/letter_case.h"
#include "brindle/platform/files.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

constexpr std::size_t kLongestPath = 4'095;  // bytes; the system takes none that is longer

int DriveIndex(char letter) {
    if (!IsAsciiLetter(letter)) return -1;
    return (letter | 0x20) - 'a';
}

bool HasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' && IsAsciiLetter(path[0]);
}

// Appends the components of `path`. Confined, ".." takes one away, if there is one; else it stays as written.
void AddComponents(std::string_view path, bool confined, std::vector<std::string>& components) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view component = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (component.empty() || component == ".") continue;
        if (confined && component == "..") {
            if (!components.empty()) components.pop_back();
        } else {
            components.emplace_back(component);
        }
    }
}

std::string Joined(std::string_view root, const std::vector<std::string>& components) {
    std::string path(root);
    for (const std::string& component : components) {
        if (!path.empty() && path.back() != '/') path += '/';
        path += component;
    }
    return path.empty() ? "." : path;
}

std::string WithComponent(const std::string& folder, const std::string& component) {
    if (folder.empty() || folder.back() == '/') return folder + component;
    return folder + "/" + component;
}

// The entry of `folder` that `component` means: one whose name has no other bytes in the code page, else one
// that differs in letter case. "" when there is none.
std::string FindEntry(FolderView& view, const std::string& folder, const std::string& component) {
    std::string wanted;
    FromSystemText(component, wanted);
    std::string best;
    bool bestIsExact = false;
    int matches = 0;
    view.ForEachName(folder.empty() ? "." : folder, [&](std::string_view name) {
        std::string entry;
        if (!FromSystemText(name, entry) || !EqualNoCase(entry, wanted)) return;
        const bool exact = entry == wanted;
        if (bestIsExact && !exact) return;
        matches = exact && !bestIsExact ? 1 : matches + 1;
        if (best.empty() || exact != bestIsExact || name < best) best = name;
        bestIsExact = exact;
    });
    if (matches > 1) {
        const std::string text = "\"" + wanted + "\" could be " + std::to_string(matches) + " names in \"" +
                                 folder + "\"; taking \"" + best + "\"";
        Warn(text.c_str());
    }
    return best;
}

}  // namespace

bool HostPaths::MapDrive(char letter, std::string_view systemFolder) {
    const int index = DriveIndex(letter);
    if (index < 0) return false;
    const std::lock_guard lock(m_mutex);
    m_drives[static_cast<std::size_t>(index)] = systemFolder;
    return true;
}

std::string HostPaths::DriveFolder(char letter) const {
    const std::lock_guard lock(m_mutex);
    std::string folder = m_drives[static_cast<std::size_t>(DriveIndex(letter))];
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

// A relative path that climbs must not leave the mapped drive the current folder is on.
void HostPaths::StartBelowDriveOfCurrentFolder(FolderView& view, Start& start) const {
    const std::string current = view.CurrentFolder() + "/";
    std::string root;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const std::string folder = DriveFolder(letter);
        if (folder != "/" && folder.size() > root.size() && current.starts_with(folder)) root = folder;
    }
    if (root.empty()) return;
    start.root = root;
    start.confined = true;
    AddComponents(std::string_view(current).substr(root.size()), true, start.components);
}

HostPaths::Start HostPaths::Split(FolderView& view, std::string_view path) const {
    Start start;
    if (HasDrive(path)) {
        start.root = DriveFolder(path[0]);
        start.confined = true;
        path.remove_prefix(2);
    } else if (path.starts_with('/')) {
        start.root = "/";
    } else if (path.find("..") != std::string_view::npos) {
        StartBelowDriveOfCurrentFolder(view, start);
    }
    AddComponents(path, start.confined, start.components);
    return start;
}

HostPaths::Found HostPaths::Find(FolderView& view, std::string_view hostPath, bool forCreation) const {
    if (hostPath.empty() || hostPath.find('\0') != std::string_view::npos) return {};
    const std::string typed = ToSystemText(hostPath);
    const bool absolute = typed.starts_with('/');
    if (absolute && view.HasEntry(typed)) return {typed, true};
    std::string system = typed;
    for (char& c : system)
        if (c == '\\') c = '/';

    const Start start = Split(view, system);
    std::string spelled = Joined(start.root, start.components);
    if ((!absolute || spelled != typed) && view.HasEntry(spelled)) return {std::move(spelled), true};
    // Fields can make a path of megabytes; looking for each of its folders would take hours.
    if (start.components.empty() || spelled.size() > kLongestPath) return {std::move(spelled), false};
    return Walk(view, start, forCreation);
}

// Looks for the components of a path that does not exist as spelled, from the last folder that does.
HostPaths::Found HostPaths::Walk(FolderView& view, const Start& start, bool forCreation) {
    const std::vector<std::string>& components = start.components;
    const auto at = [&](std::size_t i) { return components.begin() + static_cast<std::ptrdiff_t>(i); };
    std::size_t known = components.size() - 1;
    std::string folder = start.root;
    for (; known > 0; --known) {
        std::string deepest = Joined(start.root, {components.begin(), at(known)});
        if (!view.HasEntry(deepest)) continue;
        folder = std::move(deepest);
        break;
    }
    for (std::size_t i = known; i < components.size(); ++i) {
        std::string next = WithComponent(folder, components[i]);
        if (components[i] != ".." && (i == known || !view.HasEntry(next))) {
            if (forCreation && i + 1 == components.size()) return {std::move(next), false};
            const std::string found = FindEntry(view, folder, components[i]);
            if (found.empty()) return {Joined(folder, {at(i), components.end()}), false};
            next = WithComponent(folder, found);
        }
        folder = std::move(next);
    }
    return {std::move(folder), true};
}

}  // namespace brindle
