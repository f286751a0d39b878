// Breaking a text into the lines that stand in a rectangle.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brindle {

struct TextLayout {
    int width = 0;          // a line may not be wider, if it can be helped
    bool breaks = false;    // at spaces
    bool ellipsis = false;  // with breaks: words that alone are wider are cut and end in "..."
    bool utf8 = false;      // the text is UTF-8: characters are not cut in two
};

struct TextLine {
    std::string text;
    int width = 0;
};

// How wide a text is; must not shrink when the text grows.
using TextWidth = std::function<int(std::string_view)>;

// The lines of a text, at least one. Lines end at CR, LF or both together, which are dropped. Where lines break at
// spaces, those at the end of a line are dropped. Never measures much more text than there is, however long its
// words and lines are.
std::vector<TextLine> BreakIntoLines(std::string_view text, const TextLayout& layout, const TextWidth& width);

}  // namespace brindle
