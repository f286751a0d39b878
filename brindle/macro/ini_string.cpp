// INI values of any length. Tested in ini_string_test.cpp.
#include "brindle/macro/ini_string.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>

#include "brindle/library/string_table.h"
#include "brindle/platform/files.h"
#include "brindle/platform/ini_store.h"
#include "brindle/settings/ini_file_names.h"

namespace brindle {
namespace {

// The value by buffers that grow by whole chunks until one shows that it holds all: a shorter length than its size
// less two, which no cut value and no cut list has. Growing by more than one chunk at a time gives the same. Without
// memory for a buffer: the default.
std::string ReadGrowing(const char* section, const char* key, const char* defaultValue, const char* iniFile,
                        std::size_t chunk) {
    std::string buffer;
    for (std::size_t size = chunk;; size += std::max(chunk, size / chunk * chunk)) {
        try {
            buffer.resize(size);
        } catch (const std::bad_alloc&) {
            return defaultValue ? defaultValue : "";
        }
        const std::size_t length =
            CurrentIniStore().Read(section, key, defaultValue, buffer.data(), size, iniFile);
        if (length + 2 >= size) continue;
        buffer.resize(length);
        return buffer;
    }
}

CStringA LastDirectory(unsigned key) {
    std::array<char, 260> buffer{};
    const std::size_t length =
        CurrentIniStore().Read(LoadStringResource(kTextDirectories), LoadStringResource(key), "",
                               buffer.data(), buffer.size(), KeptIniFileNames().searchPath);
    return CStringA(buffer.data(), static_cast<int>(length));
}

void SetLastDirectory(unsigned key, const char* directory) {
    const Result result =
        CurrentIniStore().Write(LoadStringResource(kTextDirectories), LoadStringResource(key),
                                directory ? directory : "", KeptIniFileNames().searchPath);
    if (!result.ok()) Warn(result.text.c_str());
}

}  // namespace
}  // namespace brindle

int GetIniString(const char* section, const char* key, const char* defaultValue, CStringA& out,
                 const char* iniFile, int chunk) {
    std::string value = defaultValue ? defaultValue : "";
    if (chunk > 0)
        value = brindle::ReadGrowing(section, key, defaultValue, iniFile, static_cast<std::size_t>(chunk));
    out = std::move(value);
    return out.GetLength();
}

CStringA GetLastSchematicDir() {
    return brindle::LastDirectory(brindle::kTextLastSchematicDir);
}
void SetLastSchematicDir(const char* directory) {
    brindle::SetLastDirectory(brindle::kTextLastSchematicDir, directory);
}
CStringA GetLastComponentDir() {
    return brindle::LastDirectory(brindle::kTextLastComponentDir);
}
void SetLastComponentDir(const char* directory) {
    brindle::SetLastDirectory(brindle::kTextLastComponentDir, directory);
}
CStringA GetLastGraphicsDir() {
    return brindle::LastDirectory(brindle::kTextLastGraphicsDir);
}
void SetLastGraphicsDir(const char* directory) {
    brindle::SetLastDirectory(brindle::kTextLastGraphicsDir, directory);
}
