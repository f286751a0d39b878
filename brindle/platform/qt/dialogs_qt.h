// The dialogs service on Qt widgets.
#pragma once

#include "brindle/platform/dialogs.h"

namespace brindle {

Dialogs& QtDialogs() noexcept;

}  // namespace brindle
