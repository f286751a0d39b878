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

std::string SystemPathOf(std::string_view hostPath) {
    return CurrentFiles().SystemPath(hostPath, false);
}

bool MapDriveLetter(char letter, std::string_view systemFolder) {
    return CurrentFiles().MapDrive(letter, systemFolder);
}

}  // namespace brindle
