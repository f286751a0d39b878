// INI texts: whatever they hold, names that are listed are found, an edit is found afterwards, and it changes no other
// value of the section.
//
// Input: the text up to the first zero byte; behind it a section, a key and a value, a zero byte between them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

#include "brindle/framework/letter_case.h"
#include "brindle/platform/ini_answer.h"

using brindle::IniDocument;

namespace {

std::string TakeText(std::string_view& input) {
    const std::size_t end = std::min(input.find('\0'), input.size());
    std::string text(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return text;
}

// Each key's first value.
std::map<std::string, std::string> Values(const IniDocument& document, const std::string& section) {
    std::map<std::string, std::string> values;
    const std::string keys = document.KeyList(section);
    for (const char* key = keys.c_str(); *key; key += std::strlen(key) + 1) {
        std::string_view value;
        if (!document.Find(section, key, value)) std::abort();
        std::string folded(key);
        for (char& c : folded) c = brindle::ToLower(c);
        values[folded] = value;
    }
    return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 5'000) return 0;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    IniDocument document(TakeText(input));
    const std::string section = TakeText(input);
    const std::string key = TakeText(input);
    const std::string value = TakeText(input);
    const std::string sections = document.SectionList();
    for (const char* name = sections.c_str(); *name; name += std::strlen(name) + 1) Values(document, name);

    char buffer[64];
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{2}, sizeof buffer}) {
        const std::size_t length =
            brindle::AnswerIniRead(&document, section.c_str(), nullptr, "def", buffer, room);
        if (length > 0 && length >= room) std::abort();
    }
    if (!brindle::CheckIniWrite(section.c_str(), key.c_str(), value.c_str()).ok()) return 0;
    auto expected = Values(document, section);
    brindle::ApplyIniWrite(document, section.c_str(), key.c_str(), value.c_str());
    std::string_view found;
    if (!document.Find(section, key, found)) std::abort();
    std::string folded(brindle::TrimmedIniName(key));
    for (char& c : folded) c = brindle::ToLower(c);
    expected[folded] = found;
    if (Values(document, section) != expected) std::abort();
    const std::string_view plain = brindle::WithoutIniQuotes(brindle::TrimmedIniName(value));
    if (found != plain) std::abort();
    // Removing takes the first of that name away.
    document.RemoveKey(section, key);
    document.RemoveSection(section);
    return 0;
}
