// NumberSet: a set of whole numbers written as numbers and ranges, such as "1,3-5,8-": the states or zones a
// trigger listens to. An empty text is the set of all numbers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

class NumberSet {
  public:
    // Reads the text; "3-" has no upper end, "-5" is the number minus five, "-5--2" a range. Returns why it
    // cannot be read, or an empty text. On failure the set stays as it was.
    std::string Parse(std::string_view text);
    std::string Text() const;
    bool Contains(int number) const noexcept;
    bool IsAll() const noexcept { return m_ranges.empty(); }

  private:
    struct Range {
        int first;
        int last;
    };
    static bool ParseRange(std::string_view text, Range& range) noexcept;

    std::vector<Range> m_ranges;
};

}  // namespace brindle::host
