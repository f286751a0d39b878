// Tests: open_site_test.cpp.
#include "apps/brindle-map/open_site.h"

#include <brindle/library/host_path_access.h>
#include <brindle/macro/file_box.h>
#include <brindle/macro/ini_string.h>
#include <brindle/macro/substitute_path.h>

namespace brindle::map {
namespace {

constexpr unsigned long kMustExist = 0x1000;

// The folder that a file or a folder lies in; "/" for what lies at the top.
std::string FolderOf(const std::string& path) {
    const std::size_t end = path.find_last_of("/\\");
    if (end == std::string::npos) return ".";
    return end == 0 ? path.substr(0, 1) : path.substr(0, end);
}

}  // namespace

std::optional<std::string> ChooseSite(HWND owner, const std::string& presentFolder) {
    const bool keeps = !GetSearchPathIniFile().IsEmpty();
    CStringA folder = keeps ? GetLastSchematicDir() : CStringA();
    if (folder.IsEmpty()) folder = FolderOf(AbsoluteHostPath(presentFolder));
    CStringA file;
    if (!SelectFileBox(owner, file, "Sites (site.ini)|site.ini|All files (*.*)|*.*||", folder, kMustExist,
                       "Open site"))
        return {};
    const std::string chosen = FolderOf(file.str());
    if (keeps) SetLastSchematicDir(chosen.c_str());
    return chosen;
}

}  // namespace brindle::map
