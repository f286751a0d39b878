#include "brindle/macro/macro_definition.h"

#include "brindle/library/string_table.h"
#include "brindle/macro/ini_string.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/settings/ini_file_names.h"

namespace brindle {
namespace {
constexpr int kChunk = 4'096;
}

std::string_view MacroToken(std::string_view command) noexcept {
    const std::size_t open = command.find('<');
    const std::size_t close = command.find('>');
    if (open == command.npos || close == command.npos || close < open) return {};
    return command.substr(open, close + 1 - open);
}

std::string_view MacroName(std::string_view token) noexcept {
    while (token.starts_with('<')) token.remove_prefix(1);
    while (token.ends_with('>')) token.remove_suffix(1);
    return token;
}

bool ReadMacro(const std::string& name, std::string& text) {
    CStringA definition;
    GetIniString(LoadStringResource(kTextCommandActions), name.c_str(), "", definition,
                 KeptIniFileNames().commandActions, kChunk);
    const std::size_t comma = definition.str().find(',');
    const std::string command = definition.str().substr(comma == std::string::npos ? 0 : comma + 1);
    const bool defined = !definition.IsEmpty();
    if (IMacroObserver* observer = g_macroSlots.observer)
        observer->OnMacro(name.c_str(), defined ? command.c_str() : nullptr);
    if (defined) text = command;
    return defined;
}

std::string_view WithoutSpaces(std::string_view text) noexcept {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

}  // namespace brindle
