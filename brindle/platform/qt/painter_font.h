// Font records as Qt has them.
#pragma once

#include "brindle/framework/log_font.h"

class QFont;

namespace brindle {

// Whether there is an application object, without which Qt must not be asked about fonts.
bool FontsAvailable();
// Heights beyond 4096 are that; 0 is 16.
QFont QtFont(const LOGFONTA& record);

}  // namespace brindle
