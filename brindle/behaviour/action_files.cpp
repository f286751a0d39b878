#include "brindle/behaviour/action_files.h"

#include "brindle/library/module_state.h"
#include "brindle/settings/ini_file_names.h"

using brindle::KeptIniFileNames;
using brindle::ModuleStateGuard;

void SetCommandActionsIniFile(const char* path) {
    const ModuleStateGuard state;
    KeptIniFileNames().commandActions = path;
}

CStringA GetCommandActionsIniFile() {
    const ModuleStateGuard state;
    return KeptIniFileNames().commandActions;
}

void SetUserInterfaceIniFile(const char* path) {
    const ModuleStateGuard state;
    KeptIniFileNames().userInterface = path;
}

CStringA GetUserInterfaceIniFile() {
    const ModuleStateGuard state;
    return KeptIniFileNames().userInterface;
}
