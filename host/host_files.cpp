// Site files and code page conversion. Tests: host_values_test.cpp.
#include "host/host_files.h"

#include <brindle/library/host_path_access.h>
#include <brindle/library/host_text.h>

#include <filesystem>
#include <system_error>

namespace brindle::host {

std::string ReadSiteFile(std::string_view path, std::string& bytes) {
    if (IsFolder(path)) return "is a folder";
    return ReadHostFile(path, kLargestFile, bytes).text;
}

std::string SystemFilePath(std::string_view path) {
    return SystemPathOf(path);
}

std::string InFolder(std::string_view folder, std::string_view path) {
    const bool drive = path.size() > 1 && path[1] == ':';
    const bool absolute = !path.empty() && (path[0] == '/' || path[0] == '\\' || drive);
    if (absolute || folder.empty()) return std::string(path);
    std::string joined(folder);
    if (joined.back() != '/' && joined.back() != '\\') joined += '/';
    joined += path;
    return joined;
}

bool IsFolder(std::string_view path) {
    std::error_code ignored;
    return std::filesystem::is_directory(SystemFilePath(path), ignored);
}

std::string TextToUtf8(std::string_view bytes) {
    return TextToSystem(bytes);
}

std::string TextFromUtf8(std::string_view utf8) {
    std::string bytes;
    TextFromSystem(utf8, bytes);
    return bytes;
}

}  // namespace brindle::host
