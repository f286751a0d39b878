#include "brindle/macro/macro_slots.h"

#include <utility>

namespace brindle {

constinit MacroSlots g_macroSlots;

IBrindleData* RegisteredBrindleData() noexcept {
    return g_macroSlots.data;
}

}  // namespace brindle

void RegisterIBrindleData(IBrindleData* data) noexcept {
    brindle::g_macroSlots.data = data;
}

PreFormatHook AttachPreFormatHook(PreFormatHook hook) noexcept {
    return std::exchange(brindle::g_macroSlots.preFormatHook, hook);
}
