// Command-line formatting: the order of its stages. The "%" stage stands in percent_fields.cpp, the "#" stage in
// hash_fields.cpp. Tested in command_line_test.cpp.
#include "brindle/macro/command_line.h"

#include "brindle/macro/hash_fields.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/macro/percent_fields.h"

void FormatCommandLine(CStringA& commandLine, const FullAddress_t* address, const char* path,
                       const char* caption, const char* text, const char* help, int status) {
    FormatCommandLineEx(commandLine, address, path, caption, text, help, status, nullptr, -1, -1);
}

void FormatCommandLineEx(CStringA& commandLine, const FullAddress_t* address, const char* path,
                         const char* caption, const char* text, const char* help, int status, const char* r,
                         int n, int q) {
    if (const PreFormatHook hook = brindle::g_macroSlots.preFormatHook) hook(commandLine);
    IBrindleData* const data = brindle::RegisteredBrindleData();
    std::string& line = commandLine.str();
    // What the "%" stage brings in does not count.
    const bool hasHash = line.find('#') != std::string::npos;
    if (line.find('%') != std::string::npos)
        brindle::ExpandPercentFields(line, {address, path, caption, text, help, status, r, n, q, data});
    if (line.starts_with('.')) line.insert(0, std::string(path ? path : "") + "\\");
    if (data && hasHash) line = brindle::ExpandHashFields(line, address, *data);
}

namespace brindle {

void FormatWith(CStringA& line, const FormatArguments& a) {
    FormatCommandLineEx(line, a.address, a.path, a.caption, a.text, a.help, a.status, a.r, a.n, a.q);
}

}  // namespace brindle
