// MatchLines: which lines of two texts stand for each other: the longest common subsequence of the part between the
// common beginning and the common end, while that part is small enough for its table; beyond, nothing of it matches.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace brindle::host {

constexpr std::size_t kLargestMatchTable = 16'000'000;  // cells

template <class Line>
class LineMatcher {
  public:
    LineMatcher(const std::vector<Line>& one, const std::vector<Line>& other) : m_one(one), m_other(other) {}

    // Pairs of places with equal lines, both rising.
    std::vector<std::pair<std::size_t, std::size_t>> Match() {
        std::size_t head = 0;
        const std::size_t shorter = std::min(m_one.size(), m_other.size());
        while (head < shorter && m_one[head] == m_other[head]) m_pairs.emplace_back(head, head), ++head;
        std::size_t tail = 0;
        while (tail < shorter - head && m_one[m_one.size() - 1 - tail] == m_other[m_other.size() - 1 - tail])
            ++tail;
        MatchMiddle(head, m_one.size() - tail, m_other.size() - tail);
        for (; tail > 0; --tail) m_pairs.emplace_back(m_one.size() - tail, m_other.size() - tail);
        return std::move(m_pairs);
    }

  private:
    void MatchMiddle(std::size_t head, std::size_t oneEnd, std::size_t otherEnd) {
        const std::size_t rows = oneEnd - head;
        const std::size_t columns = otherEnd - head;
        if (rows == 0 || columns == 0 || rows + 1 > kLargestMatchTable / (columns + 1)) return;
        std::vector<unsigned> length((rows + 1) * (columns + 1));
        const auto at = [&](std::size_t r, std::size_t c) -> unsigned& {
            return length[r * (columns + 1) + c];
        };
        for (std::size_t r = rows; r-- > 0;)
            for (std::size_t c = columns; c-- > 0;)
                at(r, c) = m_one[head + r] == m_other[head + c] ? at(r + 1, c + 1) + 1
                                                                : std::max(at(r + 1, c), at(r, c + 1));
        for (std::size_t r = 0, c = 0; r < rows && c < columns;) {
            if (m_one[head + r] == m_other[head + c])
                m_pairs.emplace_back(head + r++, head + c++);
            else if (at(r + 1, c) >= at(r, c + 1))
                ++r;
            else
                ++c;
        }
    }

    const std::vector<Line>& m_one;
    const std::vector<Line>& m_other;
    std::vector<std::pair<std::size_t, std::size_t>> m_pairs;
};

}  // namespace brindle::host
