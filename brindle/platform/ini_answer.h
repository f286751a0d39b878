// What IniStore's operations answer from an IniDocument: the sizes and cuts of reading, and what writing refuses.
// For the services; tests: ini_store_test.cpp.
#pragma once

#include <cstddef>

#include "brindle/framework/result.h"
#include "brindle/platform/ini_document.h"

namespace brindle {

// IniStore::Read on a document, null for a missing file.
std::size_t AnswerIniRead(const IniDocument* document, const char* section, const char* key,
                          const char* defaultValue, char* buffer, std::size_t size);
// What IniStore::Write refuses before it looks at the file.
Result CheckIniWrite(const char* section, const char* key, const char* value);
// IniStore::Write on a document; true when its text changed.
bool ApplyIniWrite(IniDocument& document, const char* section, const char* key, const char* value);

}  // namespace brindle
