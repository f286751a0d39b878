// Macro command lines with hostile lines, definitions and texts, over services in memory: nothing runs but the two
// programs there are, the directory comes back, every start leaves one log line.
//
// Input: lines: the command line, the caption, then the macros' INI file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/behaviour/action_files.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/macro_command.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/substitute_path.h"
#include "brindle/platform/fake/desktop_fake.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/fake/programs_fake.h"
#include "brindle/platform/service.h"

using brindle::FakeFiles;

namespace {

std::string TakeLine(std::string_view& input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    std::string line(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

class Counter final : public IMacroObserver, public IBrindleData {
  public:
    Counter() { Register(this, this); }
    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;
    ~Counter() { Register(nullptr, nullptr); }
    void OnCommand(const char* command) override {
        ++commands;
        if (std::string_view(command).size() > 4'095) std::abort();
    }
    int GetAddressStatus(const FullAddress_t*) override { return 1; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char* name) override {
        return CStringA("<") + name;
    }
    void WriteCommandLog(const char*) override { ++logs; }
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }
    int commands = 0;
    int logs = 0;

  private:
    static void Register(IMacroObserver* observer, IBrindleData* data) {
        RegisterMacroObserver(observer);
        RegisterIBrindleData(data);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 600) return 0;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string line = TakeLine(input);
    const std::string caption = TakeLine(input);
    FakeFiles files;
    brindle::FakePrograms programs;
    brindle::FakeDesktop desktop;
    const brindle::ScopedService<brindle::Files> installedFiles(&brindle::SetFiles, files);
    const brindle::ScopedService<brindle::Programs> installedPrograms(&brindle::SetPrograms, programs);
    const brindle::ScopedService<brindle::Desktop> installedDesktop(&brindle::SetDesktop, desktop);
    files.Add("/m.ini", FakeFiles::Kind::kFile, std::string(input));
    files.Add("/site", FakeFiles::Kind::kFolder);
    programs.AddProgram("a");
    programs.AddProgram("b.exe");
    SetSearchPathIniFile("/m.ini");
    SetCommandActionsIniFile("/m.ini");
    Counter counter;
    ExecuteMacroCommandLine(nullptr, line.c_str(), nullptr, "/site", caption.c_str(), caption.c_str(), "", 1,
                            "r", 1, 2);
    if (files.CurrentDirectory() != "/" || counter.logs != counter.commands) std::abort();
    for (const brindle::FakePrograms::Started& start : programs.started)
        if (start.directory != "/site") std::abort();
    ExpandMacroFileName(nullptr, line.c_str(), nullptr, "/site", caption.c_str(), "", "", 0, "");
    return 0;
}
