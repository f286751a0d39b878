// The sixteen custom colours of the user-interface INI file. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"
#include "brindle/platform/colour_box.h"

namespace brindle {

CustomColours LoadCustomColours();
// All sixteen keys; the first failure, after all were tried.
Result SaveCustomColours(const CustomColours& colours);

}  // namespace brindle
