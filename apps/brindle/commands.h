// The subcommands of the tool, one file each.
#pragma once

namespace brindle::tool {

class Command;

void DeclareRun(Command& tool);        // command_run.cpp
void DeclareCheck(Command& tool);      // command_check.cpp
void DeclareCreate(Command& tool);     // command_create.cpp
void DeclareAddress(Command& tool);    // command_address.cpp
void DeclareFormat(Command& tool);     // command_format.cpp
void DeclareMacro(Command& tool);      // command_macro.cpp
void DeclarePath(Command& tool);       // command_path.cpp
void DeclareVariables(Command& tool);  // command_variables.cpp
void DeclareRule(Command& tool);       // command_rule.cpp
void DeclareSnmp(Command& tool);       // command_snmp.cpp
void DeclareSkin(Command& tool);       // command_skin.cpp
void DeclareWatch(Command& tool);      // command_watch.cpp
void DeclareInfo(Command& tool);       // command_info.cpp

}  // namespace brindle::tool
