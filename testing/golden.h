// Golden files: whole outputs that are compared with a file of the source tree, golden/NAME beside the test.
//
// When the text differs, the test fails with a diff and the command that accepts the new text. Under
// BRINDLE_ACCEPT_GOLDEN=1 the test also writes golden/NAME.actual, which tools/accept-golden shows and takes
// over.
#pragma once

#include <string>
#include <string_view>

namespace brindle::testing {

// Adds a test failure when `actual` is not, byte for byte, what folder/golden/name holds.
void CompareGolden(const std::string& folder, const std::string& name, std::string_view actual);
// The bytes of folder/golden/name; a missing file is a test failure and gives nothing.
std::string LoadGolden(const std::string& folder, const std::string& name);

// Lines that differ between two texts: "-" before those of `expected`, "+" before those of `actual`, with
// their line number. What stands before the first and after the last difference is left out; long parts are
// cut.
std::string LineDiff(std::string_view expected, std::string_view actual);
// Sixteen bytes a line, as hexadecimal and as characters: the text form in which binary output is compared.
std::string HexDump(std::string_view bytes);

}  // namespace brindle::testing

#ifdef BRINDLE_TEST_FOLDER  // brindle_test() gives each test program its own folder
namespace brindle::testing {

inline void ExpectGolden(const std::string& name, std::string_view actual) {
    CompareGolden(BRINDLE_TEST_FOLDER, name, actual);
}
inline std::string GoldenText(const std::string& name) {
    return LoadGolden(BRINDLE_TEST_FOLDER, name);
}

}  // namespace brindle::testing
#endif
