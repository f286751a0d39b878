// How long an expanded command line may become.
#pragma once

#include <cstddef>

namespace brindle {

// Bytes. A field whose replacement would make the line longer stays as typed.
constexpr std::size_t kLineLimit = 16u << 20;

}  // namespace brindle
