// The forms of a run's output. Tests: command_run_test.cpp.
#include "apps/brindle/run_output.h"

#include <brindle/library/console.h>
#include <brindle/library/host_path_access.h>

#include "apps/brindle/cli_output.h"

namespace brindle::tool {

namespace {

constexpr std::uint64_t kLargestExpected = 256U << 20;  // bytes

std::string PaintRun(host::TextStyle style, std::string_view text) {
    constexpr Colour kColours[] = {Colour::kPlain, Colour::kDim,   Colour::kCyan,
                                   Colour::kBold,  Colour::kGreen, Colour::kYellow,
                                   Colour::kBlue,  Colour::kDim,   Colour::kRed};
    return Paint(Stream::kOutput, kColours[static_cast<std::size_t>(style)], text);
}

std::string LineNumber(std::size_t line) {
    std::string text = std::to_string(line);
    if (text.size() < 6) text.insert(0, 6 - text.size(), ' ');
    return text;
}

void PrintChange(const host::LineChange& change) {
    constexpr const char* kMarks[] = {" ", "-", "+"};
    constexpr Colour kColours[] = {Colour::kDim, Colour::kRed, Colour::kGreen};
    std::string line = std::string(kMarks[change.what]) + LineNumber(change.line) + "  " + change.text;
    std::string keys;
    for (const std::string& key : change.keys) keys += (keys.empty() ? "" : ", ") + key;
    if (!keys.empty()) line += "  <- " + keys;
    PrintUtf8(Paint(Stream::kOutput, kColours[change.what], line));
}

}  // namespace

void RunOutput::Warn(const host::Problem& problem) {
    FlushOutput();
    Complain(problem.Place(), problem.text);
}

bool RunOutput::IsClosed() const {
    return OutputFailed();
}

void RunOutput::PrintLine(const std::string& utf8) const {
    PrintUtf8(utf8);
    if (m_live) FlushOutput();
}

void JsonOutput::Write(const host::RunRecord& record) {
    PrintLine(host::RecordLine(record));
}

TextOutput::TextOutput(bool live, const host::Site& site) : RunOutput(live), m_text(site, PaintRun) {}

void TextOutput::Write(const host::RunRecord& record) {
    PrintLine(m_text.Line(record));
}

ExpectOutput::ExpectOutput(const std::string& file) : RunOutput(false), m_file(file) {
    std::string bytes;
    const Result result = ReadHostFile(file, kLargestExpected, bytes);
    if (!result.ok()) throw Failure(kWrongUsage, file, result.text);
    std::size_t line = 0;
    const std::string why = host::ReadExpected(bytes, m_expected, line);
    if (!why.empty()) throw Failure(kWrongUsage, Place(file, line), why);
}

bool ExpectOutput::Compare() const {
    const std::vector<host::LineChange> changes = host::CompareLines(m_expected, m_actual);
    if (changes.empty()) return true;
    Print("--- " + m_file);
    Print("+++ the run");
    std::size_t missing = 0;
    std::size_t added = 0;
    std::size_t last = 0;
    for (const host::LineChange& change : changes) {
        // Equal lines were left out here.
        if (change.what != host::LineChange::kAdded) {
            if (change.line > last + 1) PrintUtf8(Paint(Stream::kOutput, Colour::kDim, "  ..."));
            last = change.line;
        }
        PrintChange(change);
        missing += change.what == host::LineChange::kMissing;
        added += change.what == host::LineChange::kAdded;
    }
    Complain(m_file, "the run differs: " + std::to_string(missing) + " expected lines did not come, " +
                         std::to_string(added) + " others did");
    return false;
}

}  // namespace brindle::tool
