#include "brindle/platform/fake/ini_store_fake.h"

#include <optional>

#include "brindle/platform/ini_answer.h"

namespace brindle {

const std::string* FakeIniStore::Text(const std::string& file) const {
    const auto found = m_texts.find(file);
    return found == m_texts.end() ? nullptr : &found->second;
}

std::size_t FakeIniStore::Read(const char* section, const char* key, const char* defaultValue, char* buffer,
                               std::size_t size, const char* file) {
    ++m_reads;
    std::optional<IniDocument> document;
    if (const std::string* text = Text(file ? file : "")) document.emplace(*text);
    return AnswerIniRead(document ? &*document : nullptr, section, key, defaultValue, buffer, size);
}

Result FakeIniStore::Write(const char* section, const char* key, const char* value, const char* file) {
    if (Result refused = CheckIniWrite(section, key, value); !refused.ok()) return refused;
    const std::string path = file ? file : "";
    if (path.empty()) return Result::Error(ErrorCode::kInvalidArgument, "empty path");
    if (m_failWrites) return Result::Error(ErrorCode::kFailed, path + ": disk full");
    IniDocument document(m_texts[path]);
    ApplyIniWrite(document, section, key, value);
    m_texts[path] = document.Text();
    return {};
}

}  // namespace brindle
