// strftime without a locale: dates and times as text with the words of the C locale. Thread: any.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "brindle/framework/export.h"
#include "brindle/framework/local_time.h"

namespace brindle {

// `time` laid out by `format`. Conversions: a A b B c C d D e F g G h H I j m M n p r R S t T u U V w W x X y
// Y z Z %;
// "%#" before one drops its leading zeros (for c and x: the long form), the modifiers E and O are read over.
// "%z" is the offset of `time` as "+hhmm", "%Z" is `zoneName`.
//
// `size` counts a terminating zero, as it does for the C function: the result has at most size - 1 bytes.
// Empty when it would be longer, when the format holds an unknown conversion or ends inside one, and when a
// field of `time` is out of its range (year 0 to 9999).
BRINDLE_API std::string FormatTime(const LocalTime& time, std::string_view format, std::size_t size,
                                   std::string_view zoneName = {});

}  // namespace brindle
