// ExpectedLines: compares the records of a run with a file of expected ones, line by line as JSON values: the
// order of keys and the spelling of numbers do not matter. Lines that fell out or came in between are found,
// so that one more line does not make everything after it differ.
#pragma once

#include <string>
#include <vector>

#include "host/run_record.h"

namespace brindle::host {

struct LineChange {
    enum What { kSame, kMissing, kAdded };
    What what;
    std::size_t line;  // in the expected file (kMissing, kSame) or in the run (kAdded), from 1
    std::string text;  // the JSON line
    // Keys whose values differ from the line it stands against; empty when it stands alone.
    std::vector<std::string> keys;
};

struct ExpectedLine {
    std::size_t line;  // in the file, from 1
    RunRecord record;
};

// Reads JSON lines; blank ones are passed over. Returns why not, with the line in `line`, or an empty text.
std::string ReadExpected(const std::string& utf8, std::vector<ExpectedLine>& expected, std::size_t& line);

// Everything from the first to the last difference, with a few equal lines around each; empty when all lines
// are equal.
std::vector<LineChange> CompareLines(const std::vector<ExpectedLine>& expected,
                                     const std::vector<RunRecord>& actual);

}  // namespace brindle::host
