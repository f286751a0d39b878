#include "brindle/settings/ini_file_names.h"

namespace brindle {

IniFileNames& KeptIniFileNames() noexcept {
    static IniFileNames& names = *new IniFileNames;
    return names;
}

}  // namespace brindle
