// Command macros: "<name>" and what the "CommandActions" section says about it.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

// The first "<...>" of a command; empty: none. A ">" before the first "<" makes none.
std::string_view MacroToken(std::string_view command) noexcept;
// The token without all its leading "<" and trailing ">".
std::string_view MacroName(std::string_view token) noexcept;
// The command text of a macro: of its definition what follows the first ",", else all. False, `text` unchanged, when
// it is not defined.
bool ReadMacro(const std::string& name, std::string& text);
std::string_view WithoutSpaces(std::string_view text) noexcept;

}  // namespace brindle
