// Table tests of the tool: what was typed, and what it must answer.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apps/brindle/tool_test_process.h"

namespace brindle::testing {

struct ToolRow {
    const char* label;
    std::vector<std::string> arguments;
    std::string out;
    const char* errorPart;  // "": nothing is written there
    int code;
    std::string input = {};
};

inline void CheckRow(const ToolRow& row) {
    SCOPED_TRACE(row.label);
    const ToolResult result = RunTool({row.arguments, row.input, {}, OutputTo::kPipe});
    EXPECT_EQ(result.out, row.out);
    EXPECT_EQ(result.code, row.code) << result.err;
    if (*row.errorPart == '\0') {
        EXPECT_EQ(result.err, "");
    } else {
        EXPECT_THAT(result.err, ::testing::HasSubstr(row.errorPart));
        EXPECT_THAT(result.err, ::testing::StartsWith("brindle: "));
    }
}

}  // namespace brindle::testing
