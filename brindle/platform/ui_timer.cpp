// The slot of the UI-timer service.
#include "brindle/platform/ui_timer.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<UiTimer> g_uiTimer;
}

UiTimer& CurrentUiTimer() noexcept {
    return g_uiTimer.GetOr(BackendUiTimer());
}
UiTimer* SetUiTimer(UiTimer* service) noexcept {
    return g_uiTimer.Set(service);
}

}  // namespace brindle
