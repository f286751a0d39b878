// The INI store's slot. Tests: ini_store_test.cpp.
#include "brindle/platform/ini_store.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<IniStore> g_iniStore;
}

IniStore& CurrentIniStore() noexcept {
    return g_iniStore.GetOr(BackendIniStore());
}

IniStore* SetIniStore(IniStore* service) noexcept {
    return g_iniStore.Set(service);
}

}  // namespace brindle
