// The tool's output. Tests: tool_test.cpp.
#include "apps/brindle/cli_output.h"

#include <brindle/library/console.h>
#include <brindle/library/host_text.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "apps/brindle/cli_finish.h"

namespace brindle::tool {
namespace {

constinit const char* g_program = "brindle";
constinit int g_outputError = 0;  // errno of the first failure; 0: none

void WriteLine(std::FILE* stream, std::string_view utf8) {
    std::string line(utf8);
    line += '\n';
    const bool written = std::fwrite(line.data(), 1, line.size(), stream) == line.size();
    if (!written && stream == stdout && g_outputError == 0) g_outputError = errno;
}

const char* Code(Colour colour) noexcept {
    switch (colour) {
        case Colour::kPlain:
            break;
        case Colour::kBold:
            return "\x1b[1m";
        case Colour::kDim:
            return "\x1b[2m";
        case Colour::kRed:
            return "\x1b[31m";
        case Colour::kGreen:
            return "\x1b[32m";
        case Colour::kYellow:
            return "\x1b[33m";
        case Colour::kBlue:
            return "\x1b[34m";
        case Colour::kMagenta:
            return "\x1b[35m";
        case Colour::kCyan:
            return "\x1b[36m";
    }
    return "";
}

bool ShowsColours(Stream stream) {
    static const bool output = OutputIsTerminal() && ColoursAllowed();
    static const bool error = ErrorIsTerminal() && ColoursAllowed();
    return stream == Stream::kOutput ? output : error;
}

}  // namespace

Failure::Failure(ExitCode code, std::string what, std::string why)
    : m_code(code), m_what(std::move(what)), m_why(std::move(why)) {}

Failure::~Failure() = default;

std::string Place(std::string_view file, unsigned long line, unsigned long column) {
    std::string place(file);
    if (line) place += ":" + std::to_string(line);
    if (line && column) place += ":" + std::to_string(column);
    return place;
}

void Print(std::string_view bytes) {
    PrintUtf8(TextToSystem(bytes));
}

void PrintUtf8(std::string_view utf8) {
    WriteLine(stdout, utf8);
}

void FlushOutput() {
    if (std::fflush(stdout) != 0 && g_outputError == 0) g_outputError = errno;
}

bool OutputFailed() {
    return g_outputError != 0;
}

bool FinishOutput() {
    FlushOutput();
    if (g_outputError == 0) return true;
    Complain("standard output", std::generic_category().message(g_outputError));
    return false;
}

void SetProgramName(const char* name) noexcept {
    g_program = name;
}

void Complain(std::string_view what, std::string_view why) {
    // Services name the file in their reasons too; once is enough.
    const std::string name = std::string(what) + ": ";
    if (why.starts_with(name)) why.remove_prefix(name.size());
    std::string line = Paint(Stream::kError, Colour::kRed, std::string(g_program) + ":");
    PrintError(line.append(" ").append(name).append(why));
}

void PrintError(std::string_view bytes) {
    // What was printed before stands before it, also when both streams show on one terminal.
    FlushOutput();
    WriteLine(stderr, TextToSystem(bytes));
}

void ShowProgress(std::string_view bytes) {
    if (!ErrorIsTerminal()) return;
    const std::string line = "\r" + TextToSystem(bytes) + "\x1b[K";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

std::string Paint(Stream stream, Colour colour, std::string_view text) {
    if (colour == Colour::kPlain || text.empty() || !ShowsColours(stream)) return std::string(text);
    return Code(colour) + std::string(text) + "\x1b[0m";
}

std::size_t ShownWidth(std::string_view bytes) {
    const std::string utf8 = TextToSystem(bytes);
    std::size_t width = 0;
    for (std::size_t at = 0; at < utf8.size(); ++at) {
        if (utf8[at] == '\x1b') {
            at = std::min(utf8.find('m', at), utf8.size() - 1);
        } else if ((static_cast<unsigned char>(utf8[at]) & 0xC0U) != 0x80U) {
            ++width;  // not a byte that continues a character
        }
    }
    return width;
}

std::string Padded(std::string text, std::size_t width) {
    const std::size_t shown = ShownWidth(text);
    if (shown < width) text.append(width - shown, ' ');
    return text;
}

std::vector<std::string> Columns::Lines() const {
    std::vector<std::size_t> widths;
    for (const auto& cells : m_lines) {
        if (widths.size() < cells.size()) widths.resize(cells.size());
        for (std::size_t i = 0; i + 1 < cells.size(); ++i)
            widths[i] = std::max(widths[i], ShownWidth(cells[i]));
    }
    std::vector<std::string> lines;
    for (const auto& cells : m_lines) {
        std::string line = m_indent;
        for (std::size_t i = 0; i < cells.size(); ++i)
            line += i + 1 < cells.size() ? Padded(cells[i], widths[i] + 2) : cells[i];
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace brindle::tool
