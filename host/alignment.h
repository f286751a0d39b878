// Align: which parts of a sequence became which parts of another one, both in their order.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

namespace brindle::host {

// For each part of the later sequence the part of the earlier one it was.
using Matches = std::vector<std::optional<std::size_t>>;

// The order-keeping match with the largest sum of `score(earlier, later)`; 0: never matched. Sequences too long for it
// are matched place by place.
template <class Score>
Matches Align(std::size_t earlier, std::size_t later, const Score& score) {
    constexpr std::size_t kMostCells = 1'000'000;
    Matches matches(later);
    if ((earlier + 1) * (later + 1) > kMostCells) {
        for (std::size_t j = 0; j < std::min(earlier, later); ++j)
            if (score(j, j) > 0) matches[j] = j;
        return matches;
    }
    const std::size_t row = later + 1;
    std::vector<int> scores(earlier * later);
    std::vector<int> best((earlier + 1) * row);  // of the parts from there on
    for (std::size_t i = earlier; i-- > 0;)
        for (std::size_t j = later; j-- > 0;) {
            const int here = scores[i * later + j] = score(i, j);
            const int apart = std::max(best[(i + 1) * row + j], best[i * row + j + 1]);
            best[i * row + j] = here > 0 ? std::max(apart, here + best[(i + 1) * row + j + 1]) : apart;
        }
    for (std::size_t i = 0, j = 0; i < earlier && j < later;) {
        const int here = scores[i * later + j];
        if (here > 0 && best[i * row + j] == here + best[(i + 1) * row + j + 1])
            matches[j++] = i++;
        else if (best[i * row + j] == best[(i + 1) * row + j])
            ++i;
        else
            ++j;
    }
    return matches;
}

}  // namespace brindle::host
