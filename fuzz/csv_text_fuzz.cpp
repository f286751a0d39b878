// Reads any text as CSV; what was read is written and read again, the same.
#include <cstdint>
#include <cstdlib>

#include "host/csv_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using brindle::host::CsvRecord;
    std::vector<CsvRecord> records;
    std::size_t line = 0;
    brindle::host::ParseCsv(std::string_view(reinterpret_cast<const char*>(data), size), records, line);
    for (const CsvRecord& record : records) {
        if (record.line > line) std::abort();
        std::vector<CsvRecord> again;
        std::size_t unused = 0;
        const std::string why = brindle::host::ParseCsv(brindle::host::CsvText(record.fields), again, unused);
        const bool empty =
            record.fields.size() == 1 && record.fields[0].empty();  // written, it is an empty line
        if (!why.empty() || (!empty && (again.size() != 1 || again[0].fields != record.fields))) std::abort();
    }
    return 0;
}
