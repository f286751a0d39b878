// The outer rules of INI reading and writing. Tests: ini_store_test.cpp.
#include "brindle/platform/ini_answer.h"

#include <algorithm>
#include <cstring>

namespace brindle {
namespace {

std::size_t Put(std::string_view text, char* buffer, std::size_t size) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return length;
}

// One more zero ends a list; a list that is cut loses the end of its last name.
std::size_t PutList(std::string_view list, char* buffer, std::size_t size) {
    const std::size_t room = size < 2 ? 0 : size - 2;
    const std::size_t length = Put(list.substr(0, room), buffer, size);
    if (list.size() > room && length + 1 < size) buffer[length + 1] = '\0';
    return length;
}

std::string_view Default(const char* text) {
    std::string_view value = text ? text : "";
    while (value.ends_with(' ')) value.remove_suffix(1);
    return WithoutIniQuotes(value);
}

}  // namespace

std::size_t AnswerIniRead(const IniDocument* document, const char* section, const char* key,
                          const char* defaultValue, char* buffer, std::size_t size) {
    if (size == 0) return 0;
    if (!section || !key) {
        std::string list;
        if (document) list = section ? document->KeyList(section) : document->SectionList();
        return list.empty() ? Put(Default(defaultValue), buffer, size) : PutList(list, buffer, size);
    }
    std::string_view value = Default(defaultValue);
    if (document) document->Find(section, key, value);
    return Put(value, buffer, size);
}

Result CheckIniWrite(const char* section, const char* key, const char* value) {
    const auto refuse = [](const char* what, const char* name) {
        return Result::Error(ErrorCode::kInvalidArgument, std::string(what) + " \"" + name + "\"");
    };
    if (!section) return Result::Error(ErrorCode::kInvalidArgument, "no section given");
    if (!IsIniSectionName(section)) return refuse("cannot be the name of a section:", section);
    if (key && !IsIniKeyName(key)) return refuse("cannot be the name of a key:", key);
    if (key && value && std::strpbrk(value, "\r\n"))
        return refuse("a value with a line end in it for key", key);
    return {};
}

bool ApplyIniWrite(IniDocument& document, const char* section, const char* key, const char* value) {
    if (!key) return document.RemoveSection(section);
    return value ? document.SetValue(section, key, value) : document.RemoveKey(section, key);
}

}  // namespace brindle
