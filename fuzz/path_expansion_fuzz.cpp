// Search paths: random definitions and texts without fields, compared with the slow, obvious implementation; and what
// finds a path's macro form.
//
// Input: lines. The first is the text; each further one is a line of the section [SearchPath].
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/macro/substitute_path.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/service.h"
#include "testing/slow_paths.h"

using brindle::FakeFiles;
using brindle::testing::SlowPaths;

namespace {

std::string_view TakeLine(std::string_view& input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return c > ' ' && c < 0x7F && c != '%' && c != '#' && c != '"' && c != '\'' && c != '[';
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 600) return 0;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text(TakeLine(input));
    std::string ini = "[SearchPath]\n";
    SlowPaths::Macros macros;
    bool plain = IsPlain(text) && !text.starts_with('.');
    while (!input.empty()) {
        const std::string_view line = TakeLine(input);
        ini.append(line).append("\n");
        const std::size_t equals = line.find('=');
        if (equals == 0 || equals == line.npos || line[0] == ';') continue;
        plain = plain && IsPlain(line);
        std::string name(line.substr(0, equals));
        for (char& c : name)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        macros.emplace(name, line.substr(equals + 1));
    }
    FakeFiles files;
    const brindle::ScopedService<brindle::Files> installed(&brindle::SetFiles, files);
    files.Add("/f.ini", FakeFiles::Kind::kFile, ini);
    SetSearchPathIniFile("/f.ini");
    // A pass over definitions that multiply may hold far more than what an expansion may go on with.
    static std::string out(1u << 20, '\0');
    GetSubstitutePath(text.c_str(), out.data(), static_cast<int>(out.size()), 0, nullptr, "", "", "", "", 0,
                      nullptr, false);
    const std::string expanded = out.c_str();
    if (plain) {
        const std::string slow = SlowPaths::Expand(text, macros);
        if (slow.substr(0, out.size() - 1) != expanded) std::abort();
    }
    CStringA found;
    const int code = FindSubstitutePath("C:\\base", text.c_str(), found);
    if (code < kPathNoBase || code > kPathUnrelated) std::abort();
    if (code == kPathUnrelated && found != text.c_str()) std::abort();
    return 0;
}
