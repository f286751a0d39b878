// Substitute paths in both directions. The passes stand in path_expansion.cpp. Tested in substitute_path_test.cpp.
#include "brindle/macro/substitute_path.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "brindle/framework/letter_case.h"
#include "brindle/library/string_table.h"
#include "brindle/macro/ini_string.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/macro/path_expansion.h"
#include "brindle/macro/substitute_call.h"
#include "brindle/platform/files.h"
#include "brindle/platform/path_text.h"
#include "brindle/settings/ini_file_names.h"

namespace brindle {
namespace {

constexpr std::size_t kMostCandidates = 4'096;  // that are looked for: as many as fit into a result
constexpr int kKeyListChunk = 4'096;

// The first candidate that exists; false when there is none.
bool FindExisting(const std::string& candidates, std::string& found) {
    IMacroObserver* const observer = g_macroSlots.observer;
    const std::vector<std::string_view> parts = SplitList(candidates, ';');
    for (std::size_t i = 0; i < std::min(parts.size(), kMostCandidates); ++i) {
        const bool exists = CurrentFiles().Exists(parts[i]);
        if (observer) observer->OnCandidate(std::string(parts[i]).c_str(), exists);
        if (!exists) continue;
        found = parts[i];
        return true;
    }
    return false;
}

// Compared with "/" and "\" alike: both are separators of a host path.
bool LiesIn(std::string_view folder, std::string_view path, std::string_view name) {
    return path.size() == folder.size() + 1 + name.size() && StartsWithNoCase(path, folder) &&
           (path[folder.size()] == '\\' || path[folder.size()] == '/');
}

// The longest expansion of a macro that begins the path; empty: none.
std::string BestMacro(std::string_view fullPath) {
    CStringA keys;
    GetIniString(LoadStringResource(kTextSearchPath), nullptr, "", keys, KeptIniFileNames().searchPath,
                 kKeyListChunk);
    std::size_t best = 0;
    std::string answer;
    for (const char* key = keys; *key; key += std::strlen(key) + 1) {
        const std::string macro = "$" + std::string(key) + "$";
        const std::string expansion = SubstitutePath(macro.c_str(), false, NoFields());
        if (expansion.size() <= best || !StartsWithNoCase(fullPath, expansion)) continue;
        best = expansion.size();
        answer = macro + std::string(fullPath.substr(best));
    }
    return answer;
}

}  // namespace

FormatArguments NoFields() noexcept {
    return {nullptr, nullptr, nullptr, nullptr, nullptr, 0, nullptr, -1, -1, nullptr};
}

std::string ExpandSubstitutes(const char* path, bool checkExists, const FormatArguments& arguments,
                              const char* iniFile, bool format) {
    std::string text = path ? path : "";
    ReplaceEvery(text, "$$", kDollarMarker);
    const std::size_t dollar = text.find('$');
    const std::size_t split = dollar == std::string::npos ? 0 : dollar;
    CStringA head = text.substr(0, split);
    const CStringA defaultFile = KeptIniFileNames().searchPath;
    const PathExpansion expansion(arguments, iniFile ? iniFile : defaultFile.GetString(), format);
    std::string rest = expansion.Expand(text.substr(split));
    ReplaceEvery(rest, kDollarMarker, "$");
    std::string found;
    if (checkExists && FindExisting(rest, found)) rest = std::move(found);
    FormatWith(head, arguments);
    ReplaceEvery(head.str(), kDollarMarker, "$");
    return head.str() + rest;
}

std::string SubstitutePath(const char* path, bool checkExists, const FormatArguments& arguments) {
    std::string expanded = ExpandSubstitutes(path, checkExists, arguments, nullptr, true);
    if (expanded.size() > kMostSubstitutePath) expanded.resize(kMostSubstitutePath);
    // Like every text that goes through a fixed buffer it ends at its first zero byte.
    expanded.resize(std::strlen(expanded.c_str()));
    return expanded;
}

}  // namespace brindle

int GetSubstitutePathEx(const char* path, char* out, int outSize, int checkExists,
                        const FullAddress_t* address, const char* pathArg, const char* caption,
                        const char* text, const char* help, int status, const char* r, const char* iniFile,
                        bool format, int n, int q) {
    const brindle::FormatArguments arguments = {address, pathArg, caption, text, help,
                                                status,  r,       n,       q,    nullptr};
    const std::string expanded =
        brindle::ExpandSubstitutes(path, checkExists != 0, arguments, iniFile, format);
    if (!out || outSize < 1) return 1;
    const std::size_t length = std::min(expanded.size(), static_cast<std::size_t>(outSize) - 1);
    std::memcpy(out, expanded.data(), length);
    out[length] = '\0';
    return 1;
}

int GetSubstitutePath(const char* path, char* out, int outSize, int checkExists, const FullAddress_t* address,
                      const char* pathArg, const char* caption, const char* text, const char* help,
                      int status, const char* iniFile, bool format) {
    return GetSubstitutePathEx(path, out, outSize, checkExists, address, pathArg, caption, text, help, status,
                               nullptr, iniFile, format, -1, -1);
}

CStringA ExpandSearchPaths(const CStringA& s) {
    const brindle::FormatArguments arguments = {nullptr, "", "", "", nullptr, 0, "", -1, -1, nullptr};
    return brindle::SubstitutePath(s, true, arguments);
}

void ResolveHashFields(const CStringA& in, CStringA& out) {
    CStringA line = in;
    brindle::FormatWith(line, brindle::NoFields());
    out = ExpandSearchPaths(line);
}

int FindSubstitutePath(const CStringA& baseDir, const CStringA& fullPath, CStringA& out) {
    using namespace brindle;
    const CStringA path = fullPath;  // `out` may be the same string
    if (std::string answer = BestMacro(path.view()); !answer.empty()) {
        out = std::move(answer);
        return kPathSubstitute;
    }
    std::string relative;
    const std::string_view name = FileNameOf(path.view());
    int code = kPathUnrelated;
    std::string answer = path.str();
    if (baseDir.IsEmpty()) {
        code = kPathNoBase;
    } else if (LiesIn(baseDir.view(), path.view(), name)) {
        code = kPathInBase;
        answer = name;
    } else if (RelativePathTo(baseDir.view(), path.view(), relative)) {
        code = kPathRelative;
        answer = std::move(relative);
    }
    out = std::move(answer);
    return code;
}

void SetSearchPathIniFile(const char* file) {
    brindle::KeptIniFileNames().searchPath = file;
}
CStringA GetSearchPathIniFile() {
    return brindle::KeptIniFileNames().searchPath;
}

void SetGlobalSubPathFlag(int flag) noexcept {
    brindle::g_macroSlots.globalSubPathFlag = flag;
}
int GetGlobalSubPathFlag() noexcept {
    return brindle::g_macroSlots.globalSubPathFlag;
}
