// Any pattern against any text, cut at the first line break: nothing crashes or hangs, and for plain patterns the
// engine and the direct match agree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "brindle/expressions/wildcard.h"
#include "brindle/expressions/wildcard_engine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = input.find('\n');
    if (cut == std::string_view::npos) return 0;
    const std::string_view pattern = input.substr(0, cut);
    const std::string_view text = input.substr(cut + 1);
    const brindle::WildcardResult result = brindle::MatchWildcard(text, pattern);
    if (pattern.empty() || !brindle::IsPlainPattern(pattern)) return 0;
    const brindle::WildcardResult engine = brindle::MatchWithEngine(text, pattern);
    if (engine != brindle::WildcardResult::kNoPattern && engine != result) std::abort();
    return 0;
}
