// Golden files: comparison, diff, and the file that tools/accept-golden takes over. See golden.h.
#include "testing/golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <vector>

namespace brindle::testing {
namespace {

constexpr std::size_t kMostLines = 40;  // of each side in a diff

std::optional<std::string> ReadBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t taken = end == std::string_view::npos ? text.size() : end + 1;
        lines.push_back(text.substr(0, taken));
        text.remove_prefix(taken);
    }
    return lines;
}

char HexDigit(unsigned value) {
    return "0123456789ABCDEF"[value & 15U];
}

// A line as it can be shown: without its line feed, control characters and bytes above ASCII escaped.
std::string Shown(std::string_view line) {
    std::string text;
    const bool complete = !line.empty() && line.back() == '\n';
    if (complete) line.remove_suffix(1);
    for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F) {
            text += c;
        } else {
            text += {'\\', 'x', HexDigit(byte >> 4), HexDigit(byte)};
        }
    }
    return complete ? text : text + " (no line feed)";
}

void AppendSide(std::string& out, char sign, const std::vector<std::string_view>& lines, std::size_t from,
                std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
        if (i - from == kMostLines) {
            out += std::string(1, sign) + " ... and " + std::to_string(to - i) + " more\n";
            return;
        }
        out += std::string(1, sign) + " " + std::to_string(i + 1) + ": " + Shown(lines[i]) + "\n";
    }
}

}  // namespace

std::string LineDiff(std::string_view expected, std::string_view actual) {
    const std::vector<std::string_view> before = Lines(expected);
    const std::vector<std::string_view> after = Lines(actual);
    std::size_t same = 0;
    while (same < before.size() && same < after.size() && before[same] == after[same]) ++same;
    std::size_t endBefore = before.size();
    std::size_t endAfter = after.size();
    while (endBefore > same && endAfter > same && before[endBefore - 1] == after[endAfter - 1]) {
        --endBefore;
        --endAfter;
    }
    std::string out;
    AppendSide(out, '-', before, same, endBefore);
    AppendSide(out, '+', after, same, endAfter);
    return out;
}

std::string HexDump(std::string_view bytes) {
    std::string out;
    for (std::size_t start = 0; start < bytes.size(); start += 16) {
        const std::string_view line = bytes.substr(start, 16);
        for (unsigned shift = 16; shift != 0; shift -= 4) {
            out += HexDigit(static_cast<unsigned>(start >> (shift - 4)));
        }
        out += " ";
        std::string characters;
        for (const char c : line) {
            const auto byte = static_cast<unsigned char>(c);
            out += {' ', HexDigit(byte >> 4), HexDigit(byte)};
            characters += byte >= 0x20 && byte < 0x7F ? c : '.';
        }
        out += std::string(3 * (16 - line.size()) + 2, ' ') + characters + "\n";
    }
    return out;
}

std::string LoadGolden(const std::string& folder, const std::string& name) {
    const std::string path = folder + "/golden/" + name;
    const std::optional<std::string> bytes = ReadBytes(path);
    if (!bytes) ADD_FAILURE() << path << " cannot be read";
    return bytes.value_or("");
}

void CompareGolden(const std::string& folder, const std::string& name, std::string_view actual) {
    const std::string path = folder + "/golden/" + name;
    const std::optional<std::string> expected = ReadBytes(path);
    if (expected && *expected == actual) return;
    const char* accept = std::getenv("BRINDLE_ACCEPT_GOLDEN");
    if (accept && std::string_view(accept) == "1") {
        std::ofstream(path + ".actual", std::ios::binary) << actual;
    }
    ADD_FAILURE() << path << (expected ? " differs:\n" : " does not exist; it would hold:\n")
                  << LineDiff(expected.value_or(""), actual)
                  << "To look at all differences and accept them: tools/accept-golden";
}

}  // namespace brindle::testing
