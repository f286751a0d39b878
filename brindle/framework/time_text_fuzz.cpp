// Arbitrary bytes as a time format: the result keeps to its size, and a larger size changes nothing but that.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "brindle/framework/time_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view format(reinterpret_cast<const char*>(data), size);
    const brindle::LocalTime time = brindle::BreakDownUtc(static_cast<std::int64_t>(size) * 86'399);
    const std::string cut = brindle::FormatTime(time, format, 128, "CET");
    const std::string whole = brindle::FormatTime(time, format, 64 * size + 1, "CET");
    if (cut.size() > 127) std::abort();
    if (!cut.empty() && cut != whole) std::abort();
    return 0;
}
