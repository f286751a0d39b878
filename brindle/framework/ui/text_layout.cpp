// Line breaking: paragraphs, then words, then the cut of a word that is too wide. Tests: text_layout_test.cpp.
#include "brindle/framework/ui/text_layout.h"

#include <algorithm>
#include <cstddef>

namespace brindle {
namespace {

// The largest n in 1..limit that fits, or 0. Tries small ones first, so that little is measured when little fits.
template <class Fits>
std::size_t Largest(std::size_t limit, const Fits& fits) {
    std::size_t good = 0;
    std::size_t next = 1;
    while (next <= limit && fits(next)) {
        good = next;
        next *= 2;
    }
    std::size_t bad = std::min(next, limit + 1);
    while (bad - good > 1) {
        const std::size_t middle = good + (bad - good) / 2;
        (fits(middle) ? good : bad) = middle;
    }
    return good;
}

// Where the words of a paragraph end.
std::vector<std::size_t> WordEnds(std::string_view paragraph) {
    std::vector<std::size_t> ends;
    for (std::size_t i = 1; i <= paragraph.size(); ++i)
        if (paragraph[i - 1] != ' ' && (i == paragraph.size() || paragraph[i] == ' ')) ends.push_back(i);
    return ends;
}

bool SplitsCharacter(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

std::string CutWord(std::string_view word, const TextLayout& layout, const TextWidth& width) {
    std::size_t kept = Largest(word.size(), [&](std::size_t count) {
        return width(std::string(word.substr(0, count)) + "...") <= layout.width;
    });
    while (layout.utf8 && kept > 0 && SplitsCharacter(word, kept)) --kept;
    return std::string(word.substr(0, kept)) + "...";
}

void BreakParagraph(std::string_view paragraph, const TextLayout& layout, const TextWidth& width,
                    std::vector<TextLine>& lines) {
    const std::vector<std::size_t> ends = WordEnds(paragraph);
    if (ends.empty()) lines.push_back({});
    std::size_t start = 0;
    for (std::size_t word = 0; word < ends.size();) {
        const auto upTo = [&](std::size_t count) {
            return paragraph.substr(start, ends[word + count - 1] - start);
        };
        const std::size_t fitting = Largest(
            ends.size() - word, [&](std::size_t count) { return width(upTo(count)) <= layout.width; });
        std::string line(upTo(std::max<std::size_t>(fitting, 1)));
        if (fitting == 0 && layout.ellipsis) line = CutWord(line, layout, width);
        const int lineWidth = width(line);
        lines.push_back({std::move(line), lineWidth});
        word += std::max<std::size_t>(fitting, 1);
        start = std::min(paragraph.find_first_not_of(' ', ends[word - 1]), paragraph.size());
    }
}

}  // namespace

std::vector<TextLine> BreakIntoLines(std::string_view text, const TextLayout& layout,
                                     const TextWidth& width) {
    std::vector<TextLine> lines;
    for (std::size_t start = 0;;) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        const std::string_view paragraph = text.substr(start, end - start);
        if (layout.breaks) {
            BreakParagraph(paragraph, layout, width, lines);
        } else {
            lines.push_back({std::string(paragraph), width(paragraph)});
        }
        if (end == text.size()) return lines;
        start = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
}

}  // namespace brindle
