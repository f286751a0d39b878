#include "host/csv_text.h"

#include <gtest/gtest.h>

namespace brindle::host {
namespace {

// "1:a|b 2:c" for two records.
std::string Shown(const std::vector<CsvRecord>& records) {
    std::string text;
    for (const CsvRecord& record : records) {
        text += (text.empty() ? "" : " ") + std::to_string(record.line) + ":";
        for (std::size_t i = 0; i < record.fields.size(); ++i) text += (i > 0 ? "|" : "") + record.fields[i];
    }
    return text;
}

TEST(CsvText, ReadsRecords) {
    const struct {
        const char* label;
        const char* text;
        const char* records;
        const char* why;
        std::size_t line;
    } rows[] = {
        {"nothing", "", "", "", 1},
        {"one", "a,b", "1:a|b", "", 1},
        {"with a line end", "a,b\r\n", "1:a|b", "", 2},
        {"line feeds alone", "a\nb\n", "1:a 2:b", "", 3},
        {"empty lines are passed over", "\r\n\na\r\n\r\nb", "3:a 5:b", "", 5},
        {"empty fields", ",\n,,x\na,", "1:| 2:||x 3:a|", "", 3},
        {"blanks stay", " a , b ", "1: a | b ", "", 1},
        {"quoted", "\"a,b\",\"c\"\"d\"\n\"\"", "1:a,b|c\"d 2:", "", 2},
        {"line ends inside quotes", "\"a\r\nb\nc\",d\ne", "1:a\r\nb\nc|d 4:e", "", 4},
        {"a carriage return alone is text", "a\rb\n", "1:a\rb", "", 2},
        {"a mark at the beginning", "\xEF\xBB\xBF\"a\"", "1:a", "", 1},
        {"a quote inside", "x\na\"b", "1:x", "a quote inside a field that does not begin with one", 2},
        {"a quote behind a blank", " \"a\"", "", "a quote inside a field that does not begin with one", 1},
        {"never closed", "x\n\"a\nb", "1:x", "a quote is never closed", 2},
        {"text behind a quote", "\"a\" ,b", "", "text behind a closed quote", 1},
        {"a carriage return behind a quote", "\"a\"\rb", "", "text behind a closed quote", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<CsvRecord> records;
        std::size_t line = 0;
        EXPECT_EQ(ParseCsv(row.text, records, line), row.why);
        EXPECT_EQ(Shown(records), row.records);
        EXPECT_EQ(line, row.line);
    }
}

TEST(CsvText, WhatIsWrittenReadsBack) {
    const std::vector<std::vector<std::string>> rows = {
        {"a"},    {"a", "b"},           {"a,b", "\"", "x\r\ny", " "},
        {"", ""}, {"\xC3\xBC", "\"\""}, {"\xEF\xBB\xBFx", "y"}};
    for (const auto& fields : rows) {
        std::vector<CsvRecord> records;
        std::size_t line = 0;
        EXPECT_EQ(ParseCsv(CsvText(fields), records, line), "");
        ASSERT_EQ(records.size(), 1u) << CsvText(fields);
        EXPECT_EQ(records[0].fields, fields);
    }
    EXPECT_EQ(CsvText({"a b", "c,d", "e\"f"}), "a b,\"c,d\",\"e\"\"f\"");
}

TEST(CsvText, EveryPrefixIsHarmless) {
    const std::string whole = "a,\"b \"\"c\"\"\r\n,d\"\r\n\r\n\"\",e\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        std::vector<CsvRecord> records;
        std::size_t line = 0;
        const std::string why = ParseCsv(std::string_view(whole).substr(0, length), records, line);
        EXPECT_TRUE(why.empty() || why == "a quote is never closed" ||
                    whole[length - 1] == '\r')  // half a line end is text
            << length << ": " << why;
        EXPECT_LE(records.size(), 2u);
    }
}

}  // namespace
}  // namespace brindle::host
