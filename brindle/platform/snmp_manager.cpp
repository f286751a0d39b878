// The SNMP manager's slot. Tests: snmp_manager_test.cpp.
#include "brindle/platform/snmp_manager.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<SnmpManager> g_manager;
}

SnmpManager& CurrentSnmpManager() noexcept {
    return g_manager.GetOr(BackendSnmpManager());
}

SnmpManager* SetSnmpManager(SnmpManager* service) noexcept {
    return g_manager.Set(service);
}

}  // namespace brindle
