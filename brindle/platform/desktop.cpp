// The desktop's slot. Tests: desktop_test.cpp.
#include "brindle/platform/desktop.h"

#include "brindle/platform/backend.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<Desktop> g_desktop;
}

Desktop& CurrentDesktop() noexcept {
    return g_desktop.GetOr(BackendDesktop());
}

Desktop* SetDesktop(Desktop* desktop) noexcept {
    return g_desktop.Set(desktop);
}

}  // namespace brindle
