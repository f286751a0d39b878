// Recorded answers of real platform services, for tests that compare with them.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace brindle::testing {

// The set of that file name, or nothing when the build was not given the folder: the test then skips.
std::optional<nlohmann::json> LoadVectors(const std::string& fileName);
// The bytes of a file of the recordings, or nothing as above.
std::optional<std::string> LoadVectorBytes(const std::string& fileName);
// One byte per character, as narrow strings stand in the recordings.
std::string BytesOf(const nlohmann::json& narrow);

}  // namespace brindle::testing

#define BRINDLE_VECTORS_OR_SKIP(name, file)                                            \
    const auto name##_loaded = brindle::testing::LoadVectors(file);                    \
    if (!name##_loaded) GTEST_SKIP() << "no recorded vectors given (BRINDLE_VECTORS)"; \
    const nlohmann::json& name = *name##_loaded
