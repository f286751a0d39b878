// Which of several things on a map the keyboard goes to next.
#pragma once

#include <brindle/framework/rect.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace brindle::host {

enum class MapDirection { kNext, kPrevious, kLeft, kRight, kUp, kDown };

// The index of the one that follows; `from` is the present one, if any. kNext and kPrevious go round in the order
// given, the others to the nearest one whose middle lies that way, and stay where there is none. Nothing for an empty
// list.
std::optional<std::size_t> NextTarget(const std::vector<CRect>& targets, std::optional<std::size_t> from,
                                      MapDirection direction) noexcept;

}  // namespace brindle::host
