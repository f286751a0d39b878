// Runs the examples of docs/command-line.md and compares what they print with what the document says.
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "apps/brindle/tool_test_rows.h"

namespace brindle::testing {
namespace {

struct Example {
    int line;
    std::string command;
    std::string expected;
};

// In blocks marked "console": each "$ " line with what follows it.
std::vector<Example> Examples(const std::string& path) {
    std::vector<Example> examples;
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    bool inside = false, open = false;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.starts_with("```")) {
            inside = !inside && line == "```console";
            open = false;
        } else if (inside && line.starts_with("$ ")) {
            examples.push_back({number, line.substr(2), ""});
            open = true;
        } else if (inside && open) {
            examples.back().expected += line + "\n";
        }
    }
    return examples;
}

TEST(CommandLineDocument, ExamplesPrintWhatItSays) {
    const std::vector<Example> examples = Examples(BRINDLE_SOURCE_FOLDER "/docs/command-line.md");
    EXPECT_GE(examples.size(), 10u);
    std::string folder = (std::filesystem::temp_directory_path() / "brindle_document_XXXXXX").string();
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    for (const Example& example : examples) {
        SCOPED_TRACE("docs/command-line.md:" + std::to_string(example.line) + ": " + example.command);
        EXPECT_EQ(RunShell("export TMPDIR='" + folder + "'; " + example.command).out, example.expected);
    }
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace brindle::testing
