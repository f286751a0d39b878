#include "host/argument_filter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brindle::host {
namespace {

TEST(ArgumentFilter, CountsALineAsWritten) {
    struct Row {
        const char* label;
        const char* line;
        std::size_t expected;
    };
    const std::vector<Row> rows = {
        {"a program", "a", 1},
        {"arguments", "a b \"c d\"", 3},
        {"fields", "a %c \"%t %h\"", 3},
        {"references with blanks in them", "a {my name} #0001:02:03,Model name# $MY LIB$\\x", 4},
        {"nested references", "a {x{y z} w}", 2},
        {"reference at the program", "$MY LIB$\\x a", 2},
        {"what is no reference", "a { b # c $ d", 7},
        {"the sign to hide", "a %H b", 2},
        {"at the end", "a b %H", 2},
        {"the hour", "a %H% b", 3},
        {"empty", "", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(CountWrittenArguments(row.line), row.expected);
    }
}

TEST(ArgumentFilter, AllowsWhatKeepsItsArguments) {
    struct Row {
        const char* label;
        const char* line;
        const char* command;
        std::vector<std::string> arguments;  // as found
        const char* reason;                  // null: allowed
    };
    const std::vector<Row> rows = {
        {"nothing filled in", "a b", "a b", {"b"}, nullptr},
        {"a field in quotes", "a \"%c\"", "a \"x y\"", {"x y"}, nullptr},
        {"an empty one in quotes", "a \"%c\"", "a \"\"", {""}, nullptr},
        {"a quote in the text", "a \"%c\"", "a \"x\" y\"", {"x", "y"}, "Refused: 2 arguments instead of 1"},
        {"a blank outside of quotes", "a %c", "a x y", {"x", "y"}, "Refused: 2 arguments instead of 1"},
        {"nothing outside of quotes", "a %c", "a ", {}, "Refused: 0 arguments instead of 1"},
        {"a program's path with blanks", "$DIR$\\x.exe a", "C:\\my dir\\x.exe a", {"a"}, nullptr},
        {"one that is not there", "C:\\my dir\\x.exe a", "C:\\my dir\\x.exe a", {"dir\\x.exe", "a"}, nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ArgumentFilter filter;
        CStringA reason;
        EXPECT_EQ(filter.Allow({"a", row.arguments, row.command, row.line}, reason), row.reason == nullptr);
        EXPECT_EQ(reason, row.reason ? row.reason : "");
    }
}

}  // namespace
}  // namespace brindle::host
