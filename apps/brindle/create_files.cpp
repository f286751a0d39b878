// See create_files.h. Tests: command_create_test.cpp.
#include "apps/brindle/create_files.h"

#include <brindle/library/host_path_access.h>
#include <brindle/library/host_text.h>
#include <brindle/xml/xml_reader.h>

#include "apps/brindle/cli_output.h"
#include "host/csv_text.h"

namespace brindle::tool {
namespace {

constexpr std::uint64_t kLargestDocument = 16U << 20;  // bytes: what XMLReader takes
constexpr std::uint64_t kLargestPairs = 256U << 20;

std::string ReadBytes(const std::string& file, std::uint64_t limit) {
    std::string bytes;
    if (const Result result = ReadHostFile(file, limit, bytes); !result.ok())
        throw Failure(kWrongUsage, file, result.text);
    return bytes;
}

// The first line with a character that has no byte in the code page.
std::size_t FirstLostLine(std::string_view utf8) {
    std::string unused;
    for (std::size_t line = 1;; ++line) {
        const std::size_t end = std::min(utf8.find('\n'), utf8.size());
        if (!TextFromSystem(utf8.substr(0, end), unused)) return line;
        if (end == utf8.size()) return 0;
        utf8.remove_prefix(end + 1);
    }
}

// Documents in UTF-16 hold zero bytes everywhere; the reader knows how to read them.
bool IsUtf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

}  // namespace

std::string ReadDocument(const std::string& file, const char* root) {
    XMLReader reader;
    Result result;
    if (!reader.LoadPositioned(file.c_str(), result))
        throw Failure(kWrongUsage, Place(file, result.line, result.column), result.text);
    if (!reader.EnterSection(root, true)) {
        std::uint32_t line = 0, column = 0;
        if (reader.EnterSection("/*", true)) reader.GetPosition(line, column);
        throw Failure(kWrongUsage, Place(file, line, column),
                      "the root element is not \"" + std::string(root) + "\"");
    }
    const std::string raw = ReadBytes(file, kLargestDocument);
    std::string text;
    if (IsUtf16(raw)) {
        reader.ReadXML(text);
        return text;
    }
    std::string_view utf8 = raw;
    if (utf8.starts_with("\xEF\xBB\xBF")) utf8.remove_prefix(3);
    if (!TextFromSystem(utf8, text))
        Complain(Place(file, FirstLostLine(utf8)), "a character without a byte in code page " +
                                                       std::to_string(SelectedCodePage()) + " becomes \"?\"");
    return text;
}

std::vector<FieldValue> ReadPairs(const std::string& file, const char* columns) {
    std::vector<host::CsvRecord> records;
    std::size_t line = 0;
    const std::string why = host::ParseCsv(ReadBytes(file, kLargestPairs), records, line);
    if (!why.empty()) throw Failure(kWrongUsage, Place(file, line), why);
    std::vector<FieldValue> pairs;
    pairs.reserve(records.size());
    for (const host::CsvRecord& record : records) {
        if (record.fields.size() != 2)
            throw Failure(kWrongUsage, Place(file, record.line),
                          std::to_string(record.fields.size()) + " columns instead of " + columns);
        FieldValue& pair = pairs.emplace_back();
        if (!TextFromSystem(record.fields[0], pair.field) || !TextFromSystem(record.fields[1], pair.value))
            throw Failure(kWrongUsage, Place(file, record.line),
                          "a character without a byte in code page " + std::to_string(SelectedCodePage()));
    }
    return pairs;
}

void WriteDocument(const std::string& file, std::string_view bytes) {
    if (const Result result = WriteHostFile(file, TextToSystem(bytes)); !result.ok())
        throw Failure(kWrongUsage, file, result.text);
}

}  // namespace brindle::tool
