// The public side of the files service. Tests: host_text_test.cpp.
#include "brindle/library/host_path_access.h"

#include "brindle/platform/files.h"

namespace brindle {

Result ReadHostFile(std::string_view hostPath, std::uint64_t limit, std::string& bytes) {
    return CurrentFiles().ReadWhole(hostPath, limit, bytes);
}

Result WriteHostFile(std::string_view hostPath, std::string_view bytes) {
    return CurrentFiles().WriteWhole(hostPath, bytes);
}

HostFileMarks MarksOfHostFile(std::string_view hostPath) {
    FileStamp stamp;
    if (!CurrentFiles().Stamp(hostPath, stamp)) return {};
    return {true, stamp.marks};
}

std::string SystemPathOf(std::string_view hostPath) {
    return CurrentFiles().SystemPath(hostPath, false);
}

std::string AbsoluteHostPath(std::string_view hostPath) {
    const bool drive = hostPath.size() > 1 && hostPath[1] == ':';
    const bool absolute = hostPath.empty() || hostPath[0] == '/' || hostPath[0] == '\\' || drive;
    const std::string current = absolute ? std::string() : CurrentFiles().CurrentDirectory();
    return current.empty() ? std::string(hostPath) : current + "/" + std::string(hostPath);
}

bool MapDriveLetter(char letter, std::string_view systemFolder) {
    return CurrentFiles().MapDrive(letter, systemFolder);
}

}  // namespace brindle
