#include "brindle/settings/ini_file_names.h"

#include "brindle/framework/never_destroyed.h"

namespace brindle {

IniFileNames& KeptIniFileNames() noexcept {
    static NeverDestroyed<IniFileNames> names;
    return *names;
}

}  // namespace brindle
