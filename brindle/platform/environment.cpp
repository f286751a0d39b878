// The environment's slot. Tests: environment_test.cpp.
#include "brindle/platform/environment.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<Environment> g_environment;
}

Environment& CurrentEnvironment() noexcept {
    return g_environment.GetOr(BackendEnvironment());
}

Environment* SetEnvironment(Environment* service) noexcept {
    return g_environment.Set(service);
}

}  // namespace brindle
