// File names and relative paths. Tests: path_text_test.cpp.
#include "brindle/platform/path_text.h"

#include <vector>

#include "brindle/framework/letter_case.h"

namespace brindle {
namespace {

constexpr bool IsSeparator(char c) noexcept {
    return c == '\\' || c == '/';
}

// A path's components; the first is the root, if it has one: a drive, "\\server\share", "/".
struct Components {
    struct Part {
        std::string_view name;
        std::size_t end;  // in the path
    };
    bool hasRoot = false;
    std::vector<Part> parts;
};

std::size_t NameEnd(std::string_view path, std::size_t at) {
    while (at < path.size() && !IsSeparator(path[at])) ++at;
    return at;
}

std::size_t RootEnd(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') return 2;
    if (path.size() > 2 && path[0] == '\\' && path[1] == '\\' && !IsSeparator(path[2])) {
        const std::size_t server = NameEnd(path, 2);
        return server < path.size() ? NameEnd(path, server + 1) : server;
    }
    return 0;
}

Components Split(std::string_view path) {
    Components components;
    std::size_t at = RootEnd(path);
    components.hasRoot = at > 0 || (!path.empty() && IsSeparator(path[0]));
    if (components.hasRoot) components.parts.push_back({path.substr(0, at), at});
    while (at < path.size()) {
        const std::size_t begin = IsSeparator(path[at]) ? at + 1 : at;
        const std::size_t end = NameEnd(path, begin);
        if (end > begin) components.parts.push_back({path.substr(begin, end - begin), end});
        at = end > at ? end : at + 1;
    }
    return components;
}

}  // namespace

std::string FullPathOf(std::string_view folder, std::string_view path) {
    std::string joined;
    if (!Split(path).hasRoot) joined = std::string(folder) + "\\";
    joined += path;
    const Components components = Split(joined);
    std::vector<std::string_view> names;
    std::string_view root;
    for (std::size_t i = 0; i < components.parts.size(); ++i) {
        const std::string_view name = components.parts[i].name;
        if (i == 0 && components.hasRoot)
            root = name;
        else if (name == "..") {
            if (!names.empty()) names.pop_back();
        } else if (name != ".")
            names.push_back(name);
    }
    std::string full(root);
    for (char& c : full)
        if (IsSeparator(c)) c = '\\';
    for (const std::string_view name : names) full += "\\" + std::string(name);
    return full;
}

std::string_view FileNameOf(std::string_view path) noexcept {
    std::size_t begin = 0;
    for (std::size_t i = 0; i + 1 < path.size(); ++i)
        if ((IsSeparator(path[i]) || path[i] == ':') && !IsSeparator(path[i + 1])) begin = i + 1;
    return path.substr(begin);
}

bool RelativePathTo(std::string_view fromFolder, std::string_view toFile, std::string& relative) {
    const Components from = Split(fromFolder);
    const Components to = Split(toFile);
    if (from.hasRoot != to.hasRoot) return false;
    // The file itself is not one of the folders that may be common.
    const bool namesFolder = !toFile.empty() && IsSeparator(toFile.back());
    const std::size_t folders = to.parts.size() - (namesFolder || to.parts.empty() ? 0 : 1);
    std::size_t common = 0;
    while (common < from.parts.size() && common < folders &&
           EqualNoCase(from.parts[common].name, to.parts[common].name))
        ++common;
    if (common == 0) return false;

    const bool slashes = fromFolder.find('/') != fromFolder.npos && fromFolder.find('\\') == fromFolder.npos;
    std::string path = common == from.parts.size() ? "." : "..";
    for (std::size_t i = common + 1; i < from.parts.size(); ++i) path += slashes ? "/.." : "\\..";
    std::string_view rest = toFile.substr(to.parts[common - 1].end);
    if (folders == 1 && to.hasRoot && rest.size() == 1 && IsSeparator(rest[0])) rest = {};  // a drive alone
    path += rest;
    if (path.size() > kMostRelativePath) return false;
    relative = std::move(path);
    return true;
}

}  // namespace brindle
