// Arbitrary bytes as number texts: every reading stops inside the text, and the part that was read gives the same
// number again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "brindle/framework/number_text.h"

namespace {

template <class Value>
bool SameBits(Value a, Value b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

template <class Read>
void ExpectStable(std::string_view text, Read read) {
    const auto whole = read(text);
    if (whole.end > text.size()) std::abort();
    const auto part = read(text.substr(0, whole.end));
    if (part.end != whole.end || !SameBits(part.value, whole.value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const int base : {0, 2, 8, 10, 16, 36}) {
        ExpectStable(text, [base](std::string_view t) { return brindle::ReadLong(t, base); });
        ExpectStable(text, [base](std::string_view t) { return brindle::ReadUnsignedLong(t, base); });
    }
    ExpectStable(text, [](std::string_view t) { return brindle::ReadDoublePrefix(t); });
    const double value = brindle::ReadDouble(text);
    if (value == value && brindle::ReadDouble(brindle::PrintDouble(value, 'e', 16)) != value) std::abort();
    std::string_view rest = text;
    std::uint32_t number = 0;
    while (brindle::ScanHex(rest, number) || !rest.empty())
        if (!rest.empty()) rest.remove_prefix(1);
    return 0;
}
