#include "brindle/macro/start_filter.h"

#include <utility>

#include "brindle/macro/macro_slots.h"

IStartFilter::~IStartFilter() = default;

IStartFilter* RegisterStartFilter(IStartFilter* filter) noexcept {
    return std::exchange(brindle::g_macroSlots.startFilter, filter);
}
