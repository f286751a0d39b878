// The desktop service on Qt widgets.
#pragma once

#include "brindle/platform/desktop.h"

namespace brindle {

Desktop& QtDesktop() noexcept;

}  // namespace brindle
