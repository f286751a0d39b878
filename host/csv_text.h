// CSV in the form of RFC 4180: fields between commas, records between line ends (CR LF or LF), quotes around a field
// that holds a comma, a quote (doubled) or a line end. Empty lines are passed over; there is no heading line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

struct CsvRecord {
    std::size_t line;  // where it begins, from 1
    std::vector<std::string> fields;
};

// Reads all records; a UTF-8 mark at the beginning is passed over. Returns why not, with the line in `line` and the
// records before in `records`, or an empty text.
std::string ParseCsv(std::string_view text, std::vector<CsvRecord>& records, std::size_t& line);
// One record without a line end; fields are quoted where they must be.
std::string CsvText(const std::vector<std::string>& fields);

}  // namespace brindle::host
